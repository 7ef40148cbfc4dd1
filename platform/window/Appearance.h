#pragma once

#include <QAccessible>
#include <QDBusVariant>
#include <QObject>
#include <QtQmlIntegration>
#include <optional>

namespace quorin {

/// How the desktop wants things to look: dark or light, and how large text is. Followed while it
/// changes, from the desktop portal; what the command line says wins. Main thread.
class Appearance final : public QObject, private QAccessible::ActivationObserver {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool dark READ dark NOTIFY changed)
  /// Height of ordinary text in pixels.
  Q_PROPERTY(double textSize READ textSize NOTIFY changed)
  /// A screen reader, or a test in its place, is reading.
  Q_PROPERTY(bool accessible READ accessible NOTIFY changed)

 public:
  Appearance(std::optional<bool> dark, std::optional<double> textScale);
  ~Appearance() override;

  [[nodiscard]] bool dark() const { return _darkAsked.value_or(_dark); }
  [[nodiscard]] double textSize() const;
  [[nodiscard]] bool accessible() const { return _accessible; }

 signals:
  void changed();

 private slots:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void accessibilityActiveChanged(bool active) override;
  void ask(const QString& group, const QString& key);
  void apply(const QString& group, const QString& key, const QVariant& value);

  std::optional<bool> _darkAsked;
  std::optional<double> _textScaleAsked;
  bool _dark = false;
  double _textScale = 1;
  bool _accessible = QAccessible::isActive();
};

}  // namespace quorin

#include "platform/window/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFont>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cstdlib>

namespace quorin {

namespace {

const char* const kPortal = "org.freedesktop.portal.Desktop";
const char* const kPath = "/org/freedesktop/portal/desktop";
const char* const kSettings = "org.freedesktop.portal.Settings";
constexpr uint kPreferDark = 1;
constexpr double kSmallestText = 15;

struct Setting {
  const char* group;
  const char* key;
};
constexpr Setting kColorScheme{"org.freedesktop.appearance", "color-scheme"};
constexpr Setting kTextScale{"org.gnome.desktop.interface", "text-scaling-factor"};

bool is(const Setting& setting, const QString& group, const QString& key) {
  return group == QLatin1String(setting.group) && key == QLatin1String(setting.key);
}

/// Of the desktop's font, without loading it.
double systemTextSize() {
  const QFont font = QGuiApplication::font();
  if (font.pixelSize() > 0) return font.pixelSize();
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen ? font.pointSizeF() * screen->logicalDotsPerInchY() / 72 : 0;
}

/// The value inside variants inside variants, as some portals answer.
QVariant innermost(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

}  // namespace

Appearance::Appearance(std::optional<bool> dark, std::optional<double> textScale)
    : _darkAsked(dark), _textScaleAsked(textScale) {
  QAccessible::installActivationObserver(this);
  // Without a session bus there is no portal, and libdbus must not start one.
  if (!std::getenv("DBUS_SESSION_BUS_ADDRESS") && !std::getenv("XDG_RUNTIME_DIR")) return;
  qRegisterMetaType<QDBusVariant>();  // else the slot, whose types are looked for by name, is none
  QDBusConnection::sessionBus().connect(kPortal, kPath, kSettings, "SettingChanged", this,
                                        SLOT(settingChanged(QString, QString, QDBusVariant)));
  for (const Setting& setting : {kColorScheme, kTextScale}) ask(setting.group, setting.key);
}

Appearance::~Appearance() { QAccessible::removeActivationObserver(this); }

double Appearance::textSize() const {
  return std::max(systemTextSize(), kSmallestText) * _textScaleAsked.value_or(_textScale);
}

void Appearance::ask(const QString& group, const QString& key) {
  QDBusMessage call = QDBusMessage::createMethodCall(kPortal, kPath, kSettings, "Read");
  call << group << key;
  auto* watcher =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [=, this] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (!reply.isError()) apply(group, key, reply.value().variant());
    watcher->deleteLater();
  });
}

void Appearance::settingChanged(const QString& group, const QString& key,
                                const QDBusVariant& value) {
  apply(group, key, value.variant());
}

void Appearance::apply(const QString& group, const QString& key, const QVariant& value) {
  if (is(kColorScheme, group, key)) _dark = innermost(value).toUInt() == kPreferDark;
  if (is(kTextScale, group, key)) _textScale = std::clamp(innermost(value).toDouble(), 0.5, 3.0);
  emit changed();
}

void Appearance::accessibilityActiveChanged(bool active) {
  _accessible = active;
  emit changed();
}

}  // namespace quorin

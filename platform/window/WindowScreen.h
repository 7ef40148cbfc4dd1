#pragma once

#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSize>
#include <optional>

#include "platform/window/Appearance.h"
#include "platform/window/StackModel.h"

namespace quorin {

/// How the window is to look, where the desktop shall not decide.
struct WindowLook {
  QSize size{960, 720};
  std::optional<bool> dark;
  std::optional<double> textScale;
};

/// The launched application's pages in a window. Main thread.
class WindowScreen {
 public:
  /// Requires: the application outlives this.
  WindowScreen(UIApplication& application, const WindowLook& look);

  /// The window, or null when it could not be made.
  [[nodiscard]] QQuickWindow* window() const;
  [[nodiscard]] StackModel& stack() { return _model; }

 private:
  ScreenStack _stack;
  StackModel _model;
  Appearance _appearance;
  QQmlApplicationEngine _engine;
};

}  // namespace quorin

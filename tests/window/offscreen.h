#pragma once

#include <QGuiApplication>

namespace quorin::test {

/// Qt on a display that nobody sees, kept for the process's life.
inline QGuiApplication& qt() {
  static int count = 1;
  static char name[] = "window_test";
  static char* arguments[] = {name, nullptr};
  static QGuiApplication& application = *[] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return new QGuiApplication(count, arguments);
  }();
  return application;
}

}  // namespace quorin::test

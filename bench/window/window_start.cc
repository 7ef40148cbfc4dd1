// window_start quorin|bare [OPTION...]: one start, from the moment that the environment's STARTED_NS
// names to the first painted page; then what the process holds. Prints milliseconds and kilobytes.
#include <QEvent>
#include <QGuiApplication>
#include <QTimer>
#include <ctime>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "app/interface.h"
#include "bench/window/bare.h"

namespace {

double now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

long residentKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmRSS:")) return std::strtol(line.c_str() + 6, nullptr, 10);
  return 0;
}

/// Waits for the first frame of the first window.
class FirstFrame final : public QObject {
 public:
  bool eventFilter(QObject* object, QEvent* event) override {
    auto* window = qobject_cast<QQuickWindow*>(object);
    if (event->type() != QEvent::Show || !window || _window) return false;
    _window = window;
    connect(window, &QQuickWindow::frameSwapped, this, [this] {
      if (_painted > 0) return;
      _painted = now() - std::strtod(std::getenv("STARTED_NS"), nullptr) / 1e6;
      QTimer::singleShot(1000, this, [this] {
        std::printf("%.2f %ld\n", _painted, residentKilobytes());
        QGuiApplication::quit();
      });
    });
    return false;
  }

 private:
  QQuickWindow* _window = nullptr;
  double _painted = 0;
};

void watch() { qApp->installEventFilter(new FirstFrame); }
Q_COREAPP_STARTUP_FUNCTION(watch)

int bare(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  using Model = quorin::bench::BareModel;
  Model model({{"Device Info", ""}, {"LTE", ""}, {"UMTS", ""}, {"GSM", ""}});
  const quorin::bench::BareWindow window(model);
  return QGuiApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "bare") == 0) return bare(argc, argv);
  argv[1] = argv[0];
  return quorin::UIApplicationMain(argc - 1, argv + 1, std::nullopt, "AppDelegate",
                                   quorin::interfaceDescription());
}

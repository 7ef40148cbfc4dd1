#pragma once

#include <QObject>
#include <QTimer>

namespace quorin {

/// Runs the main run loop's timers and the main queue's work inside Qt's event loop. Main thread;
/// one at a time.
class MainLoop final : public QObject {
  Q_OBJECT

 public:
  MainLoop();
  ~MainLoop() override;

 private:
  void run();

  QTimer _timer;
};

}  // namespace quorin

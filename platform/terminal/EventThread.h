#pragma once

#include <functional>
#include <memory>
#include <semaphore>
#include <thread>

namespace quorin::terminal {

/// What a terminal's events do. All run on the main thread, posted to its queue.
struct TerminalEvents {
  std::function<void()> input;    // there is something to read; reads all of it
  std::function<void()> resize;   // the size may be another one
  std::function<void()> suspend;  // Ctrl-Z
  std::function<void()> resume;   // the process goes on after a stop
  std::function<void()> gone;     // nothing will come any more
};

/// Blocks the signals that an event thread takes instead. Requires: no other thread runs yet, since
/// those started later inherit what signals they see.
void blockTerminalSignals();

/// Waits for a terminal's input and its signals, without waking up in between. Main thread.
class EventThread {
 public:
  /// Requires: `blockTerminalSignals` was called.
  EventThread(int terminal, TerminalEvents events);
  ~EventThread();
  EventThread(const EventThread&) = delete;
  EventThread& operator=(const EventThread&) = delete;

 private:
  void run();
  /// False when nothing will come any more.
  bool passOnInput();
  void passOnSignals();

  int _terminal;
  int _signals;
  int _ending;
  std::shared_ptr<TerminalEvents> _events;
  std::binary_semaphore _read{0};
  std::thread _thread;
};

}  // namespace quorin::terminal

#include "platform/terminal/show_screen.h"

#include <atomic>

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/queue.h"
#include "platform/foundation/log.h"
#include "platform/terminal/EventThread.h"
#include "platform/terminal/OutputCapture.h"
#include "platform/terminal/TerminalScreen.h"

namespace quorin::terminal {

namespace {

/// How long new log lines wait for each other before they are drawn.
constexpr Milliseconds kLogInterval{200};

/// Draws a screen on a display, once for all that happened in one turn of the main loop.
class Painter {
 public:
  Painter(CursesDisplay& display, UIApplication& application, LogStrip& strip)
      : _display(display),
        _screen(application, strip,
                {[this] { drawSoon(); }, [] { RunLoop::mainRunLoop().stop(); },
                 [this] { _display.repaint(); }, [this](bool ours) { _display.setMouse(ours); }}) {}

  void drawSoon() {
    if (_pending) return;
    _pending = std::make_shared<bool>(true);
    dispatch_async(dispatch_get_main_queue(), [this, pending = std::weak_ptr(_pending)] {
      if (!pending.expired()) drawNow();
    });
  }

  void readInput() {
    while (const auto input = _display.next()) {
      if (input->kind == Input::Kind::key) _screen.press(input->key);
      if (input->kind == Input::Kind::click) _screen.click(input->row, input->column);
      if (input->kind == Input::Kind::wheel) _screen.wheel(input->row, input->column, input->rows);
    }
  }

  void resized() {
    _display.fit();
    drawSoon();
  }

  void resumed() {
    _display.fit();
    _display.repaint();
    drawSoon();
  }

  void logChanged() {
    if (!_screen.showsLog() || _logTimer) return;
    _logTimer = scheduleTimer(kLogInterval, [this] {
      _logTimer->invalidate();
      _logTimer.reset();
      drawSoon();
    });
  }

 private:
  void drawNow() {
    _pending.reset();
    Canvas canvas(_display.rows(), _display.columns(), _display.charset());
    _screen.draw(canvas);
    _display.show(canvas);
  }

  CursesDisplay& _display;
  TerminalScreen _screen;
  std::shared_ptr<bool> _pending;
  std::shared_ptr<Timer> _logTimer;
};

/// For any thread: runs the action on the main queue, once for all calls before that.
std::function<void()> oncePerTurn(std::function<void()> action) {
  const auto pending = std::make_shared<std::atomic<bool>>(false);
  return [pending, action = std::move(action)] {
    if (pending->exchange(true)) return;
    dispatch_async(dispatch_get_main_queue(), [pending, action] {
      *pending = false;
      action();
    });
  };
}

void setUpLogs(bool quiet) {
  const auto nowhere = [](std::string_view) {};
  setPrintSink(quiet ? LogSink(nowhere) : standardOutputSink());
  if (!systemLoggerListens()) setSystemLogSink(quiet ? LogSink(nowhere) : standardErrorSink());
}

}  // namespace

int showScreen(Launch& launch, bool quiet, const Terminal& terminal,
               std::string_view delegateClassName, const UIStoryboard& storyboard) {
  if (!launch.open()) return 2;
  setUpLogs(quiet);
  LogStrip strip;
  {
    const OutputCapture capture(strip);
    UIApplication application(storyboard);
    application.launch(delegateClassName);
    RunLoop& runLoop = RunLoop::mainRunLoop();
    {
      CursesDisplay display(terminal);
      Painter painter(display, application, strip);
      strip.setOnAdd(oncePerTurn([&painter] { painter.logChanged(); }));
      const EventThread events(display.descriptor(), {.input = [&] { painter.readInput(); },
                                                      .resize = [&] { painter.resized(); },
                                                      .suspend = [&] { display.suspend(); },
                                                      .resume = [&] { painter.resumed(); },
                                                      .gone = [&] { runLoop.stop(); }});
      launch.start(/*endsWithRecording=*/false, [&] { runLoop.stop(); });
      painter.drawSoon();
      runLoop.run();
      strip.setOnAdd(nullptr);
    }
    application.terminate();
  }
  return launch.unreadable() ? 1 : 0;
}

}  // namespace quorin::terminal

#pragma once

#include "platform/dispatch/RunLoop.h"
#include "platform/screen/ScreenStack.h"
#include "platform/terminal/LogStrip.h"
#include "platform/terminal/PageView.h"
#include "platform/terminal/keys.h"

namespace quorin::terminal {

/// What a screen asks of whoever shows it.
struct ScreenRequests {
  std::function<void()> draw;  // there is something new to draw
  std::function<void()> quit;
  std::function<void()> repaint;        // send everything anew
  std::function<void(bool)> takeMouse;  // or leave it to the terminal
};

/// The application's pages on a screen of cells: takes keys, draws on a canvas. Main thread.
class TerminalScreen final : public ScreenStackObserver {
 public:
  static constexpr int kFewestRows = 10;
  static constexpr int kFewestColumns = 40;
  static constexpr int kWideColumns = 100;  // from here on pages stand side by side

  /// Requires: the application is launched; it and the strip outlive this.
  TerminalScreen(UIApplication& application, LogStrip& strip, ScreenRequests requests);
  ~TerminalScreen() override;

  void press(char32_t pressed);
  void click(int row, int column);
  void wheel(int row, int column, int rows);
  void draw(Canvas& canvas);

  [[nodiscard]] const ScreenStack& stack() const { return _stack; }
  /// The level of the page that the keys are for.
  [[nodiscard]] std::size_t focus() const { return _focus; }

  /// Whether new log lines are something new to draw.
  [[nodiscard]] bool showsLog() const { return _log && !_help; }

  void willPush() override {}
  void didPush() override;
  void willPop() override;
  void didPop() override {}

 private:
  [[nodiscard]] PageView& view() { return *_views[_focus]; }
  [[nodiscard]] const PageView& view() const { return *_views[_focus]; }

  void act(Action action);
  void open();
  void close();
  void type(char32_t pressed);
  void findFrom(std::size_t line);
  void findAgain(bool before);
  void pressInHelp(char32_t pressed);
  void toggleLog();
  void scrollLog(int lines);
  void toggleMouse();

  void drawPages(Canvas& canvas, const Area& area);
  void drawBar(Canvas& canvas, std::size_t deepest) const;
  void drawNotes(Canvas& canvas, const Area& area) const;
  void drawLog(Canvas& canvas, const Area& area);
  void drawFooter(Canvas& canvas) const;
  void drawHelp(Canvas& canvas, const Area& area);
  [[nodiscard]] int noteRows(int columns, Charset charset) const;
  [[nodiscard]] std::string age() const;
  void refreshAge();

  LogStrip& _strip;
  ScreenRequests _requests;
  ScreenStack _stack;
  std::vector<std::unique_ptr<PageView>> _views;
  std::size_t _focus = 0;
  std::optional<std::string> _typed;  // being typed after "/"
  std::size_t _origin = 0;            // where the selection stood before
  std::string _sought;
  std::string _message;
  bool _help = false;
  int _helpTop = 0;
  bool _log = false;
  Area _logArea;
  std::optional<std::size_t> _logEnd;  // the line behind those in sight; empty: the latest
  bool _mouse = true;
  bool _wide = false;
  std::shared_ptr<Timer> _ageTimer;
};

}  // namespace quorin::terminal

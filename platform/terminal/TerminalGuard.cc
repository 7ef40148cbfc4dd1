#include "platform/terminal/TerminalGuard.h"

#include <fcntl.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>

#include "platform/foundation/fatal.h"
#include "platform/terminal/OutputCapture.h"

namespace quorin::terminal {

namespace {

/// Those that end a program unless it does something about them; but for those that cannot be
/// caught.
constexpr int kErrors[] = {SIGABRT, SIGSEGV, SIGBUS,    SIGFPE,  SIGILL,  SIGSYS,
                           SIGTRAP, SIGQUIT, SIGPIPE,   SIGALRM, SIGUSR1, SIGUSR2,
                           SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF};
constexpr int kEndings[] = {SIGINT, SIGTERM, SIGHUP};

/// What the handler needs, where it can reach it.
struct Reachable {
  std::atomic<bool> owned{false};
  int terminal = -1;
  termios settings{};
  std::array<char, 512> restore{};
  std::size_t size = 0;
};
Reachable reachable;

alignas(16) std::array<char, 64 * 1024> handlerStack;  // the program's own may be used up

// A terminal that takes nothing any more must not hold up the end.
void giveBack() {
  if (!reachable.owned.exchange(false)) return;
  fcntl(reachable.terminal, F_SETFL, O_RDWR | O_NONBLOCK);
  const auto size = static_cast<ssize_t>(reachable.size);
  if (write(reachable.terminal, reachable.restore.data(), reachable.size) != size) {
    tcflush(reachable.terminal, TCOFLUSH);
    (void)!write(reachable.terminal, reachable.restore.data(), reachable.size);
  }
  tcsetattr(reachable.terminal, TCSANOW, &reachable.settings);
}

// The signal's own action is back in force, and comes once the handler returns.
void endedBy(int signal) {
  giveBack();
  const bool asked = std::ranges::find(kEndings, signal) != std::end(kEndings);
  OutputCapture::giveBackInHandler(reachable.terminal, /*repeats=*/!asked);
  raise(signal);
}

/// An error that somebody before us chose to ignore stays ignored.
void catchSignals() {
  const stack_t stack{handlerStack.data(), 0, handlerStack.size()};
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_handler = endedBy;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_ONSTACK);
  sigfillset(&action.sa_mask);
  for (int signal : kEndings) sigaction(signal, &action, nullptr);
  for (int signal : kErrors) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
  }
}

}  // namespace

TerminalGuard::TerminalGuard(int terminal) {
  reachable.terminal = terminal;
  if (tcgetattr(terminal, &reachable.settings) != 0) fatal();
  static const bool atExit = std::atexit(giveBack) == 0;
  if (!atExit) fatal();
}

TerminalGuard::~TerminalGuard() { disown(); }

void TerminalGuard::own(const std::string& restore) {
  reachable.owned = false;
  reachable.size = std::min(restore.size(), reachable.restore.size());
  std::copy_n(restore.begin(), reachable.size, reachable.restore.begin());
  catchSignals();
  reachable.owned = true;
}

void TerminalGuard::disown() { reachable.owned = false; }

}  // namespace quorin::terminal

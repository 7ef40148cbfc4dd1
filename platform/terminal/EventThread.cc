#include "platform/terminal/EventThread.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/dispatch/queue.h"
#include "platform/foundation/fatal.h"

namespace quorin::terminal {

namespace {

const sigset_t& terminalSignals() {
  static const sigset_t signals = [] {
    sigset_t set;
    sigemptyset(&set);
    for (int signal : {SIGWINCH, SIGTSTP, SIGCONT}) sigaddset(&set, signal);
    return set;
  }();
  return signals;
}

void post(const std::shared_ptr<TerminalEvents>& events,
          std::function<void()> TerminalEvents::*event) {
  dispatch_async(dispatch_get_main_queue(), [events, event] {
    if (const auto& action = (*events).*event) action();
  });
}

}  // namespace

void blockTerminalSignals() { pthread_sigmask(SIG_BLOCK, &terminalSignals(), nullptr); }

EventThread::EventThread(int terminal, TerminalEvents events)
    : _terminal(terminal),
      _signals(signalfd(-1, &terminalSignals(), SFD_CLOEXEC | SFD_NONBLOCK)),
      _ending(eventfd(0, EFD_CLOEXEC)),
      _events(std::make_shared<TerminalEvents>(std::move(events))) {
  if (_signals < 0 || _ending < 0) fatal();
  _thread = std::thread([this] { run(); });
}

EventThread::~EventThread() {
  *_events = {};  // what was posted finds nothing to do
  const std::uint64_t one = 1;
  (void)!write(_ending, &one, sizeof one);
  _read.release();
  _thread.join();
  close(_signals);
  close(_ending);
}

void EventThread::run() {
  std::array<pollfd, 3> waiting{
      {{_ending, POLLIN, 0}, {_signals, POLLIN, 0}, {_terminal, POLLIN, 0}}};
  while (true) {
    if (poll(waiting.data(), waiting.size(), -1) < 0) continue;
    if (waiting[0].revents != 0) return;
    if (waiting[1].revents != 0) passOnSignals();
    if (waiting[2].revents != 0 && !passOnInput()) waiting[2].fd = -1;
  }
}

bool EventThread::passOnInput() {
  int bytes = 0;
  if (ioctl(_terminal, FIONREAD, &bytes) != 0 || bytes == 0) {
    post(_events, &TerminalEvents::gone);
    return false;
  }
  // Until it was read, the terminal would say over and over that there is something.
  dispatch_async(dispatch_get_main_queue(), [this, events = _events] {
    if (!events->input) return;  // this is gone by now
    events->input();
    _read.release();
  });
  _read.acquire();
  return true;
}

void EventThread::passOnSignals() {
  signalfd_siginfo signal;
  while (read(_signals, &signal, sizeof signal) == sizeof signal) {
    if (signal.ssi_signo == SIGWINCH) post(_events, &TerminalEvents::resize);
    if (signal.ssi_signo == SIGTSTP) post(_events, &TerminalEvents::suspend);
    if (signal.ssi_signo == SIGCONT) post(_events, &TerminalEvents::resume);
  }
}

}  // namespace quorin::terminal

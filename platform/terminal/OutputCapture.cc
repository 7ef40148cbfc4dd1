#include "platform/terminal/OutputCapture.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include "platform/foundation/fatal.h"

namespace quorin::terminal {

namespace {

constexpr std::size_t kComplaints = 20;
constexpr std::string_view kComplaint = "quorin: ";

/// What a signal handler needs, where it can reach it.
struct Reachable {
  std::atomic<bool> inForce{false};
  std::array<int, 2> originals{};
  std::array<int, 2> pipes{};
  std::array<std::atomic<bool>, 2> passesOn{};
  std::array<char, 1024> latest{};  // of standard error, round and round
  std::atomic<std::size_t> written{0};
};
Reachable reachable;

void writeAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void remember(std::string_view text) {
  std::size_t at = reachable.written;
  for (char c : text) reachable.latest[at++ % reachable.latest.size()] = c;
  reachable.written = at;
}

/// The whole lines among the latest of standard error.
void writeLatest(int fd) {
  const std::size_t end = reachable.written;
  std::size_t at = end > reachable.latest.size() ? end - reachable.latest.size() : 0;
  const auto character = [](std::size_t i) {
    return &reachable.latest[i % reachable.latest.size()];
  };
  if (at > 0)
    while (at < end && *character(at++) != '\n') {
    }
  for (; at < end; ++at) (void)!write(fd, character(at), 1);
}

}  // namespace

OutputCapture::OutputCapture(LogStrip& strip) : _strip(strip) {
  std::fflush(stdout);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);  // behind a pipe it would keep its lines
  for (std::size_t i = 0; i < _streams.size(); ++i) {
    Stream& stream = _streams[i];
    int ends[2];
    stream.original = fcntl(stream.number, F_DUPFD_CLOEXEC, 3);
    if (stream.original < 0 || pipe2(ends, O_CLOEXEC) != 0) fatal();
    stream.pipe = ends[0];
    stream.passesOn = isatty(stream.original) == 0;
    dup2(ends[1], stream.number);
    close(ends[1]);
    reachable.originals[i] = stream.original;
    reachable.pipes[i] = stream.pipe;
    reachable.passesOn[i] = stream.passesOn;
  }
  reachable.inForce = true;
  _thread = std::thread([this] { run(); });
}

OutputCapture::~OutputCapture() {
  std::fflush(stdout);
  reachable.inForce = false;
  for (const Stream& stream : _streams) dup2(stream.original, stream.number);
  _thread.join();
  for (const Stream& stream : _streams) {
    close(stream.original);
    close(stream.pipe);
  }
  if (_streams[1].passesOn) return;
  for (const std::string& line : _complaints) writeAll(STDERR_FILENO, line + '\n');
}

void OutputCapture::run() {
  std::array<pollfd, 2> waiting{};
  for (std::size_t i = 0; i < waiting.size(); ++i) waiting[i] = {_streams[i].pipe, POLLIN, 0};
  while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
    if (poll(waiting.data(), waiting.size(), -1) < 0) continue;
    for (std::size_t i = 0; i < waiting.size(); ++i) {
      if (waiting[i].fd < 0 || waiting[i].revents == 0) continue;
      std::array<char, 4096> text;
      const ssize_t size = read(waiting[i].fd, text.data(), text.size());
      if (size > 0)
        take(_streams[i], {text.data(), static_cast<std::size_t>(size)});
      else if (size == 0 || errno != EINTR)
        waiting[i].fd = -1;
    }
  }
}

void OutputCapture::take(Stream& stream, std::string_view text) {
  if (stream.passesOn) writeAll(stream.original, text);
  if (stream.number == STDERR_FILENO) {
    remember(text);
    for (char c : text) {
      if (c != '\n') {
        if (_line.size() < LogStrip::kLongestLine) _line += c;
        continue;
      }
      if (_line.starts_with(kComplaint) && _complaints.size() < kComplaints)
        _complaints.push_back(_line);
      _line.clear();
    }
  }
  _strip.add(stream.unfinished, text);
}

void OutputCapture::giveBackInHandler(int terminal, bool repeats) {
  if (!reachable.inForce.exchange(false)) return;
  for (std::size_t i = 0; i < reachable.originals.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    dup2(reachable.originals[i], number);
    const bool passesOn = reachable.passesOn[i];
    const bool shows = repeats && number == STDERR_FILENO && !passesOn;
    if (shows) writeLatest(terminal);
    fcntl(reachable.pipes[i], F_SETFL, O_NONBLOCK);
    std::array<char, 512> text;
    ssize_t size = 0;
    while ((size = read(reachable.pipes[i], text.data(), text.size())) > 0)
      if (passesOn || shows)
        writeAll(passesOn ? reachable.originals[i] : terminal,
                 {text.data(), static_cast<std::size_t>(size)});
  }
}

}  // namespace quorin::terminal

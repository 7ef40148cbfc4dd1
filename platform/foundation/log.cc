#include "platform/foundation/log.h"

#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace quorin {

namespace {

/// A socket of this type at the system logger; negative: it does not listen there.
int loggerSocket(int type) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, "/dev/log");
  const int made = socket(AF_UNIX, type | SOCK_CLOEXEC, 0);
  if (made >= 0 && connect(made, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
    return made;
  if (made >= 0) close(made);
  return -1;
}

// Of two threads' lines none ever stands within another: one lock around what is buffered, one
// write where nothing is.

std::atomic<bool> isBuffered = false;

void bufferLine(std::FILE* file, std::string_view line) {
  flockfile(file);
  fwrite_unlocked(line.data(), 1, line.size(), file);
  putc_unlocked('\n', file);
  funlockfile(file);
  isBuffered.store(true, std::memory_order_relaxed);
}

void writeLine(std::FILE* file, std::string_view line) {
  std::string whole(line);
  whole += '\n';
  std::fwrite(whole.data(), 1, whole.size(), file);
}

/// Sends lines to the system logger as syslog(3) does (RFC 3164), for less: one call, and the
/// header made once a second. Any thread.
class LoggerSocket {
 public:
  LoggerSocket() { connectAnew(); }

  void send(std::string_view line) {
    const std::lock_guard lock(_mutex);
    const std::time_t now = std::time(nullptr);
    if (now != _second) setHeader(now);
    if (!sent(line) && !(connectAnew() && sent(line)))
      syslog(LOG_AUTHPRIV | LOG_INFO, "%.*s", static_cast<int>(line.size()), line.data());
  }

 private:
  void setHeader(std::time_t now) {
    _second = now;
    std::tm local{};
    localtime_r(&now, &local);
    const int length = std::snprintf(
        _header, sizeof _header, "<%d>%s %2d %02d:%02d:%02d quorin[%d]: ", LOG_AUTHPRIV | LOG_INFO,
        kMonths[static_cast<std::size_t>(local.tm_mon)], local.tm_mday, local.tm_hour, local.tm_min,
        local.tm_sec, getpid());
    _headerLength = static_cast<std::size_t>(length);
  }
  bool sent(std::string_view line) {
    iovec parts[] = {{_header, _headerLength}, {const_cast<char*>(line.data()), line.size()}};
    msghdr message{};
    message.msg_iov = parts;
    message.msg_iovlen = std::size(parts);
    return sendmsg(_socket, &message, MSG_NOSIGNAL) >= 0;
  }
  bool connectAnew() {
    if (_socket >= 0) close(_socket);
    _socket = loggerSocket(SOCK_DGRAM);
    return _socket >= 0;
  }

  static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  std::mutex _mutex;
  int _socket = -1;
  std::time_t _second = 0;
  char _header[64] = {};
  std::size_t _headerLength = 0;
};

// Never destroyed: other threads log until the process ends.
LogSink& systemSink() {
  static LogSink& sink = *new LogSink(systemLoggerSink());
  return sink;
}

std::atomic<LogSink*> knownPrintSink = nullptr;

[[gnu::noinline]] LogSink& makePrintSink() {
  static LogSink& sink = *new LogSink(standardOutputSink());
  knownPrintSink.store(&sink, std::memory_order_release);
  return sink;
}

LogSink& printSink() {
  LogSink* const known = knownPrintSink.load(std::memory_order_acquire);
  return known ? *known : makePrintSink();
}

}  // namespace

bool systemLoggerListens() {
  for (const int type : {SOCK_DGRAM, SOCK_STREAM}) {
    const int socket = loggerSocket(type);
    if (socket < 0) continue;
    close(socket);
    return true;
  }
  return false;
}

LogSink standardErrorSink() {
  return [](std::string_view line) { writeLine(stderr, line); };
}

LogSink standardOutputSink() {
  const bool terminal = isatty(STDOUT_FILENO) != 0;
  return [terminal](std::string_view line) {
    bufferLine(stdout, line);
    if (terminal) std::fflush(stdout);
  };
}

LogSink systemLoggerSink() {
  if (!systemLoggerListens()) return standardErrorSink();
  openlog("quorin", LOG_PID | LOG_NDELAY, LOG_AUTHPRIV);
  return [logger = std::make_shared<LoggerSocket>()](std::string_view line) { logger->send(line); };
}

void systemLog(std::string_view line) {
  if (const LogSink& sink = systemSink()) sink(line);
}
void printLine(std::string_view line) {
  if (log_state::printing) printSink()(line);
}
bool isSystemLogOn() { return static_cast<bool>(systemSink()); }
LogSink setSystemLogSink(LogSink sink) { return std::exchange(systemSink(), std::move(sink)); }
LogSink setPrintSink(LogSink sink) {
  log_state::printing = static_cast<bool>(sink);
  return std::exchange(printSink(), std::move(sink));
}
void flushPrintedLines() {
  if (isBuffered.load(std::memory_order_relaxed) &&
      isBuffered.exchange(false, std::memory_order_relaxed))
    std::fflush(stdout);
}

void writeOut(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

}  // namespace quorin

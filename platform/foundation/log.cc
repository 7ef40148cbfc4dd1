#include "platform/foundation/log.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

namespace quorin {

namespace {

// Of two threads' lines none ever stands within another: one lock around what is buffered, one
// write where nothing is.

void bufferLine(std::FILE* file, std::string_view line) {
  flockfile(file);
  fwrite_unlocked(line.data(), 1, line.size(), file);
  putc_unlocked('\n', file);
  funlockfile(file);
}

void writeLine(std::FILE* file, std::string_view line) {
  std::string whole(line);
  whole += '\n';
  std::fwrite(whole.data(), 1, whole.size(), file);
}

// Never destroyed: other threads log until the process ends.
LogSink& systemSink() {
  static LogSink& sink = *new LogSink(systemLoggerSink());
  return sink;
}

LogSink& printSink() {
  static LogSink& sink = *new LogSink(standardOutputSink());
  return sink;
}

}  // namespace

bool systemLoggerListens() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, "/dev/log");
  for (int type : {SOCK_DGRAM, SOCK_STREAM}) {
    const int fd = socket(AF_UNIX, type | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    const bool listens = connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    if (listens) return true;
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
  return [](std::string_view line) {
    syslog(LOG_AUTHPRIV | LOG_INFO, "%.*s", static_cast<int>(line.size()), line.data());
  };
}

void systemLog(std::string_view line) {
  if (const LogSink& sink = systemSink()) sink(line);
}
void printLine(std::string_view line) {
  if (const LogSink& sink = printSink()) sink(line);
}
bool isSystemLogOn() { return static_cast<bool>(systemSink()); }
bool isPrintingOn() { return static_cast<bool>(printSink()); }
LogSink setSystemLogSink(LogSink sink) { return std::exchange(systemSink(), std::move(sink)); }
LogSink setPrintSink(LogSink sink) { return std::exchange(printSink(), std::move(sink)); }
void flushPrintedLines() { std::fflush(stdout); }

void writeOut(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

}  // namespace quorin

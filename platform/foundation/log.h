#pragma once

#include <functional>
#include <string_view>

namespace quorin {

namespace log_state {
inline constinit bool printing = true;  // whether there is a sink
}

/// A log channel takes whole lines, without their line end. Sinks may be called on any thread. A
/// channel without a sink is off.
using LogSink = std::function<void(std::string_view line)>;

/// Writes one line to the system log.
void systemLog(std::string_view line);

/// Writes one line to standard output.
void printLine(std::string_view line);

/// Whether a line on this channel would go anywhere: spares making one that would not.
[[nodiscard]] bool isSystemLogOn();
[[nodiscard]] inline bool isPrintingOn() { return log_state::printing; }

/// Replaces a channel's sink and gives back the one before. Requires: no other thread is logging.
LogSink setSystemLogSink(LogSink sink);
LogSink setPrintSink(LogSink sink);

/// Where the channels write unless told otherwise: syslog's authpriv facility, since the lines
/// carry identities, or standard error when no system logger listens; and standard output, each
/// line flushed when it is a terminal.
[[nodiscard]] bool systemLoggerListens();
[[nodiscard]] LogSink systemLoggerSink();
[[nodiscard]] LogSink standardErrorSink();
[[nodiscard]] LogSink standardOutputSink();

/// Ends buffering of the lines printed so far.
void flushPrintedLines();

/// Writes text to standard output as it is, behind the lines printed so far. For toolkits.
void writeOut(std::string_view text);

}  // namespace quorin

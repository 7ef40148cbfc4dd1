#pragma once

/// The names that the client library and the service share on the bus.
namespace quorin::bus {

inline constexpr char kName[] = "org.brennic.BasebandManager1";
inline constexpr char kPath[] = "/org/brennic/BasebandManager1";
inline constexpr char kInterface[] = "org.brennic.BasebandManager1";

/// Commands of the client library: (command, input) -> (status, message, output).
inline constexpr char kPerform[] = "Perform";
inline constexpr char kPerformTakes[] = "sa{sv}";
inline constexpr char kPerformGives[] = "isa{sv}";
/// Events of the caller's session: gives the descriptor of a private connection.
inline constexpr char kEventsOn[] = "EventsOn";
inline constexpr char kEventsOff[] = "EventsOff";
/// What `metricctl status` shows, as JSON.
inline constexpr char kStatus[] = "Status";
/// Hands the service one event as if its source had given it.
inline constexpr char kFeed[] = "Feed";
/// Holds the source, lets it go on, or lets it give so many metrics while held.
inline constexpr char kPause[] = "Pause";
inline constexpr char kResume[] = "Resume";
inline constexpr char kStep[] = "Step";

/// On the private connection: one signal an event: (sequence number, kind, event). Numbers count up
/// by one from 1 in each connection; a gap is so many events that were left out.
inline constexpr char kEventsInterface[] = "org.brennic.BasebandManager1.Events";
inline constexpr char kEventSignal[] = "Event";
inline constexpr char kEventTakes[] = "tsa{sv}";

/// Names another bus than the system's, for trials and tests.
inline constexpr char kAddressVariable[] = "BASEBAND_BUS_ADDRESS";

/// How long a command may take.
inline constexpr unsigned long kCommandMicroseconds = 5'000'000;

}  // namespace quorin::bus

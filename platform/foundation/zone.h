#pragma once

#include <cstdint>
#include <string>

namespace quorin {

/// What the local zone is at an instant, and for how long that surely holds.
struct LocalZone {
  std::int64_t from = 0;    // seconds since 1970 UTC
  std::int64_t until = 0;   // and no longer
  std::int32_t offset = 0;  // seconds east of Greenwich
  std::string abbreviation;
  std::uint64_t serial = 0;  // another one for every look at the zone's rules

  [[nodiscard]] bool holdsAt(std::int64_t seconds) const {
    return seconds >= from && seconds < until;
  }
};

/// The zone that is in force now, at that instant: a change of `TZ` or of the system's zone file is
/// noticed at every call. Holds until the next call. Main thread.
[[nodiscard]] const LocalZone& localZone(std::int64_t seconds);

}  // namespace quorin

#pragma once

#include <array>
#include <cstdint>

#include "basebandd/simulator/Cell.h"
#include "messages/lte/names.h"

namespace quorin::simulator {

struct State;

namespace scc {

inline constexpr std::int32_t kDeconfigured = valueOf(names::SCC_STATE, "SCC_STATE_DECONFIGURED");
inline constexpr std::int32_t kDeactivated =
    valueOf(names::SCC_STATE, "SCC_STATE_CONFIGURED_DEACTIVATED");
inline constexpr std::int32_t kActivated = valueOf(names::SCC_STATE, "SCC_STATE_ACTIVATED");

}  // namespace scc

/// One secondary component carrier.
struct SecondaryCarrier {
  std::int32_t state = scc::kDeconfigured;
  const Cell* cell = nullptr;  // while it is configured
  std::int64_t since = 0;      // ms since the drive began
  std::int64_t weakSince = -1;
};

/// Carrier aggregation (TS 36.300 5.5): RRC configures secondary cells of the serving sector for
/// heavy traffic, MAC activates them while data goes through and lets them rest again.
struct Aggregation {
  std::array<SecondaryCarrier, 2> carriers;
  std::int64_t busyAt = 0;   // when a burst last went through
  std::int64_t heavyAt = 0;  // when a heavy session last ran

  void deconfigureAll(std::int64_t now);
};

void stepAggregation(State& state);

}  // namespace quorin::simulator

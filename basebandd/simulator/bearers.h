#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "basebandd/simulator/Random.h"
#include "basebandd/simulator/streams.h"

namespace quorin::simulator {

struct State;

/// One packet data connection that the phone keeps or makes.
struct BearerRow {
  std::uint32_t cid;
  std::uint32_t nsapi;  // the EPS bearer identity on LTE
  std::string_view apn;
  std::int32_t type;  // PDP_TYPE
  bool onGsm;         // GSM is too slow for some
  bool onDemand;      // only while a session asks for it
  std::vector<std::uint8_t> (*address)(Random& random);
  std::span<const std::uint8_t> nameServer;
};

struct Bearer {
  const BearerRow* row;
  std::vector<std::uint8_t> address;  // empty: down
  std::int64_t wantedSince = -1;      // ms since the drive began; -1: it is as it should be
};

struct Bearers {
  explicit Bearers(std::uint64_t seed);

  Random random;
  std::vector<Bearer> all;
};

void stepBearers(State& state);

}  // namespace quorin::simulator

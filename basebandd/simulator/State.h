#pragma once

#include <cstdint>

#include "basebandd/simulator/Car.h"
#include "basebandd/simulator/RadioMap.h"
#include "basebandd/simulator/ServingQuality.h"
#include "basebandd/simulator/Traffic.h"
#include "basebandd/simulator/aggregation.h"
#include "basebandd/simulator/bearers.h"
#include "basebandd/simulator/connections.h"
#include "basebandd/simulator/mobility.h"
#include "basebandd/simulator/registration.h"
#include "basebandd/simulator/uplink.h"

namespace quorin::simulator {

/// The drive at one moment: everything that is reported comes from here. One thread.
struct State {
  /// The grid on which things happen; every timer of the model is a multiple of it.
  static constexpr std::int64_t kStepMs = 40;

  explicit State(std::uint64_t seed);

  /// Goes on by one step.
  void step();

  std::int64_t now = 0;  // ms since the drive began
  Car car;
  RadioMap radio;
  Traffic traffic;
  Mobility mobility;
  ServingQuality quality;
  LteConnection lte;
  UmtsConnection umts;
  GsmCall gsm;
  Registration registration;
  Bearers bearers;
  Aggregation aggregation;
  Uplink uplink;
};

}  // namespace quorin::simulator

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

State::State(std::uint64_t seed)
    : car(seed),
      radio(seed, car.at()),
      traffic(seed),
      quality(seed),
      lte(seed),
      registration(seed),
      bearers(seed),
      uplink(seed) {
  radio.measure(0, car);
}

void State::step() {
  now += kStepMs;
  if (now % RadioMap::kPeriodMs == 0) {
    car.drive(static_cast<double>(RadioMap::kPeriodMs) / 1000);
    radio.measure(now, car);
  }
  traffic.step(now);
  stepMobility(*this);
  stepLteConnection(*this);
  stepUmtsConnection(*this);
  stepGsmCall(*this);
  stepRegistration(*this);
  stepBearers(*this);
  stepAggregation(*this);
  stepUplink(*this);
  stepServingQuality(*this);
}

}  // namespace quorin::simulator

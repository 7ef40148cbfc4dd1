#include "basebandd/simulator/State.h"

namespace quorin::simulator {

namespace {

constexpr std::int64_t kSetupMs = 1000;

}  // namespace

void stepGsmCall(State& state) {
  GsmCall& call = state.gsm;
  const bool wanted = technology(state) == Technology::gsm && state.traffic.isCalling() &&
                      !state.registration.area.isPending &&
                      state.now - state.mobility.since >= (call.isDedicated ? 0 : kSetupMs);
  if (wanted == call.isDedicated) return;
  call.isDedicated = wanted;
  call.since = state.now;
}

}  // namespace quorin::simulator

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

namespace {

using namespace umts_rrc;

constexpr std::int64_t kSetupMs = 400;
constexpr std::int64_t kReleaseMs = 120;
constexpr std::int64_t kLostMs = 1000;
constexpr std::int64_t kFailureMs = 200;
constexpr double kLeastEcNo = -22;   // dB
constexpr double kLeastRscp = -119;  // dBm

/// How long each connected state lasts without traffic, and what follows it.
struct Quiet {
  std::int32_t state;
  std::int64_t ms;
  std::int32_t next;
};
constexpr Quiet kQuiet[] = {
    {kDch, 4000, kFach},
    {kFach, 5000, kUraPch},
    {kUraPch, 20000, kRelease},
};

bool isBusy(const State& state) {
  return state.traffic.isTransferring() || state.traffic.isCalling() ||
         state.registration.area.isPending;
}

void begin(State& state) {
  const bool signals = state.registration.area.isPending;
  if (!signals && !state.traffic.isActive()) return;
  const std::int32_t registering = state.mobility.cameFromOther ? kReselected : kRegistering;
  state.umts.establishmentCause = signals ? registering : state.traffic.umtsCause();
  state.umts.releaseCause = -1;
  state.umts.move(state.now, kEstablish);
}

bool lostLink(State& state) {
  const Measurement& measured = state.radio.of(*state.mobility.cell);
  const bool lost = measured.quality < kLeastEcNo || measured.level < kLeastRscp;
  std::int64_t& since = state.umts.lostSync;
  if (!lost)
    since = -1;
  else if (since < 0)
    since = state.now;
  return lost && state.now - since >= kLostMs;
}

void carryOn(State& state) {
  UmtsConnection& umts = state.umts;
  if (umts.state == kDch && lostLink(state)) return umts.move(state.now, kFailure);
  if (isBusy(state)) {
    umts.activeAt = state.now;
    if (umts.state != kDch) umts.move(state.now, umts.state == kUraPch ? kFach : kDch);
    return;
  }
  for (const Quiet& row : kQuiet)
    if (row.state == umts.state && state.now - umts.activeAt >= row.ms) {
      umts.activeAt = state.now;
      return umts.move(state.now, row.next);
    }
}

}  // namespace

void UmtsConnection::move(std::int64_t now, std::int32_t to) {
  state = to;
  since = now;
  wasEverActive = true;
}

void UmtsConnection::release(std::int64_t now, std::int32_t to, std::int32_t why) {
  establishmentCause = -1;
  releaseCause = why;
  lostSync = -1;
  move(now, to);
}

void stepUmtsConnection(State& state) {
  UmtsConnection& umts = state.umts;
  if (technology(state) != Technology::umts || umts.since == state.now) return;
  const std::int64_t lasted = state.now - umts.since;
  if (umts.state == kIdle) return begin(state);
  if (umts.isConnected()) return carryOn(state);
  if (umts.state == kEstablish && lasted >= kSetupMs) {
    umts.activeAt = state.now;
    umts.move(state.now, kDch);
  } else if (umts.state == kRelease && lasted >= kReleaseMs) {
    umts.release(state.now, kIdle, kNormalEvent);
  } else if (umts.state == kFailure && lasted >= kFailureMs) {
    umts.release(state.now, kIdle, kDownlinkLost);
  }
}

}  // namespace quorin::simulator

#include "basebandd/simulator/bearers.h"

#include "basebandd/simulator/State.h"
#include "messages/nas/names.h"

namespace quorin::simulator {

namespace {

constexpr std::int32_t kIpv4 = valueOf(names::PDP_TYPE, "PDP_TYPE_IPv4");
constexpr std::int32_t kIpv6 = valueOf(names::PDP_TYPE, "PDP_TYPE_IPv6");
constexpr std::int32_t kServed = valueOf(names::KREG_STATUS, "KREG_STATUS_NORMAL_SERVICE");

std::uint8_t byteOf(Random& random) { return static_cast<std::uint8_t>(random.next() >> 56); }

// An address of the operator's own, 10.64.0.0/10.
std::vector<std::uint8_t> ipv4(Random& random) {
  return {10, static_cast<std::uint8_t>(64 | (byteOf(random) & 63)), byteOf(random),
          static_cast<std::uint8_t>(2 + byteOf(random) % 250)};
}

// A prefix of the documentation range 2001:db8::/32 and an interface identifier.
std::vector<std::uint8_t> ipv6(Random& random) {
  std::vector<std::uint8_t> address = {0x20, 0x01, 0x0D, 0xB8, 0x00, 0x2A};
  while (address.size() < 8) address.push_back(byteOf(random));
  address.resize(15);
  address.push_back(static_cast<std::uint8_t>(1 + byteOf(random) % 250));
  return address;
}

constexpr std::uint8_t kIpv4NameServer[] = {10, 64, 0, 1};
constexpr std::uint8_t kIpv6NameServer[] = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0,
                                            0,    0,    0,    0,    0, 0, 0, 0x53};

constexpr BearerRow kRows[] = {
    {1, 5, "internet", kIpv4, true, false, ipv4, kIpv4NameServer},
    {2, 6, "ims", kIpv6, false, false, ipv6, kIpv6NameServer},
    {3, 7, "mms", kIpv4, true, true, ipv4, kIpv4NameServer},
};

constexpr std::int64_t kSetupMs = 320;  // each, after the one before

bool isServed(const State& state) {
  if (technology(state) == Technology::lte) return state.registration.eps.status == kServed;
  return state.registration.area.psStatus == kServed;
}

bool isWanted(const State& state, const BearerRow& row) {
  if (technology(state) == Technology::gsm && !row.onGsm) return false;
  return !row.onDemand || (state.traffic.session() && state.traffic.session()->needsOwnBearer);
}

}  // namespace

Bearers::Bearers(std::uint64_t seed) : random(seed, streams::kBearers) {
  for (const BearerRow& row : kRows) all.push_back({&row, {}});
}

void stepBearers(State& state) {
  // A bearer outlives a moment without registration, as contexts do (TS 23.401 5.3.3); a lost
  // registration takes it along.
  const bool isRegistered =
      !state.registration.eps.listed.empty() || state.registration.area.locationArea != 0;
  if (technology(state) == Technology::none) return;
  for (Bearer& bearer : state.bearers.all) {
    const bool isUp = !bearer.address.empty();
    const bool wanted = isRegistered && isWanted(state, *bearer.row);
    if (wanted == isUp || (wanted && !isServed(state))) {
      bearer.wantedSince = -1;
      continue;
    }
    if (bearer.wantedSince < 0) bearer.wantedSince = state.now;
    if (state.now - bearer.wantedSince < kSetupMs * bearer.row->cid) continue;
    bearer.address =
        wanted ? bearer.row->address(state.bearers.random) : std::vector<std::uint8_t>{};
    bearer.wantedSince = -1;
  }
}

}  // namespace quorin::simulator

#include "basebandd/simulator/Traffic.h"

#include <algorithm>
#include <iterator>

#include "basebandd/simulator/streams.h"
#include "messages/lte/names.h"
#include "messages/umts/names.h"

namespace quorin::simulator {

namespace {

constexpr std::int32_t lte(std::string_view name) {
  for (const EnumName& row : names::KLTE_RRC_CAUSE.names)
    if (row.name.substr(15) == name) return row.value;
  return -1;
}

constexpr std::int32_t umts(std::string_view name) {
  for (const EnumName& row : names::KRRC_EST.names)
    if (row.name.substr(9) == name) return row.value;
  return -1;
}

// clang-format off
constexpr TrafficKind kKinds[] = {
    // share, causes,                                                 length burst pause M  heavy  own bearer
    {38, lte("EST_MO_DATA"),       umts("ORIG_INTERACT_CALL"),        18,  2.5, 3.0, 16, false, false},
    {27, lte("EST_MO_DATA"),       umts("ORIG_BACKGND_CALL"),         60, 12.0, 2.0, 40, true,  false},
    {17, lte("EST_MT_ACC"),        umts("TERM_BACKGND_CALL"),          5,  1.0, 2.0,  6, false, false},
    {10, lte("EST_DELAY_TOL_ACC"), umts("DELAY_TOLERANT_ACCESS"),      4,  1.5, 1.0,  8, false, false},
    { 8, lte("EST_MO_DATA"),       umts("ORIG_INTERACT_CALL"),        15,  4.0, 2.0, 25, false, true},
};
// clang-format on

static_assert(std::ranges::none_of(kKinds, [](const TrafficKind& kind) {
  return kind.lteCause < 0 || kind.umtsCause < 0;
}));

// A voice call is data to LTE; only the older technologies know it as a call.
constexpr std::int32_t kOutgoingLte = lte("EST_MO_DATA");
constexpr std::int32_t kIncomingLte = lte("EST_MT_ACC");
constexpr std::int32_t kOutgoingUmts = umts("ORIG_CONV_CALL");
constexpr std::int32_t kIncomingUmts = umts("TERM_CONV_CALL");

constexpr double kGapSeconds = 22;
constexpr double kShortestGapSeconds = 5;
constexpr double kBetweenCallsSeconds = 60;
constexpr double kCallSeconds = 20;
constexpr double kShortestCallSeconds = 8;

std::int64_t milliseconds(double seconds) { return static_cast<std::int64_t>(seconds * 1000); }

}  // namespace

Traffic::Traffic(std::uint64_t seed)
    : _random(seed, streams::kTraffic),
      _sessionChangeAt(milliseconds(_random.uniform(6, 20))),
      _callChangeAt(milliseconds(_random.uniform(30, 120))) {}

void Traffic::step(std::int64_t now) {
  if (now >= _sessionChangeAt) {
    if (_session) {
      _session = nullptr;
      _inBurst = false;
      _sessionChangeAt = now + milliseconds(kShortestGapSeconds + _random.waiting(kGapSeconds));
    } else {
      double left = _random.uniform() * 100;
      _session = std::begin(kKinds);
      while (std::next(_session) != std::end(kKinds) && left >= _session->share)
        left -= (_session++)->share;
      _inBurst = true;
      _sessionChangeAt = now + milliseconds(1 + _random.waiting(_session->seconds));
      _burstChangeAt = now + milliseconds(0.5 + _random.waiting(_session->burstSeconds));
    }
  }
  if (_session && now >= _burstChangeAt) {
    _inBurst = !_inBurst;
    const double mean = _inBurst ? _session->burstSeconds : _session->pauseSeconds;
    _burstChangeAt = now + milliseconds(0.3 + _random.waiting(mean));
  }
  if (now >= _callChangeAt) {
    _calling = !_calling;
    _incoming = _calling && _random.chance(50);
    _callChangeAt =
        now + milliseconds(_calling ? kShortestCallSeconds + _random.waiting(kCallSeconds)
                                    : _random.waiting(kBetweenCallsSeconds));
  }
}

std::int32_t Traffic::lteCause() const {
  if (_session) return _session->lteCause;
  return _incoming ? kIncomingLte : kOutgoingLte;
}

std::int32_t Traffic::umtsCause() const {
  if (_calling) return _incoming ? kIncomingUmts : kOutgoingUmts;
  return _session->umtsCause;
}

}  // namespace quorin::simulator

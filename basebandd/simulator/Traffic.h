#pragma once

#include <cstdint>

#include "basebandd/simulator/Random.h"

namespace quorin::simulator {

/// One thing people do with a phone, and how long and how hard it uses the network.
struct TrafficKind {
  double share;                // of a hundred sessions
  std::int32_t lteCause;       // KLTE_RRC_CAUSE
  std::int32_t umtsCause;      // KRRC_EST
  double seconds;              // mean length
  double burstSeconds;         // mean length of a transfer within it
  double pauseSeconds;         // mean length of a pause
  std::uint32_t uplinkBlocks;  // M of TS 36.213 5.1.1.1 while it transfers
  bool isHeavy;                // fills more than one carrier
  bool needsOwnBearer;         // picture messages go over an APN of their own
};

/// What the phone's owner does: data sessions with pauses in them, and now and then a call.
class Traffic {
 public:
  explicit Traffic(std::uint64_t seed);

  /// Times are ms since the drive began; to be called at ascending times.
  void step(std::int64_t now);

  /// The running data session, or null.
  [[nodiscard]] const TrafficKind* session() const { return _session; }
  /// A burst of the session is going through right now.
  [[nodiscard]] bool isTransferring() const { return _session && _inBurst; }
  [[nodiscard]] bool isCalling() const { return _calling; }
  [[nodiscard]] bool isIncomingCall() const { return _calling && _incoming; }
  [[nodiscard]] bool isActive() const { return _session || _calling; }
  /// KLTE_RRC_CAUSE and KRRC_EST of what runs. Requires: isActive().
  [[nodiscard]] std::int32_t lteCause() const;
  [[nodiscard]] std::int32_t umtsCause() const;

 private:
  Random _random;
  const TrafficKind* _session = nullptr;
  bool _inBurst = false;
  bool _calling = false;
  bool _incoming = false;
  std::int64_t _sessionChangeAt;
  std::int64_t _burstChangeAt = 0;
  std::int64_t _callChangeAt;
};

}  // namespace quorin::simulator

#pragma once

#include <cstdint>
#include <vector>

#include "basebandd/simulator/Cell.h"

namespace quorin::simulator {

struct State;
class RadioMap;

/// The numbers of one serving cell and one neighbour that decide a reselection, all in dB or dBm.
struct Candidates {
  const Carrier& serving;
  const Carrier& neighbour;
  double servingLevel;
  double neighbourLevel;
  double neighbourOffset = 0;  // the network's Ocn for a handover to this neighbour
};

/// The criterion of TS 36.304 5.2.4.5 (and its twins in TS 25.304 and 45.008), to be met for
/// t-Reselection: a higher priority over its high threshold; a lower one over its low threshold
/// while the serving cell is under its own; an equal one when it ranks better by the hysteresis.
[[nodiscard]] bool meetsReselection(const Candidates& cells);

/// Events A3, A4 and A5 of TS 36.331 5.5.4 (B2 towards UMTS), to be met for their time to trigger.
[[nodiscard]] bool meetsHandover(const Candidates& cells);
[[nodiscard]] std::int64_t timeToTriggerMs(const Carrier& serving, const Carrier& neighbour);

inline constexpr double kA3Offset = 3;      // dB
inline constexpr double kA3Hysteresis = 1;  // dB
// The network knows from the UE history information where the phone comes from, and does not send
// it back at once (TS 36.300 22.4.2).
inline constexpr double kReturnOffset = -4;  // dB
inline constexpr std::int64_t kRecentlyLeftMs = 8000;

/// Since when each cell has met the criterion in force, by index; -1: it does not.
class Held {
 public:
  Held() : _since(cells().size(), -1) {}

  void reset() { _since.assign(_since.size(), -1); }
  /// How long the criterion has held now; -1 while it does not.
  std::int64_t note(const Cell& cell, bool met, std::int64_t now) {
    std::int64_t& since = _since[cell.index];
    since = met ? (since < 0 ? now : since) : -1;
    return met ? now - since : -1;
  }

 private:
  std::vector<std::int64_t> _since;
};

/// What the modem does about mobility: reselect by itself, be handed over, or neither.
enum class Mode : std::uint8_t { between, idle, connected };

/// Where the modem is camped, and what it is about to do about it.
struct Mobility {
  const Cell* cell = nullptr;
  std::int64_t since = 0;  // ms since the drive began
  Held held;
  Mode mode = Mode::between;
  const Cell* previous = nullptr;  // the serving cell before
  const Cell* target = nullptr;    // of a change under way
  std::int64_t targetAt = 0;       // when it is to be taken
  bool staysConnected = false;     // the change takes the connection along
  std::uint64_t reported = 0;      // measurement reports so far
  bool cameFromOther = false;      // the latest change was one of technology
  std::int64_t unsuitableSince = -1;
};

[[nodiscard]] Technology technology(const State& state);

/// A cell that the modem may camp on: strong enough and in no forbidden area.
[[nodiscard]] bool isSuitable(const State& state, const Cell& cell);

/// Whether the modem measures this neighbour now: always on the serving frequency and on higher
/// priorities, otherwise once the serving cell is under its search threshold.
[[nodiscard]] bool isMeasured(const State& state, const Cell& cell);

/// The measured neighbours of a technology, strongest first.
[[nodiscard]] std::vector<const Cell*> neighbours(const State& state, Technology technology);

/// The best suitable cell of these technologies, by priority and then by level, or null.
[[nodiscard]] const Cell* bestSuitable(const State& state, Technology first, Technology last);

/// Takes the cell as the serving one.
void campOn(State& state, const Cell& cell);

void stepMobility(State& state);

}  // namespace quorin::simulator

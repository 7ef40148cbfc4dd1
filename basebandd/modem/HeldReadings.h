#pragma once

#include <vector>

#include "basebandd/modem/Reading.h"
#include "platform/platform.h"

namespace quorin::modem {

/// What a modem's service tells only now and then: the cell list and the levels, each as long as it
/// counts without being told again. One thread.
class HeldReadings {
 public:
  static constexpr Milliseconds kCellsHold{20'000};  // a few polls
  /// As long as the service calls its own quality recent.
  static constexpr Milliseconds kSignalHold{60'000};

  /// Another modem is followed from now on.
  void start();
  void takeCells(std::vector<Readings> cells);
  /// The levels have moved: the service tells them only then.
  void noteSignal() { _signalAt = currentClock().uptime(); }

  /// The latest list, or none when it is too old.
  [[nodiscard]] std::vector<Readings> cells() const;
  /// The levels, or none when they have not moved for long and the service, by the modem's and the
  /// levels' own properties, does not read them or does not call its quality recent.
  [[nodiscard]] Readings signal(const Readings& modem, const Readings& signal) const;

 private:
  std::vector<Readings> _cells;
  Milliseconds _cellsAt{0};
  Milliseconds _signalAt{0};
};

}  // namespace quorin::modem

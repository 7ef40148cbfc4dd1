#include "basebandd/modem/HeldReadings.h"

namespace quorin::modem {

namespace {

bool isYoungerThan(Milliseconds age, Milliseconds at) { return currentClock().uptime() - at < age; }

}  // namespace

void HeldReadings::start() {
  _cells.clear();
  noteSignal();
}

void HeldReadings::takeCells(std::vector<Readings> cells) {
  _cells = std::move(cells);
  _cellsAt = currentClock().uptime();
}

std::vector<Readings> HeldReadings::cells() const {
  return isYoungerThan(kCellsHold, _cellsAt) ? _cells : std::vector<Readings>{};
}

Readings HeldReadings::signal(const Readings& modem, const Readings& signal) const {
  const auto quality = valueAt(modem, "SignalQuality", std::vector<Reading>{});
  const bool isRecent = quality.size() == 2 && quality[1] == Reading{true};
  const bool isRead = isRecent && valueAt(signal, "Rate", std::int64_t{0}) > 0;
  return isRead || isYoungerThan(kSignalHold, _signalAt) ? signal : Readings{};
}

}  // namespace quorin::modem

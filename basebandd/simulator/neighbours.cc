#include <algorithm>

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

Technology technology(const State& state) {
  return state.mobility.cell ? state.mobility.cell->technology() : Technology::none;
}

bool isSuitable(const State& state, const Cell& cell) {
  if (state.radio.srxlev(cell) <= 0 || !state.radio.isDetected(cell)) return false;
  return cell.technology() != Technology::lte ||
         !state.registration.isForbidden(cell.site->trackingArea);
}

bool isMeasured(const State& state, const Cell& cell) {
  const Cell* serving = state.mobility.cell;
  if (!serving || &cell == serving || !state.radio.isDetected(cell)) return false;
  return cell.carrier == serving->carrier || cell.carrier->priority > serving->carrier->priority ||
         state.radio.srxlev(*serving) <= serving->carrier->sNonIntraSearch;
}

std::vector<const Cell*> neighbours(const State& state, Technology technology) {
  std::vector<const Cell*> found;
  for (const Cell& cell : cells())
    if (cell.technology() == technology && isMeasured(state, cell)) found.push_back(&cell);
  std::ranges::stable_sort(found, std::ranges::greater{},
                           [&](const Cell* cell) { return state.radio.of(*cell).level; });
  return found;
}

const Cell* bestSuitable(const State& state, Technology first, Technology last) {
  const Cell* best = nullptr;
  const auto rank = [&](const Cell& cell) {
    return std::pair(cell.carrier->priority, state.radio.of(cell).level);
  };
  for (const Cell& cell : cells())
    if (cell.technology() >= first && cell.technology() <= last && isSuitable(state, cell) &&
        (!best || rank(cell) > rank(*best)))
      best = &cell;
  return best;
}

}  // namespace quorin::simulator

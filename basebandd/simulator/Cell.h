#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "basebandd/simulator/Carrier.h"
#include "basebandd/simulator/town.h"

namespace quorin::simulator {

/// One sector of one site on one carrier, with everything that identifies it.
struct Cell {
  std::size_t index;  // its place in `cells()`
  const Site* site;
  std::size_t siteIndex;
  std::uint32_t sector;  // 0 to 2
  const Carrier* carrier;
  Point boresight;        // unit vector
  std::uint32_t channel;  // EARFCN, UARFCN or ARFCN
  std::uint32_t code;     // PCI, primary scrambling code or BSIC; never twice on one channel
  std::uint32_t cellID;   // 28-bit E-UTRAN, 28-bit UTRAN, or 16-bit GSM cell identity

  [[nodiscard]] Technology technology() const { return carrier->technology; }
  /// LAC of a UMTS or GSM cell.
  [[nodiscard]] std::uint32_t locationArea() const {
    return technology() == Technology::umts ? site->umtsLocationArea : site->gsmLocationArea;
  }
};

/// All cells of the town. They stay where they are until the process ends.
[[nodiscard]] std::span<const Cell> cells();

}  // namespace quorin::simulator

#include "basebandd/simulator/Cell.h"

#include <string_view>
#include <vector>

#include "basebandd/simulator/arithmetic.h"

namespace quorin::simulator {

namespace {

// The letters of `Site::carriers`, in the order of `carriers()`.
constexpr std::string_view kLetters = "738UG";

constexpr std::uint32_t kFirstEnb = 0x12D0;
constexpr std::uint32_t kRnc = 0x21;
constexpr std::uint32_t kFirstGsmCell = 1040;
constexpr std::uint32_t kNetworkColour = 2;

// Physical cell identities of one carrier stay apart for up to fifteen sites: 33 a site, modulo
// 504.
std::uint32_t code(Technology technology, std::uint32_t site, std::uint32_t sector,
                   std::uint32_t layer) {
  if (technology == Technology::lte) return (33 * site + 60 * layer + sector) % 504;
  if (technology == Technology::umts) return 24 * site + 8 * sector + 1;
  return 8 * kNetworkColour + (site + sector) % 8;
}

std::uint32_t cellID(Technology technology, std::uint32_t site, std::uint32_t sector,
                     std::uint32_t layer) {
  if (technology == Technology::lte) return (kFirstEnb + site) << 8 | (3 * layer + sector + 1);
  if (technology == Technology::umts) return kRnc << 16 | (100 + 10 * site + sector);
  return kFirstGsmCell + 3 * site + sector;
}

std::vector<Cell> built() {
  std::vector<Cell> all;
  for (std::size_t s = 0; s < sites().size(); ++s) {
    const Site& site = sites()[s];
    for (std::uint32_t layer = 0; layer < kLetters.size(); ++layer) {
      if (site.carriers.find(kLetters[layer]) == std::string_view::npos) continue;
      const Carrier& carrier = carriers()[layer];
      for (std::uint32_t sector = 0; sector < 3; ++sector) {
        const double turns = (site.firstAzimuth + 120 * sector) / 360;
        const auto number = static_cast<std::uint32_t>(s);
        const bool gsm = carrier.technology == Technology::gsm;
        all.push_back({all.size(),
                       &site,
                       s,
                       sector,
                       &carrier,
                       {cosine(turns - 0.25), cosine(turns)},
                       gsm ? 10 + 2 * (3 * number + sector) : carrier.channel,
                       code(carrier.technology, number, sector, layer),
                       cellID(carrier.technology, number, sector, layer)});
      }
    }
  }
  return all;
}

}  // namespace

std::span<const Cell> cells() {
  static const std::vector<Cell> all = built();
  return all;
}

}  // namespace quorin::simulator

#include "basebandd/simulator/sim_card.h"

namespace quorin::simulator {

namespace {

// The length, then the identity: digits in swapped halves, the first beside "odd count, IMSI".
constexpr std::uint8_t kImsi[] = {0x08, 0x09, 0x10, 0x10, 0x10, 0x32, 0x54, 0x76, 0x98};
// 8900 1010 1234 5678 9015, the last one the check digit of ITU-T E.118; halves swapped.
constexpr std::uint8_t kIccid[] = {0x98, 0x00, 0x01, 0x01, 0x21, 0x43, 0x65, 0x87, 0x09, 0x51};
// One byte of the operator's own meaning, the rest unused.
constexpr std::uint8_t kGid1[] = {0x01, 0xFF, 0xFF, 0xFF};

constexpr SimFile kFiles[] = {
    {"EF IMSI", 0x6F07, kImsi},
    {"EF ICCID", 0x2FE2, kIccid},
    {"EF GID1", 0x6F3E, kGid1},
};

}  // namespace

std::span<const SimFile> simFiles() { return kFiles; }

std::span<const std::uint8_t> imsiIdentity() { return std::span(kImsi).subspan(1); }

}  // namespace quorin::simulator

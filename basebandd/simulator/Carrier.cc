#include "basebandd/simulator/Carrier.h"

#include "messages/shared/names.h"

namespace quorin::simulator {

namespace {

constexpr std::int32_t kUmtsBand1 = valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_I_IMT_2000");
constexpr std::int32_t kGsm900 = valueOf(names::SYS_BAND, "SYS_BAND_GSM_PGSM_900");

// Channel to frequency: TS 36.101 5.7.3, 25.101 5.4.3, 45.005 2.
// clang-format off
constexpr Carrier kCarriers[] = {
    //                channel  uplink band sysBand     MHz     bw code  N  power gain prio qRxLev hyst search low high lowX
    {Technology::lte,    3000, 21000,  7,  -1,         2645.0, 20, 5, 100, 18.0, 15.0, 7, -124, 4, 24,  8, 26, 12},
    {Technology::lte,    1300, 19300,  3,  -1,         1815.0, 20, 5, 100, 18.0, 15.0, 6, -124, 4, 22,  8, 22, 10},
    {Technology::lte,    6300, 24300, 20,  -1,          806.0, 10, 3,  50, 21.0, 12.0, 5, -124, 4, 20,  6, 12,  8},
    {Technology::umts,  10638,     0,  1,  kUmtsBand1, 2127.6,  5, 0,   0, 33.0, 15.0, 3, -115, 4, 14,  4, 18,  8},
    {Technology::gsm,       0,     0,  0,  kGsm900,     947.4,  0, 0,   0, 43.0, 15.0, 1, -108, 4, 60,  0, 60,  6},
};
// clang-format on

}  // namespace

std::span<const Carrier> carriers() { return kCarriers; }

}  // namespace quorin::simulator

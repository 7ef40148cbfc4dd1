#pragma once

#include <cstdint>
#include <optional>

#include "basebandd/modem/Reading.h"

namespace quorin::modem {

/// The number that a message field takes for a reading. Empty: the reading is absent, of another
/// kind, the source's word for "unknown", or none that the quantity can have.
using Conversion = std::optional<std::int64_t> (*)(const Reading& reading);

// Levels, given as dBm or dB, to the nearest unit; with "Halves" in the name in half dB.
[[nodiscard]] std::optional<std::int64_t> rsrp(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> rsrq(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> rsrqHalves(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> snrHalves(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> rssi(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> rscp(const Reading& reading);

// Report indices of levels: 3GPP TS 36.133 9.1.4 and 9.1.7, 25.133 9.1.1 and 9.1.2.
[[nodiscard]] std::optional<std::int64_t> rsrpIndex(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> rsrqIndex(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> rscpIndex(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> ecnoIndex(const Reading& reading);
// RXLEV is given as its index (3GPP TS 45.008 8.1.4).
[[nodiscard]] std::optional<std::int64_t> rxlev(const Reading& reading);

// Channel numbers, and what they say.
[[nodiscard]] std::optional<std::int64_t> earfcn(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> eutraUplink(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> eutraBand(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> uarfcn(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> utraBand(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> utraSysBand(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> arfcn(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> gsmSysBand(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> scramblingCode(const Reading& reading);

// Hexadecimal texts. Of area codes 0, FFFE and FFFF stand for "none" (3GPP TS 24.008 10.5.1.3).
[[nodiscard]] std::optional<std::int64_t> areaCode(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> cellIdentity16(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> cellIdentity28(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> physicalCellIdentity(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> baseStationIdentityCode(const Reading& reading);

// Of an operator's five or six digits.
[[nodiscard]] std::optional<std::int64_t> mobileCountryCode(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> mobileNetworkCode(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> networkCodeDigits(const Reading& reading);

// Enumerations of the source as ours.
[[nodiscard]] std::optional<std::int64_t> registrationStatus(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> ueModeOfOperation(const Reading& reading);
[[nodiscard]] std::optional<std::int64_t> pdpType(const Reading& reading);

}  // namespace quorin::modem

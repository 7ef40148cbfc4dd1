#include "basebandd/modem/conversions.h"

#include <charconv>
#include <span>

#include "basebandd/levels.h"
#include "basebandd/modem/bands.h"
#include "basebandd/modem/codings.h"
#include "messages/nas/names.h"

namespace quorin::modem {

namespace {

using Number = std::optional<std::int64_t>;

// What a quantity can be, with room beyond its report range; NaN is in no range.
struct Range {
  double low;
  double high;
};
constexpr Range kRsrp = {-160, -20};
constexpr Range kRsrq = {-40, 10};
constexpr Range kSnr = {-40, 60};
constexpr Range kRssi = {-130, 0};
constexpr Range kRscp = {-130, 0};
constexpr Range kEcno = {-40, 0};

std::optional<double> level(const Reading& reading, const Range& range) {
  const double* number = reading.as<double>();
  if (!number || !(*number >= range.low && *number <= range.high)) return std::nullopt;
  return *number;
}

Number scaled(const Reading& reading, const Range& range, int perUnit = 1) {
  const auto number = level(reading, range);
  if (!number) return std::nullopt;
  return rounded(perUnit * *number);
}

Number indexed(const Reading& reading, const Range& range, double lowest, double step,
               std::uint32_t last) {
  const auto number = level(reading, range);
  if (!number) return std::nullopt;
  return reportIndex(*number, lowest, step, last);
}

Number natural(const Reading& reading, std::int64_t most) {
  const auto* number = reading.as<std::int64_t>();
  if (!number || *number < 0 || *number > most) return std::nullopt;
  return *number;
}

Number hexadecimal(const Reading& reading, std::int64_t most) {
  const auto* text = reading.as<std::string>();
  if (!text || text->empty()) return std::nullopt;
  std::uint64_t number = 0;
  const char* end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, number, 16);
  if (error != std::errc() || stop != end || number > static_cast<std::uint64_t>(most))
    return std::nullopt;
  return static_cast<std::int64_t>(number);
}

template <class Found>
Number derived(const Number& channel, Found (*find)(std::uint32_t)) {
  if (!channel) return std::nullopt;
  const Found found = find(static_cast<std::uint32_t>(*channel));
  if (!found) return std::nullopt;
  return *found;
}

struct Renamed {
  std::int64_t theirs;
  std::int32_t ours;
};

Number renamed(const Reading& reading, std::span<const Renamed> names) {
  const auto* number = reading.as<std::int64_t>();
  for (const Renamed& name : names)
    if (number && name.theirs == *number) return name.ours;
  return std::nullopt;
}

consteval std::int32_t status(std::string_view name) { return valueOf(names::KREG_STATUS, name); }
constexpr std::int32_t kNormal = status("KREG_STATUS_NORMAL_SERVICE");
constexpr std::int32_t kMessagesOnly = status("KREG_STATUS_REGISTERED_SMS_ONLY");

// Of 3GPP TS 27.007 10.1.20. Who is searching has no service yet; 4 is "unknown".
constexpr Renamed kRegistrationStates[] = {
    {0, status("KREG_STATUS_AT_NOT_REGISTERED")},
    {1, kNormal},
    {2, status("KREG_STATUS_NO_SERVICE")},
    {3, status("KREG_STATUS_REGISTRATION_FAILURE")},
    {5, kNormal},
    {6, kMessagesOnly},
    {7, kMessagesOnly},
    {8, status("KREG_STATUS_EMERGENCY_SERVICE")},
    {9, kNormal},
    {10, kNormal},
    {11, status("KREG_STATUS_LIMITED_SERVICE")},
};

consteval std::int32_t mode(std::string_view name) { return valueOf(names::EPS_UE_OP_MODE, name); }
constexpr Renamed kModesOfOperation[] = {
    {1, mode("EPS_UE_OP_MODE_PS_MODE_1")},
    {2, mode("EPS_UE_OP_MODE_PS_MODE_2")},
    {3, mode("EPS_UE_OP_MODE_CSPS_MODE_1")},
    {4, mode("EPS_UE_OP_MODE_CSPS_MODE_2")},
};

// "Any", 0xFFFFFFF7, names no type.
constexpr Renamed kIpFamilies[] = {
    {1, valueOf(names::PDP_TYPE, "PDP_TYPE_IPv4")},
    {2, valueOf(names::PDP_TYPE, "PDP_TYPE_IPv6")},
    {4, valueOf(names::PDP_TYPE, "PDP_TYPE_IPv4v6")},
};

Number operatorPart(const Reading& reading, std::uint32_t Operator::*part) {
  const auto* text = reading.as<std::string>();
  const auto plmn = text ? operatorOf(*text) : std::nullopt;
  if (!plmn) return std::nullopt;
  return *plmn.*part;
}

}  // namespace

Number rsrp(const Reading& reading) { return scaled(reading, kRsrp); }
Number rsrq(const Reading& reading) { return scaled(reading, kRsrq); }
Number rsrqHalves(const Reading& reading) { return scaled(reading, kRsrq, 2); }
Number snrHalves(const Reading& reading) { return scaled(reading, kSnr, 2); }
Number rssi(const Reading& reading) { return scaled(reading, kRssi); }
Number rscp(const Reading& reading) { return scaled(reading, kRscp); }

Number rsrpIndex(const Reading& reading) { return indexed(reading, kRsrp, -140, 1, 97); }
Number rsrqIndex(const Reading& reading) { return indexed(reading, kRsrq, -19.5, 0.5, 34); }
Number rscpIndex(const Reading& reading) { return indexed(reading, kRscp, -115, 1, 91); }
Number ecnoIndex(const Reading& reading) { return indexed(reading, kEcno, -24, 0.5, 49); }
Number rxlev(const Reading& reading) { return natural(reading, 63); }

Number earfcn(const Reading& reading) { return natural(reading, 262143); }
Number eutraUplink(const Reading& reading) { return derived(earfcn(reading), eutraUplinkOf); }
Number eutraBand(const Reading& reading) { return derived(earfcn(reading), eutraBandOf); }
Number uarfcn(const Reading& reading) { return natural(reading, 16383); }
Number utraBand(const Reading& reading) { return derived(uarfcn(reading), utraBandOf); }
Number utraSysBand(const Reading& reading) { return derived(uarfcn(reading), utraSysBandOf); }
Number arfcn(const Reading& reading) { return natural(reading, 1023); }
Number gsmSysBand(const Reading& reading) { return derived(arfcn(reading), gsmSysBandOf); }
Number scramblingCode(const Reading& reading) { return natural(reading, 511); }

Number areaCode(const Reading& reading) {
  const Number code = hexadecimal(reading, 0xFFFD);
  return code == 0 ? std::nullopt : code;
}
Number cellIdentity16(const Reading& reading) { return hexadecimal(reading, 0xFFFF); }
Number cellIdentity28(const Reading& reading) { return hexadecimal(reading, 0xFFFFFFF); }
Number physicalCellIdentity(const Reading& reading) { return hexadecimal(reading, 503); }
Number baseStationIdentityCode(const Reading& reading) { return hexadecimal(reading, 63); }

Number mobileCountryCode(const Reading& reading) { return operatorPart(reading, &Operator::mcc); }
Number mobileNetworkCode(const Reading& reading) { return operatorPart(reading, &Operator::mnc); }
Number networkCodeDigits(const Reading& reading) {
  return operatorPart(reading, &Operator::mncDigits);
}

Number registrationStatus(const Reading& reading) { return renamed(reading, kRegistrationStates); }
Number ueModeOfOperation(const Reading& reading) { return renamed(reading, kModesOfOperation); }
Number pdpType(const Reading& reading) { return renamed(reading, kIpFamilies); }

}  // namespace quorin::modem

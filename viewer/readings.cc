#include "viewer/readings.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/platform.h"

namespace quorin {

namespace {

std::string text(double number) {
  char digits[32];
  return {digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr};
}

/// As a page shows it: what the store multiplied always has a decimal.
std::string shownAs(double number, bool isConverted) {
  const std::string shown = text(number);
  return isConverted && shown.find('.') == std::string::npos ? shown + ".0" : shown;
}

std::string twoParts(std::string_view first, std::uint32_t one, std::string_view second,
                     std::uint32_t other, std::string_view end = "") {
  return std::string(first) + " " + std::to_string(one) + ", " + std::string(second) + " " +
         std::to_string(other) + std::string(end);
}

std::string physicalCellIdentity(std::uint32_t identity) {
  return twoParts("N_ID(1)", identity / 3, "N_ID(2)", identity % 3);
}

std::string eutranCellIdentity(std::uint32_t identity) {
  return twoParts("eNB", identity >> 8, "cell", identity & 0xFF, " (macro eNB)");
}

std::string utranCellIdentity(std::uint32_t identity) {
  return twoParts("RNC", identity >> 16, "cell", identity & 0xFFFF, " (RNC-ID of 12 bits)");
}

std::string baseStationIdentityCode(std::uint32_t code) {
  return twoParts("NCC", code >> 3, "BCC", code & 7);
}

std::string fileIdentifier(std::uint32_t identifier) {
  std::string digits;
  for (int shift = 12; shift >= 0; shift -= 4)
    digits += "0123456789ABCDEF"[identifier >> shift & 15];
  return "hexadecimal " + digits;
}

// TS 36.101 table 5.7.3-1.
constexpr ChannelRange kEarfcnDownlinks[] = {
    {"band 1", 0, 599, 21100},        {"band 2", 600, 1199, 19300},
    {"band 3", 1200, 1949, 18050},    {"band 4", 1950, 2399, 21100},
    {"band 5", 2400, 2649, 8690},     {"band 6", 2650, 2749, 8750},
    {"band 7", 2750, 3449, 26200},    {"band 8", 3450, 3799, 9250},
    {"band 9", 3800, 4149, 18449},    {"band 10", 4150, 4749, 21100},
    {"band 11", 4750, 4949, 14759},   {"band 12", 5010, 5179, 7290},
    {"band 13", 5180, 5279, 7460},    {"band 14", 5280, 5379, 7580},
    {"band 17", 5730, 5849, 7340},    {"band 18", 5850, 5999, 8600},
    {"band 19", 6000, 6149, 8750},    {"band 20", 6150, 6449, 7910},
    {"band 21", 6450, 6599, 14959},   {"band 22", 6600, 7399, 35100},
    {"band 23", 7500, 7699, 21800},   {"band 24", 7700, 8039, 15250},
    {"band 25", 8040, 8689, 19300},   {"band 26", 8690, 9039, 8590},
    {"band 27", 9040, 9209, 8520},    {"band 28", 9210, 9659, 7580},
    {"band 29", 9660, 9769, 7170},    {"band 30", 9770, 9869, 23500},
    {"band 31", 9870, 9919, 4625},    {"band 32", 9920, 10359, 14520},
    {"band 33", 36000, 36199, 19000}, {"band 34", 36200, 36349, 20100},
    {"band 35", 36350, 36949, 18500}, {"band 36", 36950, 37549, 19300},
    {"band 37", 37550, 37749, 19100}, {"band 38", 37750, 38249, 25700},
    {"band 39", 38250, 38649, 18800}, {"band 40", 38650, 39649, 23000},
    {"band 41", 39650, 41589, 24960}, {"band 42", 41590, 43589, 34000},
    {"band 43", 43590, 45589, 36000}, {"band 44", 45590, 46589, 7030},
    {"band 45", 46590, 46789, 14470}, {"band 46", 46790, 54539, 51500},
    {"band 47", 54540, 55239, 58550}, {"band 48", 55240, 56739, 35500},
    {"band 65", 65536, 66435, 21100}, {"band 66", 66436, 67335, 21100},
    {"band 67", 67336, 67535, 7380},  {"band 68", 67536, 67835, 7530},
    {"band 69", 67836, 68335, 25700}, {"band 70", 68336, 68585, 19950},
    {"band 71", 68586, 68935, 6170},
};
constexpr ChannelRange kEarfcnUplinks[] = {
    {"band 1", 18000, 18599, 19200},    {"band 2", 18600, 19199, 18500},
    {"band 3", 19200, 19949, 17100},    {"band 4", 19950, 20399, 17100},
    {"band 5", 20400, 20649, 8240},     {"band 6", 20650, 20749, 8300},
    {"band 7", 20750, 21449, 25000},    {"band 8", 21450, 21799, 8800},
    {"band 9", 21800, 22149, 17499},    {"band 10", 22150, 22749, 17100},
    {"band 11", 22750, 22949, 14279},   {"band 12", 23010, 23179, 6990},
    {"band 13", 23180, 23279, 7770},    {"band 14", 23280, 23379, 7880},
    {"band 17", 23730, 23849, 7040},    {"band 18", 23850, 23999, 8150},
    {"band 19", 24000, 24149, 8300},    {"band 20", 24150, 24449, 8320},
    {"band 21", 24450, 24599, 14479},   {"band 22", 24600, 25399, 34100},
    {"band 23", 25500, 25699, 20000},   {"band 24", 25700, 26039, 16265},
    {"band 25", 26040, 26689, 18500},   {"band 26", 26690, 27039, 8140},
    {"band 27", 27040, 27209, 8070},    {"band 28", 27210, 27659, 7030},
    {"band 30", 27660, 27759, 23050},   {"band 31", 27760, 27809, 4525},
    {"band 33", 36000, 36199, 19000},   {"band 34", 36200, 36349, 20100},
    {"band 35", 36350, 36949, 18500},   {"band 36", 36950, 37549, 19300},
    {"band 37", 37550, 37749, 19100},   {"band 38", 37750, 38249, 25700},
    {"band 39", 38250, 38649, 18800},   {"band 40", 38650, 39649, 23000},
    {"band 41", 39650, 41589, 24960},   {"band 42", 41590, 43589, 34000},
    {"band 43", 43590, 45589, 36000},   {"band 44", 45590, 46589, 7030},
    {"band 45", 46590, 46789, 14470},   {"band 46", 46790, 54539, 51500},
    {"band 47", 54540, 55239, 58550},   {"band 48", 55240, 56739, 35500},
    {"band 65", 131072, 131971, 19200}, {"band 66", 131972, 132671, 17100},
    {"band 68", 132672, 132971, 6980},  {"band 70", 132972, 133121, 16950},
    {"band 71", 133122, 133471, 6630},
};
// TS 25.101 table 5.1: the general numbers. The additional ones are not told.
constexpr ChannelRange kUarfcnDownlinks[] = {
    {"band I", 10562, 10838, 21124, 2}, {"band II", 9662, 9938, 19324, 2},
    {"band III", 1162, 1513, 18074, 2}, {"band IV", 1537, 1738, 21124, 2},
    {"band V", 4357, 4458, 8714, 2},    {"band VI", 4387, 4413, 8774, 2},
    {"band VII", 2237, 2563, 26224, 2}, {"band VIII", 2937, 3088, 9274, 2},
    {"band IX", 9237, 9387, 18474, 2},  {"band X", 3112, 3388, 21124, 2},
    {"band XI", 3712, 3787, 14784, 2},  {"band XII", 3842, 3903, 7314, 2},
    {"band XIII", 4017, 4043, 7484, 2}, {"band XIV", 4117, 4143, 7604, 2},
    {"band XIX", 712, 763, 8774, 2},    {"band XX", 4512, 4638, 7934, 2},
    {"band XXI", 862, 912, 14984, 2},   {"band XXII", 4662, 5038, 35124, 2},
    {"band XXV", 5112, 5413, 19324, 2}, {"band XXVI", 5762, 5913, 8614, 2},
};
constexpr ChannelRange kArfcnDownlinks[] = {
    {"GSM 900", 0, 124, 9350, 2},     {"GSM 850", 128, 251, 8692, 2},
    {"GSM 450", 259, 293, 4606, 2},   {"GSM 480", 306, 340, 4890, 2},
    {"DCS 1800", 512, 885, 18052, 2}, {"PCS 1900", 512, 810, 19302, 2},
    {"GSM 900", 955, 1023, 9212, 2},
};

constexpr NamedValue kBandwidthCodes[] = {
    {"0", "1.4 MHz, 6 RB"}, {"1", "3 MHz, 15 RB"},  {"2", "5 MHz, 25 RB"},
    {"3", "10 MHz, 50 RB"}, {"4", "15 MHz, 75 RB"}, {"5", "20 MHz, 100 RB"},
};
// A code that the store could not convert stands without a decimal, and so without a meaning.
constexpr NamedValue kBandwidths[] = {
    {"1.4", "6 RB"},   {"3.0", "15 RB"},  {"5.0", "25 RB"},
    {"10.0", "50 RB"}, {"15.0", "75 RB"}, {"20.0", "100 RB"},
};
// Twice the MHz in whole numbers, halved towards zero, leaves 1 of 1.4.
constexpr NamedValue kWholeBandwidths[] = {
    {"1", "1.4 MHz, 6 RB"}, {"3", "15 RB"},  {"5", "25 RB"},
    {"10", "50 RB"},        {"15", "75 RB"}, {"20", "100 RB"},
};

constexpr NamedValue kTransmissionModes[] = {
    {"1", "single antenna, port 0"},
    {"2", "transmit diversity"},
    {"3", "large delay CDD"},
    {"4", "closed-loop spatial multiplexing"},
    {"5", "multi-user MIMO"},
    {"6", "closed-loop spatial multiplexing, single layer"},
    {"7", "single antenna, port 5"},
    {"8", "dual layer, ports 7 and 8"},
    {"9", "up to 8 layers, ports 7 to 14"},
    {"10", "up to 8 layers, ports 7 to 14"},
};

constexpr std::string_view kRrcTimers = "3GPP TS 36.331, 7.3";
constexpr std::string_view kRadioLinkFailure = "3GPP TS 36.331, 5.3.11.3";
constexpr std::string_view kT310 = "T310 expired: N310 out of sync, then no N311 in sync in time";
constexpr std::string_view kRandomAccess = "random access problem indicated by MAC";
constexpr std::string_view kRetransmissions = "maximum number of RLC retransmissions reached";
constexpr NamedValue kLteRrcCauses[] = {
    {"KLTE_RRC_CAUSE_EST_EMERGENCY", "establishment cause emergency"},
    {"KLTE_RRC_CAUSE_EST_HIGH_PRIO_ACC", "establishment cause highPriorityAccess"},
    {"KLTE_RRC_CAUSE_EST_MT_ACC", "establishment cause mt-Access"},
    {"KLTE_RRC_CAUSE_EST_MO_SIGNAL", "establishment cause mo-Signalling"},
    {"KLTE_RRC_CAUSE_EST_MO_DATA", "establishment cause mo-Data"},
    {"KLTE_RRC_CAUSE_EST_DELAY_TOL_ACC", "establishment cause delayTolerantAccess"},
    {"KLTE_RRC_CAUSE_REEST_RECFG_FAIL", "re-establishment cause reconfigurationFailure"},
    {"KLTE_RRC_CAUSE_REEST_HO_FAIL", "re-establishment cause handoverFailure"},
    {"KLTE_RRC_CAUSE_REEST_OTHER_FAIL", "re-establishment cause otherFailure"},
    {"KLTE_RRC_CAUSE_REL_CONN_FAIL_T311_EXP",
     "T311 expired: no suitable cell for re-establishment in time", kRrcTimers},
    {"KLTE_RRC_CAUSE_REL_LOAD_BAL_TAU_REQD", "release cause loadBalancingTAUrequired"},
    {"KLTE_RRC_CAUSE_REL_OTHER", "release cause other"},
    {"KLTE_RRC_CAUSE_REL_CSFB_HIGH_PRIO", "release cause cs-FallbackHighPriority"},
    {"KLTE_RRC_CAUSE_REL_T310_EXP", kT310, kRrcTimers},
    {"KLTE_RRC_CAUSE_REL_RND_ACC", kRandomAccess, kRadioLinkFailure},
    {"KLTE_RRC_CAUSE_REL_MAX_RLC_RETRANS", kRetransmissions, kRadioLinkFailure},
    {"KLTE_RRC_CAUSE_REEST_OTHER_FAIL_T310_EXP", kT310, kRrcTimers},
    {"KLTE_RRC_CAUSE_REEST_OTHER_FAIL_RND_ACC", kRandomAccess, kRadioLinkFailure},
    {"KLTE_RRC_CAUSE_REEST_OTHER_FAIL_MAX_RLC_RETX", kRetransmissions, kRadioLinkFailure},
    {"KLTE_RRC_CAUSE_REEST_OTHER_FAIL_INTEG_CHECK", "integrity check failed in the lower layers",
     "3GPP TS 36.331, 5.3.7.2"},
};

constexpr NamedValue kEpsUpdateStatuses[] = {
    {"EPS_STATUS_UPDATED", "EU1"},
    {"EPS_STATUS_NOT_UPDATED", "EU2"},
    {"EPS_STATUS_ROAMING_NOT_ALLOWED", "EU3"},
};
constexpr NamedValue kModesOfOperation[] = {
    {"EPS_UE_OP_MODE_PS_MODE_1", "EPS only, voice centric"},
    {"EPS_UE_OP_MODE_PS_MODE_2", "EPS only, data centric"},
    {"EPS_UE_OP_MODE_CSPS_MODE_1", "EPS and non-EPS, voice centric"},
    {"EPS_UE_OP_MODE_CSPS_MODE_2", "EPS and non-EPS, data centric"},
};
constexpr NamedValue kMmUpdateStatuses[] = {
    {"STATUS_UPDATED", "U1"},
    {"STATUS_NOT_UPDATED", "U2"},
    {"STATUS_ROAMING_NOT_ALLOWED", "U3"},
};
constexpr NamedValue kGprsUpdateStatuses[] = {
    {"GPRS_STATUS_UPDATED", "GU1"},
    {"GPRS_STATUS_NOT_UPDATED", "GU2"},
    {"GPRS_STATUS_ROAMING_NOT_ALLOWED", "GU3"},
};
constexpr NamedValue kNasProcedureFailures[] = {
    {"KNAS_MM_PROC_FAILURE_CAUSE_T3210_EXPIRY", "T3210: LOCATION UPDATING REQUEST unanswered"},
    {"KNAS_MM_PROC_FAILURE_CAUSE_T3240_EXPIRY", "T3240: the RR connection is aborted"},
    {"KNAS_MM_PROC_FAILURE_CAUSE_T3317_EXPIRY", "T3317: SERVICE REQUEST unanswered"},
};

std::string interval(const ReportMapping& report, int index) {
  const auto bound = [&](int i) { return text(report.lowest + (i - 1) * report.step); };
  const std::string quantity(report.quantity);
  const std::string unit = " " + std::string(report.unit);
  const bool isTold = report.bounds == Bounds::upper;
  if (index == 0) return quantity + " < " + bound(1) + unit;
  if (index == report.last) return quantity + (isTold ? " ≥ " : " > ") + bound(index) + unit;
  if (!isTold) return quantity + " " + bound(index) + " to " + bound(index + 1) + unit;
  return bound(index) + " ≤ " + quantity + " < " + bound(index + 1) + unit;
}

std::string frequency(const ChannelRange& range, int channel) {
  const int hundreds = range.lowest + (channel - range.first) * range.step;
  return text(hundreds / 10.0) + " MHz, " + std::string(range.band);
}

/// The whole number that a value is, when it lies in the range.
std::optional<std::uint32_t> wholeNumberIn(std::string_view value, double first, double last) {
  const auto number = numberIn(value);
  if (!number || *number < first || *number > last || *number != std::floor(*number))
    return std::nullopt;
  return static_cast<std::uint32_t>(*number);
}

constexpr double kMostChannel = 262143;  // of an EARFCN, the longest of the numbers

struct MeaningUnder {
  std::string_view clause;
  std::string_view value;

  std::optional<Meaning> operator()(const ReportMapping& report) const {
    const auto number = numberIn(value);
    const double index = number ? *number / report.shownPerIndex : -1;
    if (index < 0 || index > report.last || index != std::floor(index)) return std::nullopt;
    return Meaning{interval(report, static_cast<int>(index)), clause};
  }
  std::optional<Meaning> operator()(NamedValues names) const {
    const auto name = std::ranges::find(names, value, &NamedValue::value);
    if (name == names.end()) return std::nullopt;
    return Meaning{std::string(name->meaning), name->clause.empty() ? clause : name->clause};
  }
  // One number may stand in two bands.
  std::optional<Meaning> operator()(ChannelRanges ranges) const {
    const auto channel = wholeNumberIn(value, 0, kMostChannel);
    if (!channel) return std::nullopt;
    const int number = static_cast<int>(*channel);
    std::string frequencies;
    for (const ChannelRange& range : ranges)
      if (range.first <= number && number <= range.last)
        frequencies += (frequencies.empty() ? "" : " or ") + frequency(range, number);
    if (frequencies.empty()) return std::nullopt;
    return Meaning{std::move(frequencies), clause};
  }
  std::optional<Meaning> operator()(const Formula& formula) const {
    const auto number = wholeNumberIn(value, formula.first, formula.last);
    if (!number) return std::nullopt;
    return Meaning{formula.meaning(*number), clause};
  }
};

struct Samples {
  std::vector<std::string> operator()(const ReportMapping& report) const {
    std::vector<std::string> samples;
    for (const int index : {0, 1, report.last - 1, report.last})
      samples.push_back(shownAs(index * report.shownPerIndex, report.shownPerIndex != 1));
    return samples;
  }
  std::vector<std::string> operator()(NamedValues names) const {
    std::vector<std::string> samples;
    for (const NamedValue& name : names) samples.emplace_back(name.value);
    return samples;
  }
  std::vector<std::string> operator()(ChannelRanges ranges) const {
    std::vector<std::string> samples;
    for (const ChannelRange& range : ranges)
      for (const int channel : {range.first, range.last})
        samples.push_back(std::to_string(channel));
    return samples;
  }
  std::vector<std::string> operator()(const Formula& formula) const {
    return {std::to_string(formula.first), std::to_string(formula.last)};
  }
};

constexpr std::string_view kRrcMessages = "3GPP TS 36.331, 6.2.2";
constexpr std::string_view kChannelBandwidth = "3GPP TS 36.101, 5.6";

}  // namespace

std::optional<Meaning> meaningOf(const Reading& reading, std::string_view value) {
  return std::visit(MeaningUnder{reading.clause, value}, reading.rule);
}

std::vector<std::string> samplesOf(const Reading& reading) {
  return std::visit(Samples{}, reading.rule);
}

constinit const Reading kRsrpReport = {"RSRP report", "3GPP TS 36.133, 9.1.4",
                                       ReportMapping{"RSRP", "dBm", -140, 1, 97}};
constinit const Reading kHalvedRsrqReport = {"RSRQ report, halved", "3GPP TS 36.133, 9.1.7",
                                             ReportMapping{"RSRQ", "dB", -19.5, 0.5, 34, 0.5}};
// Levels below that need a negative index, which an unsigned field cannot hold, have index 0, too.
constinit const Reading kRscpReport = {"CPICH RSCP report", "3GPP TS 25.133, 9.1.1.3",
                                       ReportMapping{"RSCP", "dBm", -115, 1, 91}};
constinit const Reading kEcNoReport = {"CPICH Ec/No report", "3GPP TS 25.133, 9.1.2.3",
                                       ReportMapping{"Ec/No", "dB", -24, 0.5, 49}};
constinit const Reading kHalvedEcNoReport = {"CPICH Ec/No report, halved",
                                             "3GPP TS 25.133, 9.1.2.3",
                                             ReportMapping{"Ec/No", "dB", -24, 0.5, 49, 0.5}};
// Without the scale that only enhanced measurement reports have.
constinit const Reading kRxlevReport = {
    "RXLEV", "3GPP TS 45.008, 8.1.4",
    ReportMapping{"level", "dBm", -110, 1, 63, 1, Bounds::untold}};

constinit const Reading kEarfcnDownlink = {"Downlink EARFCN", "3GPP TS 36.101, 5.7.3",
                                           ChannelRanges(kEarfcnDownlinks)};
constinit const Reading kEarfcnUplink = {"Uplink EARFCN", "3GPP TS 36.101, 5.7.3",
                                         ChannelRanges(kEarfcnUplinks)};
constinit const Reading kUarfcnDownlink = {"Downlink UARFCN", "3GPP TS 25.101, 5.4.3",
                                           ChannelRanges(kUarfcnDownlinks)};
constinit const Reading kArfcnDownlink = {"ARFCN, downlink", "3GPP TS 45.005, 2",
                                          ChannelRanges(kArfcnDownlinks)};
constinit const Reading kBandwidthCode = {"Bandwidth code", kChannelBandwidth,
                                          NamedValues(kBandwidthCodes)};
constinit const Reading kBandwidth = {"Bandwidth", kChannelBandwidth, NamedValues(kBandwidths)};
constinit const Reading kWholeBandwidth = {"Bandwidth in whole MHz", kChannelBandwidth,
                                           NamedValues(kWholeBandwidths)};
constinit const Reading kPhysicalCellIdentity = {"Physical cell identity", "3GPP TS 36.211, 6.11",
                                                 Formula{physicalCellIdentity, 0, 503}};
constinit const Reading kEutranCellIdentity = {"E-UTRAN cell identity", "3GPP TS 36.413, 9.2.1.37",
                                               Formula{eutranCellIdentity, 0, 0xFFFFFFF}};
// Below the first the RNC's part was not told.
constinit const Reading kUtranCellIdentity = {"UTRAN cell identity", "3GPP TS 25.331, 10.3.2.2",
                                              Formula{utranCellIdentity, 0x10000, 0xFFFFFFF}};
constinit const Reading kBaseStationIdentityCode = {"BSIC", "3GPP TS 23.003, 4.3.2",
                                                    Formula{baseStationIdentityCode, 0, 63}};
constinit const Reading kTransmissionMode = {"Transmission mode", "3GPP TS 36.213, 7.1",
                                             NamedValues(kTransmissionModes)};

constinit const Reading kLteRrcCause = {"LTE RRC cause", kRrcMessages, NamedValues(kLteRrcCauses)};
constinit const Reading kEpsUpdateStatus = {"EPS update status", "3GPP TS 24.301, 5.1.3.3",
                                            NamedValues(kEpsUpdateStatuses)};
constinit const Reading kModeOfOperation = {"UE mode of operation", "3GPP TS 24.301, 4.3",
                                            NamedValues(kModesOfOperation)};
constinit const Reading kMmUpdateStatus = {"MM update status", "3GPP TS 24.008, 4.1.2.2",
                                           NamedValues(kMmUpdateStatuses)};
constinit const Reading kGprsUpdateStatus = {"GPRS update status", "3GPP TS 24.008, 4.1.3.2",
                                             NamedValues(kGprsUpdateStatuses)};
constinit const Reading kNasProcedureFailure = {
    "Timer of a failed NAS procedure", "3GPP TS 24.008, 11.2", NamedValues(kNasProcedureFailures)};
constinit const Reading kFileIdentifier = {"File identifier", "ETSI TS 102 221, 8.2",
                                           Formula{fileIdentifier, 0, 0xFFFF}};

}  // namespace quorin

#include "tests/support/corpus.h"

#include <algorithm>
#include <random>

#include "metrics/metric_cases.h"

namespace quorin::test {

namespace {

constexpr std::uint64_t kSeed = 20260101;
constexpr std::uint64_t kPresentInHundred = 96;
constexpr std::uint64_t kMostElements = 8;
constexpr std::uint64_t kStart = 1'790'000'000'000;  // milliseconds since 1970
constexpr std::uint64_t kBetweenEvents = 5;          // milliseconds

/// What a field's value lies between.
struct Range {
  std::string_view key;
  std::int64_t lowest;
  std::int64_t highest;
};

constexpr Range kRanges[] = {
    {"arfcn", 0, 1023},
    {"arfcn_bcch", 0, 1023},
    {"bsic", 0, 63},
    {"cell_id", 0, 268'435'455},
    {"ci", 0, 65'535},
    {"cid", 0, 268'435'455},
    {"cpich_sc", 0, 511},
    {"dl_earfcn", 0, 6'599},
    {"dl_freq", 9'662, 10'838},
    {"dl_uarfcn", 9'662, 10'838},
    {"earfcn", 0, 6'599},
    {"drx_cycle_length_ms", 40, 2'560},
    {"ef_id", 0x2f00, 0x6fff},
    {"idle_rxlev_dBm", -110, -48},
    {"lac", 1, 65'533},
    {"long_drx_cycle_ms", 10, 2'560},
    {"m_tmsi", 0, 4'294'967'295},
    {"mcc", 202, 750},
    {"mmegi", 0, 65'535},
    {"nbr_earfcn", 0, 6'599},
    {"nbr_phys_cell_id", 0, 503},
    {"nbr_rsrp", -140, -44},
    {"nbr_rsrq", -40, -6},
    {"p_tmsi", 0, 4'294'967'295},
    {"pcc_earfcn", 0, 6'599},
    {"pci", 0, 503},
    {"phy_cell_id", 0, 503},
    {"physical_cell_id", 0, 503},
    {"prev_state_dur_ms", 0, 600'000},
    {"psc", 0, 511},
    {"pucch_tx_power", -50, 23},
    {"pusch_tx_power", -50, 23},
    {"rscp", -115, -25},
    {"rsrp0", -140, -44},
    {"rsrp1", -140, -44},
    {"rsrq0", -40, -6},
    {"rsrq1", -40, -6},
    {"scc0_earfcn", 0, 6'599},
    {"scc1_earfcn", 0, 6'599},
    {"scell_arfcn", 0, 1023},
    {"sel_plmn_mcc", 202, 750},
    {"t3212_dur_s", 0, 11'160},
    {"t3312_dur_s", 0, 11'160},
    {"t3412_dur_s", 0, 11'160},
    {"tac", 0, 65'535},
    {"tmsi", 0, 4'294'967'295},
    {"tracking_area_code", 0, 65'535},
    {"uarfcn", 9'662, 10'838},
    {"ul_earfcn", 18'000, 24'599},
    {"ul_freq", 9'262, 10'838},
};
constexpr Range kOtherSigned = {"", -64, 30};
constexpr Range kOtherUnsigned = {"", 0, 63};
constexpr std::int64_t kHundredths = 100;  // as the carrier lists count

class Generator {
 public:
  /// Fills the message as of the event that comes as the `index`th.
  void fill(AnyMessage& m, std::size_t index) {
    for (const Field& field : m.table().fields)
      if (below(100) < kPresentInHundred) fill(m, field, index);
  }
  std::uint64_t below(std::uint64_t limit) { return _random() % limit; }

 private:
  std::int64_t within(const Range& range) {
    return range.lowest + static_cast<std::int64_t>(
                              below(static_cast<std::uint64_t>(range.highest - range.lowest) + 1));
  }
  std::int64_t valueOf(const Field& field, const Range& other) {
    const auto* row = std::ranges::find(kRanges, field.key, &Range::key);
    return within(row == std::end(kRanges) ? other : *row);
  }
  std::vector<std::uint8_t> bytes(std::size_t length) {
    std::vector<std::uint8_t> made(length);
    for (auto& byte : made) byte = static_cast<std::uint8_t>(below(256));
    return made;
  }

  void fill(AnyMessage& m, const Field& field, std::size_t index) {
    const auto scalar = [&]<class T>(T value) {
      field.in<T>(m) = value;
      m.setHas(field.number, true);
    };
    const auto element = [&] {
      auto made = field.element->make();
      fill(*made, index);
      return made;
    };
    const std::uint64_t count = 1 + below(kMostElements);
    switch (field.kind) {
      case Kind::uint64: return scalar(kStart + index * kBetweenEvents);
      case Kind::uint32: return scalar(static_cast<std::uint32_t>(valueOf(field, kOtherUnsigned)));
      case Kind::sint32: {
        const bool carrier = m.table().keyRule == KeyRule::whole;
        return scalar(
            static_cast<std::int32_t>(valueOf(field, kOtherSigned) * (carrier ? kHundredths : 1)));
      }
      case Kind::enumeration:
        return scalar(field.names.names[below(field.names.names.size())].value);
      case Kind::boolean: return scalar(below(2) == 1);
      case Kind::bytes: field.in<Ref<Data>>(m) = make<Data>(bytes(4 + below(9))); return;
      case Kind::string: field.in<Ref<String>>(m) = make<String>("internet.example"); return;
      case Kind::message: field.in<Ref<AnyMessage>>(m) = element(); return;
      case Kind::repeated:
        for (std::uint64_t i = 0; i < count; ++i)
          appendElement(field.in<Ref<MessageArray>>(m), element());
        return;
      case Kind::packedUint32:
        for (std::uint64_t i = 0; i < count; ++i)
          PBRepeatedUInt32Add(field.in<PBRepeatedUInt32>(m),
                              static_cast<std::uint32_t>(valueOf(field, kOtherUnsigned)));
        return;
      case Kind::packedSint32:
        for (std::uint64_t i = 0; i < count; ++i)
          PBRepeatedInt32Add(field.in<PBRepeatedInt32>(m),
                             static_cast<std::int32_t>(valueOf(field, kOtherSigned)));
        return;
    }
  }

  std::mt19937_64 _random{kSeed};
};

}  // namespace

std::vector<Payload> corpus(std::size_t ofEachMetric) {
  Generator generator;
  std::vector<Payload> payloads;
  for (std::size_t i = 0; i < ofEachMetric; ++i)
    for (const MetricCase& metric : metricCases())
      payloads.push_back({catalogueRow(metric.id), {}});
  for (std::size_t i = payloads.size(); i > 1; --i)
    std::swap(payloads[i - 1], payloads[generator.below(i)]);
  for (std::size_t i = 0; i < payloads.size(); ++i) {
    const auto message = payloads[i].row->table->make();
    generator.fill(*message, i);
    PBDataWriter writer;
    message->writeTo(writer);
    payloads[i].bytes = writer.bytes();
  }
  return payloads;
}

}  // namespace quorin::test

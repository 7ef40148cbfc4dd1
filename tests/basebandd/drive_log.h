#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <vector>

#include "basebandd/SimulatorSource.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteComponentCarrierInfo.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/nas/KCellularEmmContext.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::test {

inline constexpr std::int64_t kDriveStart = 1'778'133'600'000;  // 2026-05-07 06:00:00 UTC
inline constexpr std::int64_t kUptimeStart = 5000;
inline constexpr std::int64_t kHour = 3'600'000;

/// One metric as it came out of the source.
struct LoggedMetric {
  std::int64_t t;  // ms since the drive began
  std::int64_t id;
  Ref<Data> payload;
};

/// The first hour of a drive. The environment variable QUORIN_DUMP names a file that then gets the
/// hour of seed 1 as a recording.
[[nodiscard]] const std::vector<LoggedMetric>& hourOfDrive(std::uint64_t seed = 1);

template <class M>
[[nodiscard]] Ref<M> decodedAs(const Ref<Data>& payload) {
  const auto message = make<M>();
  EXPECT_TRUE(message->initWithData(payload)) << M::kName;
  return message;
}

/// The latest metric of every kind, as a viewer of the drive would have them.
class Picture {
 public:
  void take(const LoggedMetric& metric) { _latest[metric.id] = metric.payload; }
  [[nodiscard]] bool has(std::int64_t id) const { return _latest.contains(id); }
  /// An empty message when none came yet.
  template <class M>
  [[nodiscard]] Ref<M> latest(std::int64_t id) const {
    const auto found = _latest.find(id);
    return found == _latest.end() ? make<M>() : decodedAs<M>(found->second);
  }
  [[nodiscard]] Ref<KCellularLteScellInfo> lteCell() const {
    return latest<KCellularLteScellInfo>(K_LTE_SCELL_INFO);
  }
  [[nodiscard]] std::int32_t lteState() const {
    return latest<KCellularLteRrcState>(K_LTE_RRC_STATE)->state();
  }

 private:
  std::map<std::int64_t, Ref<Data>> _latest;
};

/// Calls `each` for every metric of the hour with the picture before it.
void walk(const std::vector<LoggedMetric>& drive,
          const std::function<void(const LoggedMetric&, const Picture& before)>& each);

/// Calls `each` once per moment at which something came, with the picture after all of it.
void walkMoments(const std::vector<LoggedMetric>& drive,
                 const std::function<void(std::int64_t t, const Picture& picture)>& each);

/// Whether the LTE RRC state machine is running at all.
[[nodiscard]] bool isOnLte(const Picture& picture);

}  // namespace quorin::test

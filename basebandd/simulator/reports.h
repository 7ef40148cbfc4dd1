#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/platform.h"

namespace quorin::simulator {

struct State;

/// One metric: when it is due, and how it is made from the state.
struct Report {
  std::int64_t metricID;
  /// How often it comes while there is something to report, in ms; 0: only when it changed.
  std::int64_t periodMs;
  std::int64_t phaseMs;  // the moment within the period
  /// What else makes it due: a change of this number. Null: nothing else.
  std::uint64_t (*key)(const State& state);
  /// Its payload, with this time stamp in ms since 1970 if there is one. Null: there is nothing to
  /// report now.
  Ref<Data> (*make)(const State& state, std::optional<std::uint64_t> timestamp);
};

/// The technologies' reports, each in the order in which they go out at one moment.
[[nodiscard]] std::span<const Report> rrcReports();
[[nodiscard]] std::span<const Report> lteReports();
[[nodiscard]] std::span<const Report> lteCarrierReports();
[[nodiscard]] std::span<const Report> umtsReports();
[[nodiscard]] std::span<const Report> gsmReports();
[[nodiscard]] std::span<const Report> commonReports();

/// A report's `make` from a function that fills message `M`, or says that there is nothing.
template <class M, bool (*fill)(const State&, M&)>
Ref<Data> made(const State& state, std::optional<std::uint64_t> timestamp) {
  M message;
  if (!fill(state, message)) return nullptr;
  if (timestamp) message.setTimestamp(*timestamp);
  PBDataWriter writer;
  message.writeTo(writer);
  return make<Data>(std::move(writer.bytes()));
}

/// Counts the measurement reports: a report that the network got is one that we give, too.
[[nodiscard]] std::uint64_t measurementReports(const State& state);

}  // namespace quorin::simulator

#include "basebandd/ReplaySource.h"

namespace quorin {

namespace {

/// Events of one step, so that the service goes on answering.
constexpr std::size_t kMostPerStep = 256;

void give(const XpcRef& event, const MetricSource::Sink& sink) {
  const xpc_object_t id = xpc_dictionary_get_value(event.get(), osmin::kKeyMetricID);
  const xpc_object_t payload = xpc_dictionary_get_value(event.get(), osmin::kKeyPayload);
  if (!id || xpc_get_type(id) != xpc_type_t::int64) return;
  const bool bytes = payload && xpc_get_type(payload) == xpc_type_t::data;
  sink(xpc_int64_get_value(id), make<Data>(bytes ? xpc_data_get_bytes(payload) : Bytes{}));
}

}  // namespace

void ReplaySource::advanceTo(Milliseconds now, const Sink& sink) {
  for (std::size_t i = 0; i < kMostPerStep; ++i) {
    const auto due = _recording.next();
    if (!due || *due > now) break;
    give(_recording.take(), sink);
  }
  for (const std::string& line : _recording.unreadableLines()) systemLog("basebandd: " + line);
}

std::string ReplaySource::description() const {
  return "replay of " + _recording.path() + (_recording.next() ? "" : ", at its end");
}

}  // namespace quorin

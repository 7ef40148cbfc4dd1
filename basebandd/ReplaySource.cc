#include "basebandd/ReplaySource.h"

namespace quorin {

void ReplaySource::give(const Sink& sink) {
  const XpcRef event = _recording.take();
  for (const std::string& line : _recording.unreadableLines()) systemLog("basebandd: " + line);
  const xpc_object_t id = xpc_dictionary_get_value(event.get(), osmin::kKeyMetricID);
  const xpc_object_t payload = xpc_dictionary_get_value(event.get(), osmin::kKeyPayload);
  if (!id || xpc_get_type(id) != xpc_type_t::int64) return;
  const bool bytes = payload && xpc_get_type(payload) == xpc_type_t::data;
  sink(xpc_int64_get_value(id), make<Data>(bytes ? xpc_data_get_bytes(payload) : Bytes{}));
}

std::string ReplaySource::description() const {
  return "replay of " + _recording.path() + (_recording.next() ? "" : ", at its end");
}

}  // namespace quorin

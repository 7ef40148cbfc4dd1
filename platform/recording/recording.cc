#include "platform/recording/recording.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "platform/baseband/osmin.h"

namespace quorin {

namespace {

using Json = nlohmann::ordered_json;

constexpr char kArrivalKey[] = "t";

/// The entry's value as an inter-process object, the null object for what an event never carries;
/// null when a payload's text is not hexadecimal.
XpcRef objectOf(const std::string& key, const Json& value) {
  if (value.is_string()) {
    const auto& text = value.get_ref<const std::string&>();
    if (key != osmin::kKeyPayload) return XpcRef(xpc_string_create(text));
    const auto bytes = bytesFromHex(text);
    return bytes ? XpcRef(xpc_data_create(bytes->data(), bytes->size())) : XpcRef();
  }
  if (value.is_boolean()) return XpcRef(xpc_bool_create(value.get<bool>()));
  if (value.is_number_unsigned() &&
      value.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max())
    return XpcRef(xpc_double_create(value.get<double>()));  // no 64-bit integer can hold it
  if (value.is_number_integer()) return XpcRef(xpc_int64_create(value.get<std::int64_t>()));
  if (value.is_number()) return XpcRef(xpc_double_create(value.get<double>()));
  return XpcRef(xpc_null_create());
}

}  // namespace

bool isBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

std::optional<RecordedEvent> readRecordingLine(std::string_view line, std::string& reason) {
  const Json json = Json::parse(line, nullptr, /*allow_exceptions=*/false);
  if (json.is_discarded()) return reason = "not JSON", std::nullopt;
  if (!json.is_object()) return reason = "not a JSON object", std::nullopt;
  RecordedEvent recorded{XpcRef(xpc_dictionary_create(nullptr, nullptr, 0)), std::nullopt};
  for (const auto& [key, value] : json.items()) {
    if (key == kArrivalKey) {
      if (!value.is_number() || !std::isfinite(value.get<double>()) ||
          std::abs(value.get<double>()) > 1e15)
        return reason = "\"t\" is no time in milliseconds", std::nullopt;
      recorded.arrival = Milliseconds(static_cast<std::int64_t>(value.get<double>()));
      continue;
    }
    const XpcRef object = objectOf(key, value);
    if (!object) return reason = "\"" + key + "\" is not hexadecimal", std::nullopt;
    xpc_dictionary_set_value(recorded.event.get(), key.c_str(), object.get());
  }
  return recorded;
}

}  // namespace quorin

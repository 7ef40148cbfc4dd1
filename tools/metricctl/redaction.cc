#include "tools/metricctl/redaction.h"

#include "messages/catalogue.h"
#include "platform/recording/recording.h"

namespace quorin::metricctl {

namespace {

/// Keeps the decoders' lines, which may hold values of unknown fields, from the log.
class QuietLog {
 public:
  QuietLog() : _before(setSystemLogSink([](std::string_view) {})) {}
  ~QuietLog() { setSystemLogSink(_before); }
  QuietLog(const QuietLog&) = delete;
  QuietLog& operator=(const QuietLog&) = delete;

 private:
  LogSink _before;
};

std::string hexOf(const AnyMessage& message) {
  PBDataWriter writer;
  message.writeTo(writer);
  return hexText(writer.bytes());
}

/// The entry as an integer. False: it is something else.
bool readInteger(const XpcRef& event, const char* key, std::optional<std::int64_t>& value) {
  const xpc_object_t entry = xpc_dictionary_get_value(event.get(), key);
  if (!entry) return true;
  if (xpc_get_type(entry) != xpc_type_t::int64) return false;
  value = xpc_int64_get_value(entry);
  return true;
}

}  // namespace

std::optional<RedactedLine> Redactor::redacted(RecordingLine line, std::string& reason) {
  constexpr std::int64_t kMostProfile = 255;
  if (line.profile && (*line.profile < 0 || *line.profile > kMostProfile))
    return reason = "kKeyProfileID is not from 0 to 255", std::nullopt;
  const CatalogueRow* row = catalogueRow(line.id);
  if (!row) return reason = "no class has the metric ID " + std::to_string(line.id), std::nullopt;
  RedactedLine result{std::move(line), row->table->name, {}};
  if (!result.line.payload) return result;
  const auto payload = bytesFromHex(*result.line.payload);
  const QuietLog quiet;
  const auto message = payload ? row->table->makeWithData(make<Data>(*payload)) : nullptr;
  if (!message)
    return reason = std::string(row->table->name) + ": the payload is malformed", std::nullopt;
  result.replaced = redactMessage(*message, _standIns);
  result.line.payload = hexOf(*message);
  return result;
}

std::optional<RedactedLine> Redactor::redacted(std::string_view text, std::string& reason) {
  const auto recorded = readRecordingLine(text, reason);
  if (!recorded) return std::nullopt;
  std::optional<std::int64_t> id;
  RecordingLine line{0, std::nullopt, std::nullopt, recorded->arrival};
  if (!readInteger(recorded->event, osmin::kKeyMetricID, id) || !id)
    return reason = "kKeyMetricID is no integer", std::nullopt;
  if (!readInteger(recorded->event, osmin::kKeyProfileID, line.profile))
    return reason = "kKeyProfileID is no integer", std::nullopt;
  line.id = *id;
  if (const auto payload = xpc_dictionary_get_value(recorded->event.get(), osmin::kKeyPayload)) {
    if (xpc_get_type(payload) != xpc_type_t::data)
      return reason = "kKeyPayload is not hexadecimal", std::nullopt;
    line.payload = hexText(xpc_data_get_bytes(payload));
  }
  return redacted(std::move(line), reason);
}

}  // namespace quorin::metricctl

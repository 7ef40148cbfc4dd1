#include "basebandd/modem/bus_reading.h"

#include <algorithm>
#include <optional>

namespace quorin::modem {

namespace {

// Each reader below gives nothing where the message is broken: what moves no further must not be
// read again.
using Read = std::optional<Reading>;

template <class T, class Kept>
Read basic(sd_bus_message* message, char type) {
  T value{};
  if (sd_bus_message_read_basic(message, type, &value) <= 0) return std::nullopt;
  return Reading{static_cast<Kept>(value)};
}

Read text(sd_bus_message* message, char type) {
  const char* value = nullptr;
  if (sd_bus_message_read_basic(message, type, &value) <= 0) return std::nullopt;
  return Reading{std::string(value ? value : "")};
}

struct BasicRow {
  char type;
  Read (*read)(sd_bus_message* message, char type);
};
constexpr BasicRow kBasics[] = {
    {'y', basic<std::uint8_t, std::int64_t>},
    {'n', basic<std::int16_t, std::int64_t>},
    {'q', basic<std::uint16_t, std::int64_t>},
    {'i', basic<std::int32_t, std::int64_t>},
    {'u', basic<std::uint32_t, std::int64_t>},
    {'x', basic<std::int64_t, std::int64_t>},
    {'t', basic<std::uint64_t, std::int64_t>},
    {'s', text},
    {'o', text},
    {'g', text},
    {'b', basic<int, bool>},
    {'d', basic<double, double>},
};

std::string keyText(const Reading& key) {
  if (const auto* text = key.as<std::string>()) return *text;
  if (const auto* number = key.as<std::int64_t>()) return std::to_string(*number);
  return "";
}

Read readValue(sd_bus_message* message);

Reading dictionary(sd_bus_message* message) {
  Readings readings;
  const char* entry = nullptr;
  char type = 0;
  while (sd_bus_message_peek_type(message, &type, &entry) > 0 && type == SD_BUS_TYPE_DICT_ENTRY &&
         sd_bus_message_enter_container(message, type, std::string(entry).c_str()) > 0) {
    const Read key = readValue(message);
    Read value = key ? readValue(message) : std::nullopt;
    if (!value) break;
    readings[keyText(*key)] = std::move(*value);
    if (sd_bus_message_exit_container(message) < 0) break;
  }
  return {std::move(readings)};
}

Reading list(sd_bus_message* message) {
  std::vector<Reading> values;
  while (sd_bus_message_at_end(message, /*complete=*/0) == 0) {
    Read value = readValue(message);
    if (!value) break;
    values.push_back(std::move(*value));
  }
  return {std::move(values)};
}

Read bytes(sd_bus_message* message) {
  const void* data = nullptr;
  std::size_t length = 0;
  if (sd_bus_message_read_array(message, 'y', &data, &length) < 0) return std::nullopt;
  const auto* first = static_cast<const std::uint8_t*>(data);
  return Reading{std::vector<std::uint8_t>(first, first + length)};
}

// A message's own nesting is bounded by the bus.
Read readValue(sd_bus_message* message) {
  char type = 0;
  const char* held = nullptr;
  if (sd_bus_message_peek_type(message, &type, &held) <= 0) return std::nullopt;
  const auto* row = std::ranges::find(kBasics, type, &BasicRow::type);
  if (row != std::end(kBasics)) return row->read(message, type);
  const std::string contents = held ? held : "";
  if (type == SD_BUS_TYPE_ARRAY && contents == "y") return bytes(message);
  if (contents.empty() || sd_bus_message_enter_container(message, type, contents.c_str()) <= 0) {
    if (sd_bus_message_skip(message, nullptr) <= 0) return std::nullopt;
    return Reading{};
  }
  Read value = type == SD_BUS_TYPE_VARIANT ? readValue(message)
               : contents.starts_with('{') ? dictionary(message)
                                           : list(message);
  if (!value || sd_bus_message_exit_container(message) < 0) return std::nullopt;
  return value;
}

}  // namespace

Reading readReading(sd_bus_message* message) { return readValue(message).value_or(Reading{}); }

Readings readReadings(sd_bus_message* message) {
  Reading value = readReading(message);
  auto* readings = std::get_if<Readings>(&value.value);
  return readings ? std::move(*readings) : Readings{};
}

}  // namespace quorin::modem

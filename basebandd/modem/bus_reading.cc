#include "basebandd/modem/bus_reading.h"

#include <algorithm>

namespace quorin::modem {

namespace {

template <class T>
T basic(sd_bus_message* message, char type) {
  T value{};
  (void)sd_bus_message_read_basic(message, type, &value);
  return value;
}

template <class T>
Reading whole(sd_bus_message* message, char type) {
  return {static_cast<std::int64_t>(basic<T>(message, type))};
}

Reading text(sd_bus_message* message, char type) {
  const char* value = basic<const char*>(message, type);
  return {std::string(value ? value : "")};
}

struct BasicRow {
  char type;
  Reading (*read)(sd_bus_message* message, char type);
};
constexpr BasicRow kBasics[] = {
    {'y', whole<std::uint8_t>},
    {'n', whole<std::int16_t>},
    {'q', whole<std::uint16_t>},
    {'i', whole<std::int32_t>},
    {'u', whole<std::uint32_t>},
    {'x', whole<std::int64_t>},
    {'t', whole<std::uint64_t>},
    {'s', text},
    {'o', text},
    {'g', text},
    {'b',
     [](sd_bus_message* message, char type) { return Reading{basic<int>(message, type) != 0}; }},
    {'d', [](sd_bus_message* message, char type) { return Reading{basic<double>(message, type)}; }},
};

std::string keyText(const Reading& key) {
  if (const auto* text = key.as<std::string>()) return *text;
  if (const auto* number = key.as<std::int64_t>()) return std::to_string(*number);
  return "";
}

Reading readValue(sd_bus_message* message);

Reading dictionary(sd_bus_message* message) {
  Readings readings;
  const char* entry = nullptr;
  char type = 0;
  while (sd_bus_message_peek_type(message, &type, &entry) > 0 && type == SD_BUS_TYPE_DICT_ENTRY &&
         sd_bus_message_enter_container(message, type, std::string(entry).c_str()) > 0) {
    std::string key = keyText(readValue(message));
    readings[std::move(key)] = readValue(message);
    if (sd_bus_message_exit_container(message) < 0) break;
  }
  return {std::move(readings)};
}

Reading list(sd_bus_message* message) {
  std::vector<Reading> values;
  while (sd_bus_message_at_end(message, /*complete=*/0) == 0) values.push_back(readValue(message));
  return {std::move(values)};
}

Reading bytes(sd_bus_message* message) {
  const void* data = nullptr;
  std::size_t length = 0;
  (void)sd_bus_message_read_array(message, 'y', &data, &length);
  const auto* first = static_cast<const std::uint8_t*>(data);
  return {std::vector<std::uint8_t>(first, first + length)};
}

// A message's own nesting is bounded by the bus.
Reading readValue(sd_bus_message* message) {
  char type = 0;
  const char* held = nullptr;
  if (sd_bus_message_peek_type(message, &type, &held) <= 0) return {};
  const auto* row = std::ranges::find(kBasics, type, &BasicRow::type);
  if (row != std::end(kBasics)) return row->read(message, type);
  const std::string contents = held ? held : "";
  if (type == SD_BUS_TYPE_ARRAY && contents == "y") return bytes(message);
  if (contents.empty() || sd_bus_message_enter_container(message, type, contents.c_str()) <= 0) {
    (void)sd_bus_message_skip(message, nullptr);
    return {};
  }
  Reading value = type == SD_BUS_TYPE_VARIANT ? readValue(message)
                  : contents.starts_with('{') ? dictionary(message)
                                              : list(message);
  (void)sd_bus_message_exit_container(message);
  return value;
}

}  // namespace

Reading readReading(sd_bus_message* message) { return readValue(message); }

Readings readReadings(sd_bus_message* message) {
  Reading value = readValue(message);
  auto* readings = std::get_if<Readings>(&value.value);
  return readings ? std::move(*readings) : Readings{};
}

}  // namespace quorin::modem

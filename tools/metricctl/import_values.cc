#include "tools/metricctl/import_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace quorin::metricctl {

namespace {

constexpr std::string_view kFillers[] = {"", "-", "--", "masked", "Undefined", "(MI)Unknown"};
constexpr std::size_t kDigitsOfMcc = 3;

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

template <class Number>
std::optional<Number> parsed(std::string_view text, auto... base) {
  Number number{};
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, base...);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

Reading inUnit(double number, const Quantity& quantity) {
  if (!std::isfinite(number)) return Reading::malformed();
  if (number < quantity.lowest || number > quantity.highest) return {};
  if (number == quantity.filler || number == quantity.otherFiller) return {};
  if (quantity.whole && number != std::floor(number)) return Reading::malformed();
  return Reading::of(std::llround(number * quantity.scale));
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

bool isFiller(std::string_view text) {
  return std::ranges::find(kFillers, text) != std::end(kFillers);
}

const Record* find(const Record& object, std::string_view key) {
  if (!object.is_object()) return nullptr;
  const auto entry = object.find(key);
  return entry == object.end() || entry->is_null() ? nullptr : &*entry;
}

std::string_view textIn(const Record& object, std::string_view key) {
  const Record* value = find(object, key);
  if (!value || !value->is_string()) return {};
  return trimmed(value->get_ref<const std::string&>());
}

Reading numberIn(const Record& object, std::string_view key, const Quantity& quantity) {
  const Record* value = find(object, key);
  if (!value) return {};
  if (value->is_number()) return inUnit(value->get<double>(), quantity);
  if (!value->is_string()) return Reading::malformed();
  return numberIn(textIn(object, key), quantity);
}

Reading numberIn(std::string_view text, const Quantity& quantity) {
  if (isFiller(text)) return {};
  if (text.ends_with(quantity.unit))
    text = trimmed(text.substr(0, text.size() - quantity.unit.size()));
  const auto number = parsed<double>(text);
  return number ? inUnit(*number, quantity) : Reading::malformed();
}

Reading hexadecimalIn(const Record& object, std::string_view key, const Quantity& quantity) {
  const Record* value = find(object, key);
  if (!value) return {};
  if (!value->is_string()) return Reading::malformed();
  const std::string_view text = textIn(object, key);
  if (isFiller(text)) return {};
  const auto octets = text.starts_with("0x") ? bytesFromHex(text.substr(2)) : std::nullopt;
  if (!octets || octets->empty() || octets->size() > sizeof(std::uint32_t))
    return Reading::malformed();
  std::uint32_t number = 0;
  for (const std::uint8_t octet : *octets) number = number << 8 | octet;
  return inUnit(number, quantity);
}

Reading numberOf(std::string_view name, std::span<const NamedNumber> names) {
  const auto row = std::ranges::find(names, name, &NamedNumber::name);
  return row == names.end() ? Reading{} : Reading::of(row->number);
}

std::optional<NetworkIdentity> networkIn(const Record& object, std::string_view key,
                                         bool& malformed) {
  const std::string_view text = textIn(object, key);
  if (isFiller(text)) return std::nullopt;
  const bool possible =
      (text.size() == 5 || text.size() == 6) && std::ranges::all_of(text, isDigit);
  if (!possible) return malformed = true, std::nullopt;
  const auto mcc = parsed<std::int64_t>(text.substr(0, kDigitsOfMcc));
  const auto mnc = parsed<std::int64_t>(text.substr(kDigitsOfMcc));
  if (!mcc || !mnc || *mcc == 0) return std::nullopt;
  return NetworkIdentity{*mcc, *mnc, static_cast<std::int64_t>(text.size() - kDigitsOfMcc)};
}

std::optional<Milliseconds> timeOf(std::string_view text, std::string_view pattern) {
  constexpr std::string_view kParts = "YMDhms";
  std::array<int, kParts.size()> parts{};
  if (text.size() < pattern.size()) return std::nullopt;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const auto part = kParts.find(pattern[i]);
    if (part == std::string_view::npos ? text[i] != pattern[i] : !isDigit(text[i]))
      return std::nullopt;
    if (part != std::string_view::npos) parts[part] = parts[part] * 10 + (text[i] - '0');
  }
  double fraction = 0;
  if (const std::string_view rest = text.substr(pattern.size()); !rest.empty()) {
    if (rest[0] != '.' || rest.size() == 1 || !std::ranges::all_of(rest.substr(1), isDigit))
      return std::nullopt;
    fraction = parsed<double>(rest.substr(0, 17)).value_or(0);
  }
  const auto [year, month, day, hour, minute, second] = parts;
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok() || year < 1970 || hour > 23 || minute > 59 || second > 60) return std::nullopt;
  return std::chrono::sys_days(date).time_since_epoch() + std::chrono::hours(hour) +
         std::chrono::minutes(minute) + std::chrono::seconds(second) +
         Milliseconds(std::llround(fraction * 1000));
}

}  // namespace quorin::metricctl

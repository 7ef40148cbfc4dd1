#include "metrics/conversions.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace quorin {

namespace {

/// Writes as many decimal digits as the width says.
char* digits(char* at, unsigned value, unsigned width) {
  for (unsigned i = width; i-- > 0; value /= 10) at[i] = static_cast<char>('0' + value % 10);
  return at + width;
}

/// As strftime's "%Y-%m-%d %H:%M:%S %Z", for years of four digits.
Ref<String> zonedText(std::int64_t seconds, const LocalZone& zone) {
  constexpr std::int64_t kDay = 86'400;
  const std::int64_t local = seconds + zone.offset;
  const std::int64_t day = local / kDay - (local % kDay < 0 ? 1 : 0);
  const auto second = static_cast<unsigned>(local - day * kDay);
  const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{day}}};
  constexpr std::size_t kBeforeZone = 20;
  constexpr std::size_t kLongestZone = 64;
  char text[kBeforeZone + kLongestZone] = "0000-00-00 00:00:00 ";
  digits(text, static_cast<unsigned>(static_cast<int>(date.year())), 4);
  digits(text + 5, static_cast<unsigned>(date.month()), 2);
  digits(text + 8, static_cast<unsigned>(date.day()), 2);
  digits(text + 11, second / 3600, 2);
  digits(text + 14, second / 60 % 60, 2);
  digits(text + 17, second % 60, 2);
  const std::size_t length = zone.abbreviation.copy(text + kBeforeZone, kLongestZone);
  return make<String>(std::string_view(text, kBeforeZone + length));
}

/// What strftime makes of any year that it knows.
Ref<String> anyYearText(std::int64_t seconds) {
  const auto instant = static_cast<std::time_t>(seconds);
  std::tm local{};
  localtime_r(&instant, &local);
  char text[96];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %Z", &local);
  return make<String>(std::string_view(text, length));
}

std::int64_t wholeSeconds(double milliseconds) {
  return static_cast<std::int64_t>(std::floor(milliseconds / 1000.0));
}

/// The latest text, which the time stamps of one second share.
struct SharedText {
  std::int64_t seconds = 0;
  std::uint64_t serial = 0;      // of the zone; none has 0
  const String* text = nullptr;  // with a reference, which the process's end keeps

  [[gnu::noinline]] const String& make(std::int64_t at, const LocalZone& zone) {
    constexpr std::int64_t kFirst = -62'135'510'400;  // the second day of the year 1
    constexpr std::int64_t kLast = 253'402'214'400;   // the last day of the year 9999
    const bool usual = at >= kFirst && at < kLast;
    Ref<String> made = usual ? zonedText(at, zone) : anyYearText(at);
    if (text) text->release();
    text = made.take();
    seconds = at;
    serial = zone.serial;
    return *text;
  }
};
constinit SharedText sharedText;

[[gnu::always_inline]] inline const String& timeStampTextAt(std::int64_t seconds) {
  const LocalZone& zone = localZone(seconds);
  if (seconds == sharedText.seconds && zone.serial == sharedText.serial) [[likely]]
    return *sharedText.text;
  return sharedText.make(seconds, zone);
}

/// Of any number.
[[gnu::noinline]] void convertAnyTimeStamp(Dictionary& store, std::size_t place) {
  if (const auto milliseconds = store.at(place)->number())
    store.setAt(place, Value(timeStampTextAt(wholeSeconds(*milliseconds))));
}

/// What a division of integers would give differently is left to that of reals.
[[gnu::always_inline]] inline void convertTimeStampAt(Dictionary& store, std::size_t place) {
  constexpr std::uint64_t kExact = std::uint64_t{1} << 50;
  const Value* const value = store.at(place);
  if (!value) return;
  if (!value->isInteger() || value->natural() >= kExact) [[unlikely]]
    return convertAnyTimeStamp(store, place);
  const auto seconds = static_cast<std::int64_t>(value->natural() / 1000);
  store.setAt(place, Value(timeStampTextAt(seconds)));
}

}  // namespace

std::string timeStampText(double milliseconds) {
  return std::string(timeStampTextAt(wholeSeconds(milliseconds)).text());
}

// Mostly it stands first: written out, since that takes half the work.
void convertTimeStamp(Dictionary& store) {
  const std::size_t place = store.placeOf(kKey<"timestamp">);
  if (place == 0) [[likely]]
    convertTimeStampAt(store, 0);
  else
    convertTimeStampAt(store, place);
}

void halveBandwidths(Dictionary& store) {
  for (const Literal key : {kKey<"dl_bw">, kKey<"ul_bw">}) {
    const Value* value = store.find(key);
    if (const auto number = value ? value->integer() : std::nullopt)
      store.replace(value, Value(static_cast<std::int32_t>(*number) / 2));
  }
}

BandwidthTable bandwidthTable() {
  return {{0, 1.4F}, {1, 3.0F}, {2, 5.0F}, {3, 10.0F}, {4, 15.0F}, {5, 20.0F}};
}

void megahertz(Value& value, const BandwidthTable& bandwidths) {
  if (!value.isInteger64()) return;
  const std::int64_t code = value.integer64();
  if (code >= 0 && code <= 5) value.become(Value(bandwidths.at(static_cast<std::int32_t>(code))));
}

Value imsiDigits(const Value& identity) {
  constexpr std::uint8_t kTypeImsi = 1;
  constexpr std::uint8_t kFiller = 15;
  constexpr std::size_t kMostDigits = 15;
  if (identity.kind() != Value::Kind::data) return identity;
  const Ref<Data> data = identity.data();
  const Bytes octets = data->bytes();
  if (octets.empty() || (octets[0] & 7) != kTypeImsi) return identity;
  const bool odd = (octets[0] & 8) != 0;
  if (octets.size() > kMostDigits) return identity;
  char digits[2 * kMostDigits];
  std::size_t count = 0;
  const auto take = [&](int nibble) { digits[count++] = static_cast<char>('0' + nibble); };
  take(octets[0] >> 4);
  for (std::size_t i = 1; i < octets.size(); ++i) {
    take(octets[i] & 15);
    const bool filled = i + 1 == octets.size() && !odd;
    if (!filled)
      take(octets[i] >> 4);
    else if (octets[i] >> 4 != kFiller)
      return identity;
  }
  const bool all = std::all_of(digits, digits + count, [](char digit) { return digit <= '9'; });
  const bool parity = (count % 2 == 1) == odd;
  return all && parity && count <= kMostDigits
             ? Value(make<String>(std::string_view(digits, count)))
             : identity;
}

}  // namespace quorin

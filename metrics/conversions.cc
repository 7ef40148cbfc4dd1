#include "metrics/conversions.h"

#include <cmath>
#include <ctime>

namespace quorin {

std::string timeStampText(double milliseconds) {
  const auto seconds = static_cast<std::time_t>(std::floor(milliseconds / 1000.0));
  tzset();  // the zone may have changed since the last conversion
  std::tm local{};
  localtime_r(&seconds, &local);
  char text[96];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %Z", &local)};
}

void convertTimeStamp(Dictionary& store) {
  constexpr Literal kTimeStamp{"timestamp"};
  const Value* stamp = store.find(kTimeStamp.text);
  if (const auto number = stamp ? stamp->number() : std::nullopt)
    store.set(kTimeStamp, Value(timeStampText(*number)));
}

void halveBandwidths(Dictionary& store) {
  for (const Literal key : {Literal{"dl_bw"}, Literal{"ul_bw"}}) {
    const Value* bandwidth = store.find(key.text);
    if (const auto number = bandwidth ? bandwidth->integer() : std::nullopt)
      store.set(key, Value(static_cast<std::int32_t>(*number) / 2));
  }
}

BandwidthTable bandwidthTable() {
  return {{0, 1.4F}, {1, 3.0F}, {2, 5.0F}, {3, 10.0F}, {4, 15.0F}, {5, 20.0F}};
}

Value halfSteps(const Value& value, const BandwidthTable& /*bandwidths*/) {
  const auto steps = value.integer();
  return steps ? Value(static_cast<float>(*steps) * 0.5F) : value;
}

Value hundredths(const Value& value, const BandwidthTable& /*bandwidths*/) {
  const auto count = value.integer();
  return count ? Value(static_cast<float>(*count) / 100.0F) : value;
}

Value wholeOfHundredths(const Value& value, const BandwidthTable& /*bandwidths*/) {
  const auto count = value.integer();
  return count ? Value(*count / 100) : value;
}

Value megahertz(const Value& value, const BandwidthTable& bandwidths) {
  const auto code = value.integer();
  if (!code || *code < 0 || *code > 5) return value;
  return Value(bandwidths.at(static_cast<std::int32_t>(*code)));
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
  std::string digits;
  const auto take = [&](int nibble) { digits += static_cast<char>('0' + nibble); };
  take(octets[0] >> 4);
  for (std::size_t i = 1; i < octets.size(); ++i) {
    take(octets[i] & 15);
    const bool filled = i + 1 == octets.size() && !odd;
    if (!filled)
      take(octets[i] >> 4);
    else if (octets[i] >> 4 != kFiller)
      return identity;
  }
  const bool all = digits.find_first_not_of("0123456789") == std::string::npos;
  const bool parity = (digits.size() % 2 == 1) == odd;
  return all && parity && digits.size() <= kMostDigits ? Value(std::move(digits)) : identity;
}

}  // namespace quorin

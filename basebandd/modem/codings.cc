#include "basebandd/modem/codings.h"

#include <arpa/inet.h>

#include <algorithm>

namespace quorin::modem {

namespace {

using Coded = std::optional<std::vector<std::uint8_t>>;

constexpr std::uint8_t kFiller = 0xF;

bool areDigits(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::uint8_t digitAt(std::string_view digits, std::size_t index) {
  return index < digits.size() ? static_cast<std::uint8_t>(digits[index] - '0') : kFiller;
}

std::uint8_t halves(std::uint8_t low, std::uint8_t high) {
  return static_cast<std::uint8_t>(low | high << 4);
}

// The digits of a reading that is a text of so many digits, or empty.
std::string_view digitsOf(const Reading& reading, std::size_t least, std::size_t most) {
  const auto* text = reading.as<std::string>();
  const bool fits = text && text->size() >= least && text->size() <= most && areDigits(*text);
  return fits ? std::string_view(*text) : std::string_view();
}

std::uint32_t numberOf(std::string_view digits) {
  std::uint32_t number = 0;
  for (const char digit : digits) number = 10 * number + static_cast<std::uint32_t>(digit - '0');
  return number;
}

Coded address(const Reading& reading, int family, std::size_t length) {
  const auto* text = reading.as<std::string>();
  std::vector<std::uint8_t> bytes(length);
  if (!text || inet_pton(family, text->c_str(), bytes.data()) != 1) return std::nullopt;
  return bytes;
}

}  // namespace

std::optional<Operator> operatorOf(std::string_view digits) {
  if (digits.size() < 5 || digits.size() > 6 || !areDigits(digits)) return std::nullopt;
  const std::string_view mnc = digits.substr(3);
  return Operator{numberOf(digits.substr(0, 3)), numberOf(mnc),
                  static_cast<std::uint32_t>(mnc.size())};
}

Coded encodedPlmn(const Reading& reading) {
  const std::string_view digits = digitsOf(reading, 5, 6);
  if (digits.empty()) return std::nullopt;
  return std::vector<std::uint8_t>{halves(digitAt(digits, 0), digitAt(digits, 1)),
                                   halves(digitAt(digits, 2), digitAt(digits, 5)),
                                   halves(digitAt(digits, 3), digitAt(digits, 4))};
}

Coded imsiIdentity(const Reading& reading) {
  const std::string_view digits = digitsOf(reading, 6, 15);
  if (digits.empty()) return std::nullopt;
  constexpr std::uint8_t kImsi = 1;
  const auto odd = static_cast<std::uint8_t>(digits.size() % 2 << 3);
  std::vector<std::uint8_t> bytes = {halves(kImsi | odd, digitAt(digits, 0))};
  for (std::size_t i = 1; i < digits.size(); i += 2)
    bytes.push_back(halves(digitAt(digits, i), digitAt(digits, i + 1)));
  return bytes;
}

Coded imsiFile(const Reading& reading) {
  Coded bytes = imsiIdentity(reading);
  if (!bytes) return std::nullopt;
  bytes->insert(bytes->begin(), static_cast<std::uint8_t>(bytes->size()));
  bytes->resize(9, 0xFF);
  return bytes;
}

Coded iccidFile(const Reading& reading) {
  const std::string_view digits = digitsOf(reading, 18, 20);
  if (digits.empty()) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < 20; i += 2)
    bytes.push_back(halves(digitAt(digits, i), digitAt(digits, i + 1)));
  return bytes;
}

Coded plainBytes(const Reading& reading) {
  const auto* bytes = reading.as<std::vector<std::uint8_t>>();
  if (!bytes || bytes->empty()) return std::nullopt;
  return *bytes;
}

Coded ipv4Address(const Reading& reading) { return address(reading, AF_INET, 4); }
Coded ipv6Address(const Reading& reading) { return address(reading, AF_INET6, 16); }

}  // namespace quorin::modem

#include "tools/metricctl/spellings.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <set>

namespace quorin::metricctl {

namespace {

// What is shorter or plainer would be found by chance.
constexpr std::size_t kLeast = 8;
constexpr std::size_t kLeastDifferent = 3;

std::string hexOfText(std::string_view text) {
  return hexText(ByteString(text.begin(), text.end()));
}

std::string withCase(std::string text, int (*convert)(int)) {
  std::ranges::transform(text, text.begin(), [convert](char c) {
    return static_cast<char>(convert(static_cast<unsigned char>(c)));
  });
  return text;
}

/// Digits as the halves of octets, the first one low; an odd one at the end is left out.
std::string swapped(std::string_view digits) {
  std::string halves;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    halves += digits[i + 1];
    halves += digits[i];
  }
  return halves;
}

std::string varint(std::uint64_t number) {
  ByteString bytes;
  for (; number > 0x7F; number >>= 7) bytes.push_back(static_cast<std::uint8_t>(number | 0x80));
  bytes.push_back(static_cast<std::uint8_t>(number));
  return hexText(bytes);
}

std::vector<std::string> spellingsOfDigits(const std::string& digits) {
  std::vector<std::string> all = {digits, hexOfText(digits), swapped(digits),
                                  swapped(std::string_view(digits).substr(1))};
  std::uint64_t number = 0;
  const char* end = digits.data() + digits.size();
  if (std::from_chars(digits.data(), end, number).ec == std::errc()) {
    all.push_back(varint(number));
    all.push_back(varint(2 * number));  // of a signed field
  }
  return all;
}

std::string addressText(int family, const std::uint8_t* address) {
  char text[INET6_ADDRSTRLEN] = "";
  (void)inet_ntop(family, address, text, sizeof text);
  return text;
}

std::vector<std::string> spellingsOfBytes(const ByteString& value) {
  const std::string text(value.begin(), value.end());
  const std::string hex = hexText(value);
  std::vector<std::string> all = {
      hex,
      hexText(ByteString(value.rbegin(), value.rend())),
      hexOfText(hex),
      hexOfText(withCase(hex, std::toupper)),
      hexOfText(withCase(text, std::tolower)),
      hexOfText(withCase(text, std::toupper)),
  };
  if (value.size() == 4 || value.size() == 20)
    all.push_back(hexOfText(addressText(AF_INET, value.data())));
  if (value.size() == 16 || value.size() == 20)
    all.push_back(hexOfText(addressText(AF_INET6, value.data() + value.size() - 16)));
  return all;
}

}  // namespace

void Spellings::add(const std::string& name, const Replaced& identity) {
  for (std::string& text : spellingsOfBytes(identity.value)) addText(name, std::move(text));
  for (const std::string& digits : identity.digits)
    for (std::string& text : spellingsOfDigits(digits)) addText(name, std::move(text));
}

void Spellings::addText(const std::string& name, std::string text) {
  if (text.size() < kLeast || std::set(text.begin(), text.end()).size() < kLeastDifferent) return;
  auto& same = _byStart[text.substr(0, kLeast)];
  if (std::ranges::find(same, text, &Spelling::text) == same.end())
    same.push_back({std::move(text), name});
}

std::string Spellings::findIn(std::string_view line) const {
  if (_byStart.empty()) return {};
  const std::string low = withCase(std::string(line), std::tolower);
  for (std::size_t at = 0; at + kLeast <= low.size(); ++at) {
    const auto candidates = _byStart.find(low.substr(at, kLeast));
    if (candidates == _byStart.end()) continue;
    for (const Spelling& spelling : candidates->second)
      if (std::string_view(low).substr(at).starts_with(spelling.text)) return spelling.name;
  }
  return {};
}

}  // namespace quorin::metricctl

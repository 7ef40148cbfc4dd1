#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "basebandd/modem/Reading.h"

namespace quorin::modem {

/// A network as numbers. The network code's digits tell 01 from 001.
struct Operator {
  std::uint32_t mcc;
  std::uint32_t mnc;
  std::uint32_t mncDigits;
};

/// Reads five or six digits, country code first; empty for any other text.
[[nodiscard]] std::optional<Operator> operatorOf(std::string_view digits);

/// The bytes that a message field takes for a reading. Empty: the reading is absent, of another
/// kind, empty, or nothing that can be coded.
using Coding = std::optional<std::vector<std::uint8_t>> (*)(const Reading& reading);

/// A PLMN from five or six digits (3GPP TS 24.008 10.5.1.3).
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encodedPlmn(const Reading& reading);
/// An IMSI's digits as a mobile identity without its length (3GPP TS 24.008 10.5.1.4).
[[nodiscard]] std::optional<std::vector<std::uint8_t>> imsiIdentity(const Reading& reading);
/// EF IMSI: the length and the identity, filled up to nine bytes (3GPP TS 31.102 4.2.2).
[[nodiscard]] std::optional<std::vector<std::uint8_t>> imsiFile(const Reading& reading);
/// EF ICCID: ten bytes of digits, halves swapped (ETSI TS 102 221 13.2).
[[nodiscard]] std::optional<std::vector<std::uint8_t>> iccidFile(const Reading& reading);
/// Bytes as they are; at least one.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> plainBytes(const Reading& reading);
/// An internet address's bytes: four or sixteen.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> ipv4Address(const Reading& reading);
[[nodiscard]] std::optional<std::vector<std::uint8_t>> ipv6Address(const Reading& reading);

}  // namespace quorin::modem

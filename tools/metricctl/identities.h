#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "messages/codec/AnyMessage.h"

namespace quorin::metricctl {

using ByteString = std::vector<std::uint8_t>;

/// Numbers the different values of each kind from 1, in the order in which they first appear. So
/// nothing but that order can be learnt from a number, and numbering what was numbered changes
/// nothing.
class StandIns {
 public:
  [[nodiscard]] std::uint64_t numberOf(const std::string& kind, const ByteString& value);

 private:
  std::map<std::string, std::map<ByteString, std::uint64_t>> _numbers;
};

/// How an identity stands in its field. Values are bytes: a number's, the highest first, a text's.
struct IdentityCoding {
  const char* standIn;  // what it becomes, for the reader of the reference page
  /// The stand-in of a value that `holder` has; of a stand-in, the same again.
  ByteString (*redacted)(StandIns& standIns, const AnyMessage& holder, ByteString value);
  /// The value as decimal digits, whole and without what stays of it; empty: it has none.
  std::vector<std::string> (*digits)(const AnyMessage& holder, const ByteString& value);
};

/// A field whose value is replaced.
struct IdentityRow {
  std::string_view messageClass;
  std::string_view key;
  const IdentityCoding* coding;
};

[[nodiscard]] std::span<const IdentityRow> identityRows();
/// The row of this field, or null.
[[nodiscard]] const IdentityRow* identityRow(std::string_view messageClass, std::string_view key);

/// A value that was replaced, where it stood, and as what it can be searched for.
struct Replaced {
  std::string field;  // "guti.m_tmsi"
  ByteString value;
  std::vector<std::string> digits;
};

/// Replaces the identities of a message and of what is nested in it; gives what it changed.
[[nodiscard]] std::vector<Replaced> redactMessage(AnyMessage& message, StandIns& standIns);

/// Keys that tell a place, and so stay.
struct PlaceRow {
  std::string_view key;
  const char* what;
};
[[nodiscard]] std::span<const PlaceRow> placeRows();

}  // namespace quorin::metricctl

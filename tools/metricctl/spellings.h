#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/metricctl/identities.h"

namespace quorin::metricctl {

/// Texts by which identities could be found in a line of a recording: their bytes in both orders,
/// their digits as text, in the halves of octets and as numbers. A text of fewer than eight
/// characters, or of fewer than three different ones, would be found by chance and is left out.
class Spellings {
 public:
  void add(const std::string& name, const Replaced& identity);
  /// The name of an identity that occurs in the line, or empty.
  [[nodiscard]] std::string findIn(std::string_view line) const;

 private:
  struct Spelling {
    std::string text;
    std::string name;
  };
  void addText(const std::string& name, std::string text);

  std::unordered_map<std::string, std::vector<Spelling>> _byStart;  // by their first eight
};

}  // namespace quorin::metricctl

#pragma once

#include <string>
#include <vector>

namespace quorin::test {

/// The rows of a tab-separated file of tests/data, without its comment lines.
[[nodiscard]] std::vector<std::vector<std::string>> tableRows(const std::string& file);

/// One field as tests/data/fields.tsv has it.
struct FieldFact {
  std::string className;
  unsigned number;
  std::string key;
  std::string property;
  std::string type;   // "uint64", "repeated message RxInfo", ...
  std::string names;  // of an enumeration
};
[[nodiscard]] std::vector<FieldFact> fieldFacts();

}  // namespace quorin::test

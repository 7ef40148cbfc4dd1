#include "tests/support/tables.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quorin::test {

std::vector<std::vector<std::string>> tableRows(const std::string& file) {
  std::ifstream in(QUORIN_SOURCE_DIR "/tests/data/" + file);
  if (!in) throw std::runtime_error("no tests/data/" + file);
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('#')) continue;
    std::istringstream cells(line + '\t');
    auto& row = rows.emplace_back();
    for (std::string cell; std::getline(cells, cell, '\t');) row.push_back(cell);
  }
  return rows;
}

std::vector<FieldFact> fieldFacts() {
  std::vector<FieldFact> facts;
  for (const auto& row : tableRows("fields.tsv"))
    facts.push_back({row.at(0), static_cast<unsigned>(std::stoul(row.at(1))), row.at(2), row.at(3),
                     row.at(4), row.size() > 5 ? row[5] : ""});
  return facts;
}

}  // namespace quorin::test

#pragma once

#include <map>
#include <string>
#include <vector>

namespace quorin {

/// The technologies, and the category titles of each, in the order in which pages list them.
struct PageTree {
  std::vector<std::string> technologies;
  std::map<std::string, std::vector<std::string>, std::less<>> categories;
};

/// Builds the one literal that all pages share.
[[nodiscard]] PageTree buildPageTree();

}  // namespace quorin

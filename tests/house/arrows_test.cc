#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace quorin::test {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = QUORIN_SOURCE_DIR;

/// Folder -> what it may include.
std::map<std::string, std::set<std::string>> arrows() {
  std::map<std::string, std::set<std::string>> rows;
  std::ifstream file(kRoot / "arrows.txt");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string folder;
    if (!(words >> folder) || folder.starts_with('#')) continue;
    auto& may = rows[folder];
    for (std::string word; words >> word;) may.insert(word);
  }
  return rows;
}

bool isSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cc";
}

/// The longest row that the folder lies in, or empty.
std::string rowOf(std::string folder, const std::map<std::string, std::set<std::string>>& rows) {
  while (!folder.empty() && !rows.contains(folder))
    folder = fs::path(folder).parent_path().string();
  return folder;
}

struct Include {
  std::string file;
  std::string name;
  bool foreign;
};

std::vector<Include> includesBelow(const std::string& folder) {
  static const std::regex kInclude(R"(^\s*#\s*include\s*(["<])([^">]+)[">])");
  std::vector<Include> includes;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
    if (!isSource(entry.path())) continue;
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      std::smatch match;
      if (std::regex_search(line, match, kInclude))
        includes.push_back({fs::relative(entry.path(), kRoot).string(), match[2], match[1] == "<"});
    }
  }
  return includes;
}

/// A header of the standard library or the operating system.
bool isSystemHeader(const std::string& name) {
  return name.find('/') == std::string::npos || name.starts_with("sys/") ||
         name.starts_with("linux/");
}

bool mayInclude(const Include& include, const std::set<std::string>& may, const std::string& row,
                const std::map<std::string, std::set<std::string>>& rows) {
  if (include.foreign)
    return isSystemHeader(include.name) ||
           std::ranges::any_of(may, [&](const std::string& allowed) {
             return allowed.starts_with('<') && include.name.starts_with(allowed.substr(1));
           });
  const std::string target = rowOf(fs::path(include.name).parent_path().string(), rows);
  return target == row || may.contains(target) || may.contains(include.name) ||
         (row == "platform" && include.name.starts_with("platform/"));
}

TEST(Arrows, PointDownOnly) {
  const auto rows = arrows();
  std::vector<std::string> broken;
  std::size_t checked = 0;
  for (const char* top :
       {"app", "viewer", "metrics", "messages", "client", "platform", "basebandd"}) {
    if (!fs::exists(kRoot / top)) continue;
    for (const Include& include : includesBelow(top)) {
      const std::string row = rowOf(fs::path(include.file).parent_path().string(), rows);
      ++checked;
      if (!mayInclude(include, rows.at(row), row, rows))
        broken.push_back(include.file + " includes " + include.name);
    }
  }
  EXPECT_THAT(broken, ::testing::IsEmpty());
  EXPECT_GT(checked, 300U);
}

TEST(House, KeepsMacrosInOneHeader) {
  std::vector<std::string> broken;
  for (const char* top : {"app", "viewer", "metrics", "messages", "client", "platform", "tools"})
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / top)) {
      if (!isSource(entry.path()) || entry.path().filename() == "fields.h") continue;
      std::ifstream file(entry.path());
      for (std::string line; std::getline(file, line);)
        if (line.starts_with("#define")) broken.push_back(entry.path().string() + ": " + line);
    }
  EXPECT_THAT(broken, ::testing::IsEmpty());
}

TEST(House, ListsEveryDependencyInTheReadme) {
  std::ifstream list(kRoot / "dependencies.txt");
  std::ifstream readmeFile(kRoot / "README.md");
  const std::string readme{std::istreambuf_iterator<char>(readmeFile), {}};
  std::size_t packages = 0;
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line);
    std::string package;
    if (!(words >> package) || package.starts_with('#')) continue;
    ++packages;
    EXPECT_NE(readme.find("`" + package + "`"), std::string::npos) << package;
  }
  EXPECT_GT(packages, 5U);
}

}  // namespace
}  // namespace quorin::test

#include "platform/foundation/Bundle.h"

#include <filesystem>

namespace quorin {

Bundle& Bundle::mainBundle() {
  static Bundle bundle = [] {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return Bundle((program.parent_path().parent_path() / "share/quorin").string());
  }();
  return bundle;
}

std::optional<std::string> Bundle::pathForResource(std::string_view name,
                                                   std::string_view type) const {
  std::string path = _folder;
  path.append("/").append(name).append(".").append(type);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  return path;
}

}  // namespace quorin

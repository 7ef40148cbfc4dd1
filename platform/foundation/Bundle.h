#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorin {

/// The folder of files that ship with the application.
class Bundle {
 public:
  /// The running program's: `share/quorin` beside the folder that the program stands in.
  [[nodiscard]] static Bundle& mainBundle();

  explicit Bundle(std::string folder) : _folder(std::move(folder)) {}

  [[nodiscard]] const std::string& folder() const { return _folder; }
  void setFolder(std::string folder) { _folder = std::move(folder); }

  /// The path of the file `name.type`, or empty when the bundle has no such file.
  [[nodiscard]] std::optional<std::string> pathForResource(std::string_view name,
                                                           std::string_view type) const;

 private:
  std::string _folder;
};

}  // namespace quorin

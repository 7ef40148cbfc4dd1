#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/platform.h"

namespace quorin::test {

/// An empty folder that is the main bundle's while this lives.
class ResourceFolder {
 public:
  ResourceFolder() {
    std::filesystem::create_directories(_folder);
    Bundle::mainBundle().setFolder(_folder);
  }
  ~ResourceFolder() {
    Bundle::mainBundle().setFolder(_before);
    std::error_code error;
    std::filesystem::remove_all(_folder, error);
  }
  ResourceFolder(const ResourceFolder&) = delete;
  ResourceFolder& operator=(const ResourceFolder&) = delete;

  void put(std::string_view name, std::string_view content) const {
    std::ofstream(_folder + "/" + std::string(name), std::ios::binary) << content;
  }
  [[nodiscard]] const std::string& path() const { return _folder; }

 private:
  std::string _before = Bundle::mainBundle().folder();
  std::string _folder =
      (std::filesystem::temp_directory_path() / ("quorin_resources_" + std::to_string(::getpid())))
          .string();
};

}  // namespace quorin::test

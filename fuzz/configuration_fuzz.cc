#include "basebandd/deviceconfig.h"
#include "fuzz/support/promise.h"
#include "messages/catalogue.h"

namespace {

using namespace quorin;
using fuzz::promise;

std::optional<DeviceConfig> read(const std::string& text, std::string& reason) {
  reason.clear();
  auto config =
      readDeviceConfig({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, reason);
  promise(config.has_value() == reason.empty(), "a refusal has a reason", reason);
  return config;
}

}  // namespace

// A metric configuration, as any client may send one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(bytes, bytes + size);
  std::string reason;
  const auto config = read(text, reason);
  if (!config) {
    promise(reason.starts_with("line "), "a reason names its line", reason);
    promise(reason.find('\n') == std::string::npos, "a reason is one line", reason);
    promise(reason.size() < 1000, "a reason does not grow with what it refuses", reason);
    return 0;
  }
  promise(!config->empty(), "a configuration asks for something");
  for (const auto& [id, period] : *config) {
    promise(catalogueRow(id), "a configured metric has a class");
    promise(!period || (*period >= Milliseconds(100) && *period <= Milliseconds(3'600'000)),
            "a period lies in its bounds");
  }
  promise(read(text + "\n# a comment\n", reason) == config || text.size() > 60'000,
          "a comment changes nothing", reason);
  return 0;
}

#include "basebandd/deviceconfig.h"

// A metric configuration, as any client may send one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace quorin;
  std::string reason;
  const auto config = readDeviceConfig({bytes, size}, reason);
  if (config.has_value() != reason.empty()) fatal();
  return 0;
}

#include "fuzz/support/promise.h"
#include "messages/catalogue.h"
#include "tests/support/wire_properties.h"

// The first byte chooses the message class, the rest is its payload.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace quorin;
  static const LogSink before = setSystemLogSink([](std::string_view) {});
  if (size == 0) return 0;
  const auto& row = catalogue()[bytes[0] % catalogue().size()];
  const std::string broken = test::brokenWireProperty(*row.table, {bytes + 1, size - 1});
  fuzz::promise(broken.empty(), row.table->name, broken);
  return 0;
}

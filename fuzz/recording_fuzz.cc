#include "platform/baseband/EventRecord.h"
#include "platform/recording/recording.h"

// One line of a recording, and the event record that it becomes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace quorin;
  std::string reason;
  const auto recorded = readRecordingLine({reinterpret_cast<const char*>(bytes), size}, reason);
  if (!recorded) return 0;
  const EventRecord* record = _CFXPCCreateCFObjectFromXPCObject(recorded->event.get());
  (void)printed(record->dictionary());
  record->release();
  return 0;
}

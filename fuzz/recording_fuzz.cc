#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

#include "fuzz/support/promise.h"
#include "platform/baseband/EventRecord.h"
#include "platform/recording/PacedRecording.h"

namespace {

using namespace quorin;
using fuzz::promise;

constexpr int kMostEvents = 40;

/// A file in memory.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view text) : _fd(memfd_create("recording", MFD_CLOEXEC)) {
    promise(write(_fd, text.data(), text.size()) == std::ssize(text), "the file can be written");
  }
  ~MemoryFile() { close(_fd); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(_fd); }

 private:
  int _fd;
};

/// The event's record holds what the event held, key by key.
void checkRecord(const XpcRef& event) {
  const EventRecord* record = _CFXPCCreateCFObjectFromXPCObject(event.get());
  promise(record, "every event has its record");
  const Dictionary held = record->dictionary();
  record->release();
  promise(held.size() == xpc_dictionary_get_count(event.get()), "a record has its event's entries",
          held);
  std::size_t row = 0;
  xpc_dictionary_apply(event.get(), [&](const std::string& key, xpc_object_t value) {
    const auto& [name, kept] = held[row++];
    bool same = name.text == key;
    switch (xpc_get_type(value)) {
      case xpc_type_t::null: same = same && kept.kind() == Value::Kind::nothing; break;
      case xpc_type_t::boolean: same = same && kept == Value(xpc_bool_get_value(value)); break;
      case xpc_type_t::int64: same = same && kept == Value(xpc_int64_get_value(value)); break;
      case xpc_type_t::float64:
        same = same && kept.kind() == Value::Kind::float64 &&
               kept.float64() == xpc_double_get_value(value);
        break;
      case xpc_type_t::string: same = same && kept.text() == xpc_string_get_string(value); break;
      case xpc_type_t::data:
        same = same && std::ranges::equal(kept.data()->bytes(), xpc_data_get_bytes(value));
        break;
      case xpc_type_t::dictionary: same = false; break;
    }
    promise(same, "a record has its event's entries", held);
  });
}

}  // namespace

// The first line is a speed, "-" before it asks for loops; the rest is the recording.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view all(reinterpret_cast<const char*>(bytes), size);
  const auto firstEnd = all.find('\n');
  std::string speedText(all.substr(0, firstEnd));
  const bool loop = speedText.starts_with('-');
  if (loop) speedText.erase(0, 1);
  Speed speed;
  if (!readSpeed(speedText, speed)) speed = 1;
  promise(!speed || (*speed > 0 && *speed <= 1e6), "a speed is one", speedText);

  const MemoryFile file(firstEnd == std::string_view::npos ? "" : all.substr(firstEnd + 1));
  constexpr Milliseconds kStart{1000};
  PacedRecording recording(file.path(), speed, loop, kStart);
  promise(recording.error().empty(), "the file can be read", recording.error());
  Milliseconds before = kStart;
  for (int i = 0; i < kMostEvents && recording.next(); ++i) {
    promise(*recording.next() >= before, "no event is due before the one before it");
    before = *recording.next();
    checkRecord(recording.take());
  }
  for (const std::string& line : recording.unreadableLines())
    promise(line.starts_with(recording.path() + ":") && line.find('\n') == std::string::npos,
            "a line that cannot be read is named in one line", line);
  return 0;
}

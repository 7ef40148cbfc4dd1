#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/baseband/xpc.h"
#include "platform/foundation/Dictionary.h"

namespace quorin {

/// A service event as a property-list dictionary: immutable, and one allocation of at most 64 bytes
/// beside the payload, since every record stays allocated. Its count is atomic: it is made on the
/// wrapper's queue and read on the main thread.
class EventRecord {
 public:
  EventRecord(const EventRecord&) = delete;
  EventRecord& operator=(const EventRecord&) = delete;

  void retain() const { _references.fetch_add(1, std::memory_order_relaxed); }
  void release() const;
  [[nodiscard]] std::uint32_t references() const { return _references.load(); }

  /// The entries as the program's own dictionary, in their order.
  [[nodiscard]] Dictionary dictionary() const;

  /// Bytes that this record keeps allocated.
  [[nodiscard]] std::size_t allocatedBytes() const { return sizeof *this + _length; }

 private:
  friend const EventRecord* _CFXPCCreateCFObjectFromXPCObject(xpc_object_t event);

  explicit EventRecord(std::uint32_t length) : _length(length) {}
  ~EventRecord() = default;
  [[nodiscard]] Bytes packed() const {
    return {reinterpret_cast<const std::uint8_t*>(this + 1), _length};
  }

  mutable std::atomic<std::uint32_t> _references{1};
  std::uint32_t _length;  // of the packed entries behind the record
};

/// The event as a record with one reference, which the caller owns; null when it is no dictionary.
[[nodiscard]] const EventRecord* _CFXPCCreateCFObjectFromXPCObject(xpc_object_t event);

}  // namespace quorin

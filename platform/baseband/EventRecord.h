#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <optional>
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

  /// What the service sends with a metric. Zeros lie behind the payload, as behind a `Data`.
  struct Metric {
    std::int64_t id;
    Bytes payload;
    std::int64_t profileID;
  };
  /// Of an event that has these entries and no others, as long as the record; empty for any other.
  [[nodiscard]] std::optional<Metric> metric() const {
    if (!_isMetric) return std::nullopt;
    std::int64_t numbers[2];
    std::memcpy(numbers, this + 1, sizeof numbers);
    const Bytes payload = content().subspan(sizeof numbers);
    return Metric{numbers[0], payload.first(payload.size() - kReadableBehind), numbers[1]};
  }

  /// The entries as the program's own dictionary, in their order.
  [[nodiscard]] Dictionary dictionary() const;

  /// Bytes that this record keeps allocated.
  [[nodiscard]] std::size_t allocatedBytes() const { return sizeof *this + _length; }

 private:
  friend const EventRecord* _CFXPCCreateCFObjectFromXPCObject(xpc_object_t event);

  EventRecord(std::size_t length, bool isMetric)
      : _length(static_cast<std::uint32_t>(length) & 0x7fffffff), _isMetric(isMetric) {}
  ~EventRecord() = default;
  [[nodiscard]] Bytes content() const {
    return {reinterpret_cast<const std::uint8_t*>(this + 1), _length};
  }

  mutable std::atomic<std::uint32_t> _references{1};
  std::uint32_t _length : 31;  // of the content, which lies behind the record
  std::uint32_t _isMetric : 1;
};

/// The event as a record with one reference, which the caller owns; null when it is no dictionary.
[[nodiscard]] const EventRecord* _CFXPCCreateCFObjectFromXPCObject(xpc_object_t event);

}  // namespace quorin

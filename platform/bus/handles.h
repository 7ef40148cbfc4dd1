#pragma once

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <utility>

namespace quorin::bus {

struct Release {
  void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
  void operator()(sd_event* event) const { sd_event_unref(event); }
  void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
};

/// Closes without flushing: a private connection's other end may have stopped reading for good.
struct Cut {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

using Connection = std::unique_ptr<sd_bus, Release>;
using PeerConnection = std::unique_ptr<sd_bus, Cut>;
using Message = std::unique_ptr<sd_bus_message, Release>;
using Slot = std::unique_ptr<sd_bus_slot, Release>;
using EventLoop = std::unique_ptr<sd_event, Release>;
using EventSource = std::unique_ptr<sd_event_source, Release>;

/// A message that the caller of a callback keeps; this takes a reference of its own.
[[nodiscard]] inline Message keep(sd_bus_message* message) {
  return Message(sd_bus_message_ref(message));
}

/// Owns a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : _fd(fd) {}
  Descriptor(Descriptor&& other) noexcept : _fd(std::exchange(other._fd, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(_fd, other._fd);
    return *this;
  }
  ~Descriptor() {
    if (_fd >= 0) close(_fd);
  }

  [[nodiscard]] int get() const { return _fd; }
  [[nodiscard]] int take() { return std::exchange(_fd, -1); }

 private:
  int _fd = -1;
};

/// The bus that the environment names, or the system's. Null when it cannot be reached; `reason`
/// then says why.
[[nodiscard]] Connection openBus(std::string& reason);

/// One end of a private connection over this descriptor. Null when that fails.
[[nodiscard]] PeerConnection openPeer(Descriptor descriptor, bool server);

}  // namespace quorin::bus

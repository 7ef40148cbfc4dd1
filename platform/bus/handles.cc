#include "platform/bus/handles.h"

#include <sys/socket.h>

#include <cstdlib>
#include <cstring>

#include "platform/bus/protocol.h"

namespace quorin::bus {

namespace {

/// Runs the steps until one fails; gives the failing step's error.
template <class... Steps>
int inTurn(const Steps&... steps) {
  int result = 0;
  (void)((result = steps(), result >= 0) && ...);
  return result;
}

}  // namespace

Connection openBus(std::string& reason) {
  const char* address = std::getenv(kAddressVariable);
  sd_bus* bus = nullptr;
  const int result = address ? inTurn([&] { return sd_bus_new(&bus); },
                                      [&] { return sd_bus_set_address(bus, address); },
                                      [&] { return sd_bus_set_bus_client(bus, 1); },
                                      [&] { return sd_bus_start(bus); })
                             : sd_bus_open_system(&bus);
  Connection connection(bus);
  if (result >= 0) return connection;
  reason = std::string(address ? address : "system bus") + ": " + std::strerror(-result);
  return nullptr;
}

PeerConnection openPeer(Descriptor descriptor, bool server) {
  sd_bus* bus = nullptr;
  sd_id128_t id{};
  const int result =
      inTurn([&] { return sd_bus_new(&bus); }, [&] { return sd_id128_randomize(&id); },
             [&] { return server ? sd_bus_set_server(bus, 1, id) : 0; },
             // Who holds the descriptor was let in on the bus; a socket pair's
             // credentials are its maker's on both ends and prove nothing.
             [&] { return sd_bus_set_anonymous(bus, 1); },
             // Nor does the loop's end wait for the other end.
             [&] { return sd_bus_set_close_on_exit(bus, 0); },
             [&] { return sd_bus_set_fd(bus, descriptor.get(), descriptor.get()); });
  PeerConnection connection(bus);
  if (result < 0) return nullptr;
  const int fd = descriptor.take();  // the connection owns it now
  if (sd_bus_start(bus) < 0) return nullptr;
  // sd-bus asks for 8 MiB; a slow reader shall not hold so much of what is past.
  constexpr int kKernelBytes = 208 * 1024;
  return setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &kKernelBytes, sizeof kKernelBytes) < 0
             ? nullptr
             : std::move(connection);
}

}  // namespace quorin::bus

#pragma once

#include "basebandd/MetricSource.h"
#include "basebandd/Service.h"
#include "platform/bus/handles.h"

namespace quorin {

/// Puts the service on the bus: its interface, a private connection for each session's events, and
/// the source's time. One thread, on one event loop.
class BusServer {
 public:
  BusServer(sd_event* loop, std::unique_ptr<MetricSource> source);
  ~BusServer();
  BusServer(const BusServer&) = delete;
  BusServer& operator=(const BusServer&) = delete;

  /// Connects, offers the interface and takes the service's name. False: `reason` says why not.
  [[nodiscard]] bool start(std::string& reason);

 private:
  struct Client;
  struct Methods;

  /// The caller, known from now on until it leaves the bus. Null: `reason` says why not.
  [[nodiscard]] Client* client(sd_bus_message* call, std::string& reason);
  [[nodiscard]] Milliseconds sourceTime() const;
  void advance();
  void armTimer();
  [[nodiscard]] std::string status() const;
  static int onClientGone(sd_bus_track* track, void* client);
  static int onTime(sd_event_source* source, std::uint64_t time, void* server);
  static int afterEach(sd_event_source* source, void* server);

  sd_event* _loop;
  std::unique_ptr<MetricSource> _source;
  Service _service;
  std::optional<Milliseconds> _heldAt;  // the source's time, while it is held
  Milliseconds _behind{0};              // how far the source's time is behind the clock
  std::uint64_t _steps = 0;             // metrics to give while held
  std::map<std::string, std::unique_ptr<Client>> _clients;  // by unique bus name
  bus::Connection _bus;
  bus::EventSource _timer;
};

}  // namespace quorin

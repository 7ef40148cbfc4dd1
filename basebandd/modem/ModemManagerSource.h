#pragma once

#include "basebandd/MetricSource.h"
#include "basebandd/modem/HeldReadings.h"
#include "basebandd/modem/ReportQueue.h"
#include "platform/bus/handles.h"

namespace quorin {

/// The system's modem as a source: follows one modem of ModemManager over the system bus, while it
/// comes and goes. Changes nothing of the modem but what it reports. One thread, on one event loop.
class ModemManagerSource final : public MetricSource {
 public:
  /// Follows the modem of this name (its number, object path, device or model), or, without a name,
  /// the first one that is enabled.
  ModemManagerSource(sd_event* loop, std::string name);
  ~ModemManagerSource() override;
  ModemManagerSource(const ModemManagerSource&) = delete;
  ModemManagerSource& operator=(const ModemManagerSource&) = delete;

  [[nodiscard]] std::optional<Milliseconds> next() const override;
  void give(const Sink& sink) override { _queue.give(sink); }
  [[nodiscard]] std::optional<Standing> standing(std::int64_t metricID) const override {
    return _queue.standing(metricID);
  }
  void setWake(std::function<void()> wake) override { _wake = std::move(wake); }
  [[nodiscard]] std::string description() const override;

 private:
  using Interfaces = std::map<std::string, modem::Readings>;  // by interface
  using Answer = std::function<void(sd_bus_message* reply)>;
  using Append = std::function<int(sd_bus_message* call)>;
  struct Call;

  void connect();
  void disconnect();
  void start();
  void addObject(const std::string& path, const modem::Readings& interfaces);
  /// Calls a method of the service; the answer comes only while the same modem is followed.
  void call(const std::string& path, const char* interface, const char* member, Answer answer,
            const Append& append = {});
  void readAll(const std::string& path, const char* interface);

  void choose();
  void follow(const std::string& path);
  void setUp();
  void poll();
  void askForLocation();
  void readCardAndBearers();
  void refresh(modem::Groups groups);
  void note();

  [[nodiscard]] const modem::Readings& of(const std::string& path, const char* interface) const;
  [[nodiscard]] const modem::Readings& followed(const char* interface) const {
    return of(_path, interface);
  }
  [[nodiscard]] bool isFromService(sd_bus_message* message) const;
  [[nodiscard]] bool isEnabled(const std::string& path) const;
  [[nodiscard]] bool isNamed(const std::string& path) const;
  [[nodiscard]] std::vector<std::string> modems() const;
  [[nodiscard]] modem::ModemReadings readings() const;

  static int onOwner(sd_bus_message* message, void* source, sd_bus_error* error);
  static int onAdded(sd_bus_message* message, void* source, sd_bus_error* error);
  static int onRemoved(sd_bus_message* message, void* source, sd_bus_error* error);
  static int onChanged(sd_bus_message* message, void* source, sd_bus_error* error);
  static int onReply(sd_bus_message* message, void* call, sd_bus_error* error);
  static int onTick(sd_event_source* timer, std::uint64_t time, void* source);

  sd_event* _loop;
  std::string _name;
  std::function<void()> _wake;
  modem::ReportQueue _queue;
  std::map<std::string, Interfaces> _objects;  // by path
  std::string _owner;                          // the service's unique name; empty: it is away
  std::string _path;                           // the followed modem; empty: none
  std::uint64_t _generation = 0;               // counts what is followed
  bool _isSetUp = false;
  bool _offersCells = true;
  bool _awaitsCells = false;
  modem::HeldReadings _held;
  std::string _reason;  // why there is no bus
  std::string _noted;   // the latest description in the log
  bus::Connection _bus;
  bus::EventSource _timer;
};

}  // namespace quorin

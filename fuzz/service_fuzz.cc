#include <nlohmann/json.hpp>

#include "basebandd/BusServer.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/StandInBus.h"
#include "fuzz/support/promise.h"
#include "metrics/registry/metric_ids.h"
#include "platform/bus/EventStream.h"
#include "platform/bus/protocol.h"

namespace {

using namespace quorin;
using fuzz::promise;
using Json = nlohmann::json;

constexpr std::size_t kMostCalls = 40;
constexpr std::string_view kNames[] = {":1.1", ":1.2", ":1.3"};

class MovedClock final : public Clock {
 public:
  [[nodiscard]] Milliseconds uptime() const override { return now; }
  [[nodiscard]] Milliseconds sinceEpoch() const override { return now; }
  Milliseconds now{0};
};
MovedClock& movedClock() {
  static MovedClock clock;
  return clock;
}

/// Gives metrics when it is told to, all of them due at once.
class ToldSource final : public MetricSource {
 public:
  void give(std::size_t count) {
    _left += count;
    if (_wake) _wake();
  }
  [[nodiscard]] std::optional<Milliseconds> next() const override {
    if (_left == 0) return std::nullopt;
    return Milliseconds(0);
  }
  void give(const Sink& sink) override {
    --_left;
    const std::uint8_t payload[] = {8, static_cast<std::uint8_t>(_given & 0x7f)};
    sink(kMetricIDs[_given++ % std::size(kMetricIDs)].id, make<Data>(Bytes(payload)));
  }
  void setWake(std::function<void()> wake) override { _wake = std::move(wake); }
  [[nodiscard]] std::string description() const override { return "what it is told to give"; }

 private:
  std::size_t _left = 0;
  std::size_t _given = 0;
  std::function<void()> _wake;
};

/// What a client may ask, and the signature that it says that its body has.
struct Member {
  std::string_view member;
  std::string_view signature;
};
constexpr Member kMembers[] = {
    {bus::kPerform, bus::kPerformTakes},
    {bus::kPerform, bus::kPerformTakes},
    {bus::kPerform, bus::kPerformTakes},
    {bus::kFeed, "a{sv}"},
    {bus::kFeed, "a{sv}"},
    {bus::kEventsOn, ""},
    {bus::kEventsOff, ""},
    {bus::kStatus, ""},
    {bus::kPause, ""},
    {bus::kResume, ""},
    {bus::kStep, "u"},
    {bus::kPerform, "sa{ss}"},
    {bus::kFeed, "s"},
    {bus::kStep, "a{sv}"},
};

/// A client's private connection. What it reads must be in order.
class Subscriber {
 public:
  explicit Subscriber(bus::Descriptor descriptor)
      : _socket(descriptor.get()),
        _stream(bus::openPeer(std::move(descriptor), /*server=*/false),
                [this](std::uint64_t sequence, const std::string& kind, const XpcRef& event) {
                  promise(kind == osmin::kEventMetric, "events are metrics", kind);
                  promise(sequence > _last, "events are numbered upwards");
                  promise(xpc_dictionary_get_count(event.get()) == 3, "an event has three keys");
                  _last = sequence;
                }) {}

  void read() {
    while (_stream.connection() && _stream.read() == AfterRead::goOn) {
    }
  }
  void write(std::string_view bytes) const { (void)fuzz::writeAll(_socket, bytes); }

 private:
  int _socket;
  std::uint64_t _last = 0;
  bus::EventStream _stream;
};

class Session {
 public:
  explicit Session(fuzz::StandInBus& bus) : _bus(bus) {
    bus.startAnew();
    // It stands where the loop's own clock is, so that no timer fires but for what is due by then.
    movedClock().now = systemClock().uptime();
    sd_event* loop = nullptr;
    promise(sd_event_new(&loop) >= 0, "there is a loop");
    _loop.reset(loop);
    auto source = std::make_unique<ToldSource>();
    _source = source.get();
    _server.emplace(loop, std::move(source));
    std::string reason;
    promise(_server->start(reason), "the service starts", reason);
  }
  ~Session() {
    _subscribers.clear();
    _server.reset();
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Calls, and waits for the answer. Empty: the service dropped the bus, as it may when no proper
  /// bus would have sent the message.
  std::optional<fuzz::StandInBus::Answer> call(std::string_view sender, const Member& member,
                                               std::string_view body) {
    const auto serial = _bus.send({SD_BUS_MESSAGE_METHOD_CALL, bus::kPath, bus::kInterface,
                                   member.member, bus::kName, sender, member.signature},
                                  body);
    turn();
    return _bus.answer(serial);
  }

  /// Lets the service do what there is to do.
  void turn() {
    constexpr int kMostTurns = 100;
    for (int i = 0; i < kMostTurns; ++i)
      if (sd_event_run(_loop.get(), 0) <= 0) return;
  }

  /// The service's status, which it always has. Empty: it dropped the bus.
  std::optional<Json> status() {
    const auto answer = call(kNames[0], {bus::kStatus, ""}, "");
    if (!answer) return std::nullopt;
    promise(answer->type == SD_BUS_MESSAGE_METHOD_RETURN && answer->body.size() > 5,
            "the service tells its status");
    Json status = Json::parse(answer->body.substr(4, answer->body.size() - 5), nullptr, false);
    promise(status.is_object(), "the status is JSON", answer->body);
    return status;
  }

  void step(fuzz::Input& input) {
    const std::uint8_t what = input.byte();
    const std::size_t client = (what >> 4) % std::size(kNames);
    switch (what & 15) {
      case 14:
        if (client == 0)
          _source->give(1 + (what >> 6));
        else
          _bus.leave(kNames[client]);
        return turn();
      case 15: return onConnection(client, input);
      default: break;
    }
    const Member& member = kMembers[what & 15];
    movedClock().now += Milliseconds(100);
    auto answer = call(kNames[client], member, input.text());
    if (!answer) return void(_isOver = true);
    if (answer->descriptor.get() >= 0)
      _subscribers.insert_or_assign(client,
                                    std::make_unique<Subscriber>(std::move(answer->descriptor)));
    turn();
    for (const auto& [name, subscriber] : _subscribers) subscriber->read();
  }

  /// All clients leave, and nothing of them stays.
  void end() {
    if (!_isOver) {
      const auto before = status();
      for (const std::string_view name : kNames) _bus.leave(name);
      turn();
      const auto after = before ? status() : std::nullopt;
      if (before)
        promise((*before)["sessions"].size() <= std::size(kNames),
                "there are no more sessions than clients", before->dump());
      if (after) promise((*after)["sessions"].empty(), "who left is forgotten", after->dump());
    }
    promise(_bus.strayAnswers() == 0, "a call is answered once");
  }

  [[nodiscard]] bool isOver() const { return _isOver; }

 private:
  /// What a client does with its private connection.
  void onConnection(std::size_t client, fuzz::Input& input) {
    const auto found = _subscribers.find(client);
    if (found == _subscribers.end()) return;
    const std::uint8_t what = input.byte();
    if (what == 0)
      _subscribers.erase(found);
    else if (what == 1)
      found->second->write(input.text());
    else
      found->second->read();
    turn();
  }

  fuzz::StandInBus& _bus;
  bus::EventLoop _loop;
  ToldSource* _source = nullptr;
  std::optional<BusServer> _server;
  std::map<std::size_t, std::unique_ptr<Subscriber>> _subscribers;
  bool _isOver = false;
};

}  // namespace

// What clients send to the service: calls with bodies of any kind, private connections that are
// opened, written on and closed, clients that leave.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static auto& bus = *new fuzz::StandInBus;
  setCurrentClock(movedClock());
  static const LogSink before = setSystemLogSink([](std::string_view) {});
  Session session(bus);
  fuzz::Input input(bytes, size);
  for (std::size_t calls = 0; !input.empty() && !session.isOver() && calls < kMostCalls; ++calls)
    session.step(input);
  session.end();
  return 0;
}

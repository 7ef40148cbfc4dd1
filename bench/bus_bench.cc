// Events from the service to a client's handler, beside a bare sd-bus pair that carries the same
// signals: events in a second at the highest rate, and the time that one takes at a moderate rate.
// Times differ between machines: read the ratios.
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

#include "basebandd/BusServer.h"
#include "metrics/registry/metric_ids.h"
#include "platform/bus/BusManager.h"
#include "platform/bus/protocol.h"
#include "platform/bus/values.h"

namespace {

using namespace quorin;
using std::chrono::steady_clock;

/// A typical payload's length; its first bytes are the time at which it was given.
constexpr std::size_t kPayloadBytes = 40;
constexpr Milliseconds kWarmUp{100};
constexpr Milliseconds kMeasured{500};
constexpr Milliseconds kModerateInterval{2};
/// Events between a sender and the kernel's buffer, as in the service.
constexpr std::uint64_t kMostQueued = 16;

std::int64_t nanoseconds() { return steady_clock::now().time_since_epoch().count(); }

std::array<std::uint8_t, kPayloadBytes> stampedPayload() {
  std::array<std::uint8_t, kPayloadBytes> payload{};
  const std::int64_t now = nanoseconds();
  std::memcpy(payload.data(), &now, sizeof now);
  return payload;
}

/// Gives metrics as fast as they are taken, or one each interval.
class StampedSource final : public MetricSource {
 public:
  explicit StampedSource(Milliseconds interval)
      : _interval(interval), _next(currentClock().uptime()) {}

  [[nodiscard]] std::optional<Milliseconds> next() const override { return _next; }
  void give(const Sink& sink) override {
    _next += _interval;
    sink(K_LTE_RRC_STATE, make<Data>(stampedPayload()));
  }
  [[nodiscard]] std::string description() const override { return "benchmark"; }

 private:
  Milliseconds _interval;
  Milliseconds _next;
};

/// What arrived, while it is measured.
class Arrivals {
 public:
  /// Any one thread.
  void take(Bytes payload) {
    const std::int64_t now = nanoseconds();
    std::int64_t given = 0;
    std::memcpy(&given, payload.data(), std::min(payload.size(), sizeof given));
    if (!_begin) _begin = now + std::chrono::nanoseconds(kWarmUp).count();
    if (now < *_begin || _done) return;
    _latencies.push_back(now - given);
    _last = now;
    if (now - *_begin >= std::chrono::nanoseconds(kMeasured).count()) _done = true;
  }
  [[nodiscard]] bool done() const { return _done; }
  // Once done.
  [[nodiscard]] double eventsPerSecond() const {
    return static_cast<double>(_latencies.size()) * 1e9 / static_cast<double>(_last - *_begin);
  }
  [[nodiscard]] double microseconds(double quantile) {
    std::ranges::sort(_latencies);
    const auto last = static_cast<double>(_latencies.size() - 1);
    return static_cast<double>(_latencies[static_cast<std::size_t>(last * quantile)]) / 1e3;
  }

 private:
  std::optional<std::int64_t> _begin;
  std::int64_t _last = 0;
  std::vector<std::int64_t> _latencies;
  std::atomic<bool> _done = false;
};

/// The sending side, in a process of its own while this lives.
class Sender {
 public:
  template <class Work>
  explicit Sender(Work work) : _process(fork()) {
    if (_process != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    work();
    _exit(1);
  }
  ~Sender() {
    kill(_process, SIGKILL);
    waitpid(_process, nullptr, 0);
  }
  Sender(const Sender&) = delete;
  Sender& operator=(const Sender&) = delete;

 private:
  pid_t _process;
};

[[noreturn]] void fail(const std::string& reason) {
  std::cerr << "bus_bench: " << reason << '\n';
  std::_Exit(2);
}

bus::EventLoop newLoop() {
  sd_event* loop = nullptr;
  if (sd_event_new(&loop) < 0) fail("no event loop");
  return bus::EventLoop(loop);
}

// The service and the client library, as they are; only the source is the benchmark's.

void serve(Milliseconds interval) {
  const bus::EventLoop loop = newLoop();
  BusServer server(loop.get(), std::make_unique<StampedSource>(interval));
  std::string reason;
  if (!server.start(reason)) fail(reason);
  (void)sd_event_loop(loop.get());
}

XpcRef configuration() {
  constexpr std::string_view kText = "[metrics]\nK_LTE_RRC_STATE = \"on change\"\n";
  XpcRef input(xpc_dictionary_create(nullptr, nullptr, 0));
  const auto set = [&](const char* key, xpc_object_t value) {
    xpc_dictionary_set_value(input.get(), key, XpcRef(value).get());
  };
  set(osmin::kKeyAppID, xpc_int64_create(2));
  set(osmin::kKeyPayload, xpc_data_create(kText.data(), kText.size()));
  set(osmin::kKeyPayloadType, xpc_int64_create(0));
  return input;
}

void throughService(Milliseconds interval, Arrivals& arrivals) {
  const Sender service([&] { serve(interval); });
  const dispatch_queue_t queue = dispatch_queue_create("bench");
  auto manager = osmin::client::CreateManager("bench", queue);
  osmin::client::RegisterEventHandler(
      manager, osmin::kEventMetric, [&](xpc_object_t event, const dispatch_group_t& /*group*/) {
        arrivals.take(xpc_data_get_bytes(xpc_dictionary_get_value(event, osmin::kKeyPayload)));
      });
  xpc_object_t output = nullptr;
  osmin::CommandResult result{1, ""};
  for (int i = 0; i < 500 && result.status != 0; ++i) {
    std::this_thread::sleep_for(Milliseconds{10});  // until the service has its name
    result = osmin::client::PerformCommand(manager, osmin::kCommandAddConfiguration,
                                           configuration().get(), &output);
  }
  if (result.status != 0) fail("the service: " + result.message);
  osmin::client::EventsOn(manager);
  while (!arrivals.done()) std::this_thread::sleep_for(Milliseconds{10});
  osmin::client::EventsOff(manager);
  manager = nullptr;
  waitUntilDone(*queue);
}

// The bare pair: sd-bus on both ends of a socket pair, the same signal, and nothing else.

void sendBare(sd_bus* peer) {
  const auto payload = stampedPayload();
  static std::uint64_t sequence = 0;
  sd_bus_message* made = nullptr;
  (void)sd_bus_message_new_signal(peer, &made, bus::kPath, bus::kEventsInterface,
                                  bus::kEventSignal);
  const bus::Message signal(made);
  (void)sd_bus_message_append(made, "ts", ++sequence, osmin::kEventMetric);
  (void)sd_bus_message_open_container(made, 'a', "{sv}");
  (void)sd_bus_message_append(made, "{sv}", osmin::kKeyMetricID, "x", K_LTE_RRC_STATE);
  (void)sd_bus_message_open_container(made, 'e', "sv");
  (void)sd_bus_message_append(made, "s", osmin::kKeyPayload);
  (void)sd_bus_message_open_container(made, 'v', "ay");
  (void)sd_bus_message_append_array(made, 'y', payload.data(), payload.size());
  (void)sd_bus_message_close_container(made);
  (void)sd_bus_message_close_container(made);
  (void)sd_bus_message_append(made, "{sv}", osmin::kKeyProfileID, "x", std::int64_t{0});
  (void)sd_bus_message_close_container(made);
  (void)sd_bus_send(peer, made, nullptr);
}

void serveBare(bus::Descriptor descriptor, Milliseconds interval) {
  const bus::PeerConnection peer = bus::openPeer(std::move(descriptor), /*server=*/true);
  auto due = steady_clock::now();
  const auto untilDue = [&] {
    return std::chrono::duration_cast<std::chrono::microseconds>(due - steady_clock::now()).count();
  };
  const auto isFull = [&] {
    std::uint64_t queued = 0;
    return sd_bus_get_n_queued_write(peer.get(), &queued) < 0 || queued >= kMostQueued;
  };
  while (peer) {
    if (!isFull() && untilDue() <= 0) {
      sendBare(peer.get());
      due += interval;
    } else if (sd_bus_process(peer.get(), nullptr) == 0) {
      const auto wait = static_cast<std::uint64_t>(std::max<std::int64_t>(untilDue(), 0));
      (void)sd_bus_wait(peer.get(), isFull() ? UINT64_MAX : wait);
    }
  }
}

int onBareEvent(sd_bus_message* signal, void* arrivals, sd_bus_error* /*error*/) {
  std::uint64_t sequence = 0;
  const char* kind = nullptr;
  const char* key = nullptr;
  std::int64_t number = 0;
  const void* bytes = nullptr;
  std::size_t length = 0;
  (void)sd_bus_message_read(signal, "ts", &sequence, &kind);
  (void)sd_bus_message_enter_container(signal, 'a', "{sv}");
  (void)sd_bus_message_read(signal, "{sv}", &key, "x", &number);
  (void)sd_bus_message_enter_container(signal, 'e', "sv");
  (void)sd_bus_message_read(signal, "s", &key);
  (void)sd_bus_message_enter_container(signal, 'v', "ay");
  (void)sd_bus_message_read_array(signal, 'y', &bytes, &length);
  (void)sd_bus_message_exit_container(signal);
  (void)sd_bus_message_exit_container(signal);
  (void)sd_bus_message_read(signal, "{sv}", &key, "x", &number);
  (void)sd_bus_message_exit_container(signal);
  static_cast<Arrivals*>(arrivals)->take({static_cast<const std::uint8_t*>(bytes), length});
  return 1;
}

void throughBarePair(Milliseconds interval, Arrivals& arrivals) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) < 0)
    fail(std::strerror(errno));
  bus::Descriptor theirs(ends[0]);
  bus::Descriptor ours(ends[1]);
  const Sender sender([&] { serveBare(std::move(theirs), interval); });
  const bus::EventLoop loop = newLoop();
  const bus::PeerConnection peer = bus::openPeer(std::move(ours), /*server=*/false);
  if (!peer || sd_bus_attach_event(peer.get(), loop.get(), SD_EVENT_PRIORITY_NORMAL) < 0)
    fail("no bare pair");
  (void)sd_bus_add_filter(peer.get(), nullptr, onBareEvent, &arrivals);
  while (!arrivals.done()) (void)sd_event_run(loop.get(), UINT64_MAX);
}

struct Way {
  const char* name;
  void (*run)(Milliseconds interval, Arrivals& arrivals);
  // A repetition each.
  std::vector<double> eventsPerSecond = {};
  std::vector<double> medianMicroseconds = {};
  std::vector<double> tailMicroseconds = {};
};

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

void measure(Way& way) {
  Arrivals most;
  way.run(Milliseconds{0}, most);
  way.eventsPerSecond.push_back(most.eventsPerSecond());
  Arrivals moderate;
  way.run(kModerateInterval, moderate);
  way.medianMicroseconds.push_back(moderate.microseconds(0.5));
  way.tailMicroseconds.push_back(moderate.microseconds(0.99));
}

/// What is measured, and how the service has to stand beside the bare pair.
struct Goal {
  const char* what;
  std::vector<double> Way::*values;
  double bound;
  bool atLeast;
};

constexpr Goal kGoals[] = {
    {"events a second", &Way::eventsPerSecond, 0.7, true},
    {"median latency", &Way::medianMicroseconds, 1.5, false},
};

int report(const Way& bare, const Way& service, const std::string& jsonPath) {
  nlohmann::ordered_json json;
  std::printf("%-14s %12s %12s %12s\n", "", "events/s", "median us", "99 % us");
  for (const Way* way : {&bare, &service}) {
    const double rate = median(way->eventsPerSecond);
    const double middle = median(way->medianMicroseconds);
    const double tail = median(way->tailMicroseconds);
    std::printf("%-14s %12.0f %12.1f %12.1f\n", way->name, rate, middle, tail);
    json[way->name] = {{"events_per_second", rate}, {"median_us", middle}, {"p99_us", tail}};
  }
  bool all = true;
  for (const Goal& goal : kGoals) {
    const double ratio = median(service.*goal.values) / median(bare.*goal.values);
    const bool met = goal.atLeast ? ratio >= goal.bound : ratio <= goal.bound;
    all = all && met;
    std::printf("%s: %.2f of the bare pair, goal at %s %.2f: %s\n", goal.what, ratio,
                goal.atLeast ? "least" : "most", goal.bound, met ? "met" : "not met");
    json["goals"].push_back(
        {{"what", goal.what}, {"ratio", ratio}, {"bound", goal.bound}, {"met", met}});
  }
  if (jsonPath.empty()) return all ? 0 : 1;
  std::ofstream file(jsonPath);
  file << json.dump(2) << '\n';
  if (!file.flush()) fail(jsonPath + ": " + std::strerror(errno));
  return all ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("bus_bench: the service's events beside a bare sd-bus pair");
  std::string jsonPath;
  int repetitions = 9;
  app.add_option("--json", jsonPath, "Writes the figures there, too");
  app.add_option("--repetitions", repetitions, "How often each is measured, in turns")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  bus::install();
  Way bare{"bare pair", throughBarePair};
  Way service{"service", throughService};
  for (int i = 0; i < repetitions; ++i)
    for (Way* way : {&bare, &service}) measure(*way);
  return report(bare, service, jsonPath);
}

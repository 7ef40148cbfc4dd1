// What one metric event costs, step by step, over the corpus, beside the standard library on the
// same payloads. Times differ between machines: read the ratios that bench/run prints.
#include <benchmark/benchmark.h>
#include <google/protobuf/arena.h>
#include <google/protobuf/text_format.h>
#include <google/protobuf/util/json_util.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <map>
#include <thread>
#include <variant>

#include "bench/allocations.h"
#include "metrics/MetricValidator.h"
#include "platform/baseband/Loopback.h"
#include "quorin.pb.h"
#include "tests/support/corpus.h"

namespace {

namespace pb = google::protobuf;
namespace q = ::quorin;

constexpr std::size_t kOfEachMetric = 2'000;

struct Event {
  const q::MessageTable* table;
  q::Ref<q::Data> payload;
  const q::EventRecord* record;
  pb::Message* peer;
};

q::XpcRef eventOf(const q::test::Payload& payload) {
  q::XpcRef event(q::xpc_dictionary_create(nullptr, nullptr, 0));
  const auto set = [&](const char* key, q::xpc_object_t value) {
    q::xpc_dictionary_set_value(event.get(), key, q::XpcRef(value).get());
  };
  set(osmin::kKeyMetricID, q::xpc_int64_create(payload.row->metricID));
  set(osmin::kKeyPayload, q::xpc_data_create(payload.bytes.data(), payload.bytes.size()));
  set(osmin::kKeyProfileID, q::xpc_int64_create(0));
  return event;
}

const std::vector<Event>& events() {
  static const std::vector<Event> all = [] {
    std::vector<Event> made;
    std::map<std::string, pb::Message*> peers;
    for (const auto& payload : q::test::corpus(kOfEachMetric)) {
      const std::string name(payload.row->table->name);
      pb::Message*& peer = peers[name];
      if (!peer)
        peer = pb::MessageFactory::generated_factory()
                   ->GetPrototype(pb::DescriptorPool::generated_pool()->FindMessageTypeByName(
                       "quorin.metrics." + name))
                   ->New();
      made.push_back({payload.row->table, q::make<q::Data>(q::Bytes(payload.bytes)),
                      q::_CFXPCCreateCFObjectFromXPCObject(eventOf(payload).get()), peer});
    }
    return made;
  }();
  return all;
}

/// Fetches an event into the cache. Inlined, since a call that does nothing else is dropped.
[[gnu::always_inline]] inline void fetch(const Event& event) {
  constexpr std::size_t kLine = 64;
  constexpr std::size_t kMost = 3 * kLine;  // that most payloads take, with what stands before them
  for (std::size_t at = 0; at < kMost; at += kLine) {
    __builtin_prefetch(reinterpret_cast<const char*>(event.payload.get()) + at);
    __builtin_prefetch(reinterpret_cast<const char*>(event.record) + at);
  }
}

/// Runs the work over the whole corpus. What has just arrived lies in the cache, but of 60,000
/// events that wait in memory none does: so those that come next are fetched, for the standard
/// library and for us alike.
template <class Work>
void onAll(const std::vector<Event>& all, Work work) {
  constexpr std::size_t kAhead = 4;
  for (std::size_t i = 0; i < all.size(); ++i) {
    fetch(all[std::min(i + kAhead, all.size() - 1)]);
    work(all[i]);
  }
}

/// Runs the work over the whole corpus again and again; counts what it takes from the heap.
template <class Work>
void perEvent(benchmark::State& state, Work work) {
  const auto& all = events();
  onAll(all, work);
  const std::size_t before = q::bench::allocations();
  for (auto _ : state) onAll(all, work);
  const auto count = static_cast<double>(state.iterations()) * static_cast<double>(all.size());
  state.counters["allocations"] = static_cast<double>(q::bench::allocations() - before) / count;
  state.SetItemsProcessed(static_cast<std::int64_t>(count));
}

bool parsed(pb::Message& message, const Event& event) {
  const q::Bytes bytes = event.payload->bytes();
  return message.ParseFromArray(bytes.data(), static_cast<int>(bytes.size()));
}

// ---- the standard library

void reusedParse(benchmark::State& state) {
  perEvent(state, [](const Event& event) { benchmark::DoNotOptimize(parsed(*event.peer, event)); });
}

void arenaParse(benchmark::State& state) {
  static std::vector<char> block(1 << 16);
  pb::ArenaOptions options;
  options.initial_block = block.data();
  options.initial_block_size = block.size();
  pb::Arena arena(options);
  perEvent(state, [&](const Event& event) {
    benchmark::DoNotOptimize(parsed(*event.peer->New(&arena), event));
    arena.Reset();
  });
}

struct Reflected;
using ReflectedValue = std::variant<std::uint64_t, std::int64_t, bool, std::string,
                                    std::vector<std::uint32_t>, std::vector<Reflected>>;
/// A message as its list of key and value.
struct Reflected {
  std::vector<std::pair<std::string, ReflectedValue>> entries;
};

Reflected reflected(const pb::Message& m) {
  using Descriptor = pb::FieldDescriptor;
  const pb::Reflection& r = *m.GetReflection();
  std::vector<const Descriptor*> fields;
  r.ListFields(m, &fields);
  Reflected result;
  for (const Descriptor* f : fields) {
    const auto append = [&](ReflectedValue value) {
      result.entries.emplace_back(f->name(), std::move(value));
    };
    if (f->is_repeated() && f->type() == Descriptor::TYPE_MESSAGE) {
      std::vector<Reflected> elements;
      for (int i = 0; i < r.FieldSize(m, f); ++i)
        elements.push_back(reflected(r.GetRepeatedMessage(m, f, i)));
      append(std::move(elements));
      continue;
    }
    if (f->is_repeated()) {
      std::vector<std::uint32_t> numbers;
      for (int i = 0; i < r.FieldSize(m, f); ++i)
        numbers.push_back(f->type() == Descriptor::TYPE_UINT32
                              ? r.GetRepeatedUInt32(m, f, i)
                              : static_cast<std::uint32_t>(r.GetRepeatedInt32(m, f, i)));
      append(std::move(numbers));
      continue;
    }
    switch (f->type()) {
      case Descriptor::TYPE_UINT64: append(std::uint64_t{r.GetUInt64(m, f)}); break;
      case Descriptor::TYPE_UINT32: append(std::uint64_t{r.GetUInt32(m, f)}); break;
      case Descriptor::TYPE_SINT32: append(std::int64_t{r.GetInt32(m, f)}); break;
      case Descriptor::TYPE_BOOL: append(r.GetBool(m, f)); break;
      case Descriptor::TYPE_ENUM: append(r.GetEnum(m, f)->name()); break;
      case Descriptor::TYPE_MESSAGE:
        append(std::vector<Reflected>{reflected(r.GetMessage(m, f))});
        break;
      default: append(r.GetString(m, f)); break;
    }
  }
  return result;
}

void reflectionDictionary(benchmark::State& state) {
  perEvent(state, [](const Event& event) {
    (void)parsed(*event.peer, event);
    benchmark::DoNotOptimize(reflected(*event.peer));
  });
}

void textForm(benchmark::State& state) {
  pb::TextFormat::Printer printer;
  printer.SetSingleLineMode(true);
  std::string text;
  perEvent(state, [&](const Event& event) {
    (void)parsed(*event.peer, event);
    benchmark::DoNotOptimize(printer.PrintToString(*event.peer, &text));
  });
}

void jsonForm(benchmark::State& state) {
  std::string text;
  perEvent(state, [&](const Event& event) {
    (void)parsed(*event.peer, event);
    text.clear();
    benchmark::DoNotOptimize(pb::util::MessageToJsonString(*event.peer, &text).ok());
  });
}

// ---- ours

void decodeStep(const Event& event) {
  benchmark::DoNotOptimize(event.table->makeWithData(event.payload));
}

void dictionaryStep(const Event& event) {
  const auto message = event.table->makeWithData(event.payload);
  benchmark::DoNotOptimize(message->dictionaryRepresentation().size());
}

void withoutLines() {
  q::setSystemLogSink(nullptr);
  q::setPrintSink(nullptr);
}

q::MetricValidator* validator = nullptr;  // made before anything is measured

void intakeStep(const Event& event) { validator->metricsDidUpdate(event.record); }

void makeValidator() {
  withoutLines();
  static q::Loopback service;
  service.install();
  validator = q::MetricValidator::sharedInstance().get();
}

void decode(benchmark::State& state) {
  withoutLines();
  perEvent(state, decodeStep);
}

void decodeAndDictionary(benchmark::State& state) {
  withoutLines();
  perEvent(state, dictionaryStep);
}

void intake(benchmark::State& state) {
  withoutLines();
  perEvent(state, intakeStep);
}

/// Keeps the lines in a buffer that starts anew when it is full.
void printIntoBuffer() {
  constexpr std::size_t kFull = 1 << 20;
  static std::vector<char> buffer(2 * kFull);
  static char* end = buffer.data();
  q::setSystemLogSink(nullptr);
  q::setPrintSink([](std::string_view line) {
    if (end > buffer.data() + kFull) end = buffer.data();
    std::memcpy(end, line.data(), line.size());
    end += line.size();
  });
}

void intakeWithText(benchmark::State& state) {
  printIntoBuffer();
  perEvent(state, intakeStep);
}

// ---- the hand-off from the wrapper's queue to the main one, in bursts

/// What the wrapper posts for an event.
struct Delivery {
  std::shared_ptr<int> wrapper;
  const void* kind;
  const void* record;
  std::size_t* delivered;
  void operator()() const { ++*delivered; }
};

/// The plain way: a deque behind a mutex and a condition.
class PlainQueue {
 public:
  void post(std::function<void()> work) {
    {
      const std::lock_guard lock(_mutex);
      _work.push_back(std::move(work));
    }
    _posted.notify_one();
  }
  void runOne() {
    std::unique_lock lock(_mutex);
    _posted.wait(lock, [&] { return !_work.empty(); });
    const auto work = std::move(_work.front());
    _work.pop_front();
    lock.unlock();
    work();
  }

 private:
  std::mutex _mutex;
  std::condition_variable _posted;
  std::deque<std::function<void()>> _work;
};

constexpr std::size_t kBurst = 500;

/// Bursts from a thread of its own, each taken on this one.
template <class Post, class Take>
void inBursts(benchmark::State& state, Post post, Take take) {
  std::size_t delivered = 0;
  std::atomic<std::size_t> asked = 0;
  std::atomic<bool> ends = false;
  const auto wrapper = std::make_shared<int>();
  std::thread poster([&] {
    for (std::size_t burst = 0; !ends;) {
      if (asked.load(std::memory_order_acquire) == burst) continue;
      ++burst;
      for (std::size_t i = 0; i < kBurst; ++i) post(Delivery{wrapper, &state, &asked, &delivered});
    }
  });
  for (auto _ : state) {
    const std::size_t until = delivered + kBurst;
    asked.fetch_add(1, std::memory_order_release);
    while (delivered < until) take();
  }
  ends = true;
  poster.join();
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kBurst));
}

void plainHandOff(benchmark::State& state) {
  PlainQueue queue;
  inBursts(
      state, [&](Delivery work) { queue.post(std::move(work)); }, [&] { queue.runOne(); });
}

void handOff(benchmark::State& state) {
  q::MainQueue queue;
  inBursts(
      state, [&](Delivery work) { dispatch_async(queue, std::move(work)); },
      [&] {
        if (!queue.runPending()) queue.wait(std::chrono::seconds(1));
      });
}

// ---- the fully logged event: standard output to a file, the system log to a local receiver

/// Receives what is logged, and forgets it.
class Receiver {
 public:
  Receiver() : _socket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/dev/log");
    _listens = bind(_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    _thread = std::thread([this] {
      char line[8192];
      while (recv(_socket, line, sizeof line, 0) > 0) {
      }
    });
  }
  ~Receiver() {
    shutdown(_socket, SHUT_RDWR);
    _thread.join();
    close(_socket);
    if (_listens) unlink("/dev/log");
  }
  [[nodiscard]] bool listens() const { return _listens; }

 private:
  int _socket;
  bool _listens;
  std::thread _thread;
};

/// Standard output into a file while it lives.
class OutputIntoFile {
 public:
  OutputIntoFile() : _before(dup(STDOUT_FILENO)), _file(std::tmpfile()) {
    std::fflush(stdout);
    dup2(fileno(_file), STDOUT_FILENO);
  }
  ~OutputIntoFile() {
    std::fflush(stdout);
    dup2(_before, STDOUT_FILENO);
    close(_before);
    std::fclose(_file);
  }
  void startAnew() {
    std::fflush(stdout);
    (void)ftruncate(fileno(_file), 0);
    lseek(fileno(_file), 0, SEEK_SET);
  }

 private:
  int _before;
  std::FILE* _file;
};

/// What the wrapper's handler and the intake do with one event.
void loggedStep(const Event& event) {
  std::string line("-[OsminWrapper listen]_block_invoke: MetricsTrigger dict=");
  appendPrinted(line, event.record->dictionary());
  q::systemLog(line);
  intakeStep(event);
}

template <class SetSinks>
void loggedEvents(benchmark::State& state, SetSinks setSinks) {
  const Receiver receiver;
  if (!receiver.listens()) return state.SkipWithError("/dev/log is another program's");
  OutputIntoFile file;
  setSinks();
  const auto& all = events();
  constexpr std::size_t kSome = 5'000;
  for (auto _ : state) {
    for (std::size_t i = 0; i < kSome; ++i) loggedStep(all[i]);
    file.startAnew();
  }
  withoutLines();
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kSome));
}

void plainLoggedEvent(benchmark::State& state) {
  loggedEvents(state, [] {
    q::setPrintSink([](std::string_view line) {
      std::string whole(line);
      whole += '\n';
      (void)!write(STDOUT_FILENO, whole.data(), whole.size());
    });
    openlog("quorin", LOG_PID | LOG_NDELAY, LOG_AUTHPRIV);
    q::setSystemLogSink([](std::string_view line) {
      syslog(LOG_AUTHPRIV | LOG_INFO, "%.*s", static_cast<int>(line.size()), line.data());
    });
  });
}

void loggedEvent(benchmark::State& state) {
  loggedEvents(state, [] {
    q::setPrintSink(q::standardOutputSink());
    q::setSystemLogSink(q::systemLoggerSink());
  });
}

BENCHMARK(reusedParse);
BENCHMARK(arenaParse);
BENCHMARK(reflectionDictionary);
BENCHMARK(textForm);
BENCHMARK(jsonForm);
BENCHMARK(decode);
BENCHMARK(decodeAndDictionary);
BENCHMARK(intake);
BENCHMARK(intakeWithText);
BENCHMARK(plainHandOff)->UseRealTime();
BENCHMARK(handOff)->UseRealTime();
BENCHMARK(plainLoggedEvent)->UseRealTime();
BENCHMARK(loggedEvent)->UseRealTime();

// ---- instructions, counted by callgrind between these two functions' calls

struct Step {
  const char* name;
  void (*prepare)();
  void (*run)(const Event& event);
};
constexpr Step kSteps[] = {
    {"peer", withoutLines, [](const Event& event) { (void)parsed(*event.peer, event); }},
    {"decode", withoutLines, decodeStep},
    {"dictionary", withoutLines, dictionaryStep},
    {"intake", withoutLines, intakeStep},
    {"text", printIntoBuffer, intakeStep},
};

}  // namespace

/// Where callgrind counts: one pass of a step over the corpus.
extern "C" [[gnu::noinline, gnu::noclone]] void countedPass(void (*run)(const Event& event)) {
  for (const Event& event : events()) run(event);
}

/// Hands so many bursts, one after the other, from a thread to this one, which never sleeps: for
/// strace.
void handOffAwake(std::size_t bursts) {
  q::MainQueue queue;
  std::size_t delivered = 0;
  std::atomic<std::size_t> taken = 0;
  const auto wrapper = std::make_shared<int>();
  std::thread poster([&] {
    for (std::size_t burst = 0; burst < bursts; ++burst) {
      while (taken.load(std::memory_order_acquire) < burst * kBurst) {
      }
      for (std::size_t i = 0; i < kBurst; ++i)
        dispatch_async(queue, Delivery{wrapper, nullptr, nullptr, &delivered});
    }
  });
  while (delivered < bursts * kBurst) {
    (void)queue.runPending();
    taken.store(delivered, std::memory_order_release);
  }
  poster.join();
}

int count(std::string_view name) {
  for (const Step& step : kSteps) {
    if (step.name != name) continue;
    step.prepare();
    for (const Event& event : events()) step.run(event);
    countedPass(step.run);
    return 0;
  }
  return 2;
}

/// "--count STEP": a pass to warm up and a counted one, for callgrind. "--hand-off BURSTS": for
/// strace. Else the benchmarks.
int main(int argc, char** argv) {
  const std::string_view option = argc == 3 ? argv[1] : "";
  makeValidator();
  if (option == "--count") return count(argv[2]);
  if (option == "--hand-off") return handOffAwake(std::strtoul(argv[2], nullptr, 10)), 0;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

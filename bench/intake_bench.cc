// What one event costs, over the recording that ships with the application, beside the standard
// library's reused parse of the same payloads. Times differ between machines: read the ratios.
#include <benchmark/benchmark.h>
#include <google/protobuf/message.h>

#include <fstream>
#include <map>

#include "messages/catalogue.h"
#include "metrics/MetricValidator.h"
#include "platform/baseband/Loopback.h"
#include "platform/recording/recording.h"
#include "quorin.pb.h"

namespace {

namespace pb = google::protobuf;
using ::quorin::Bytes;
using ::quorin::Data;
using ::quorin::Ref;

struct Event {
  const ::quorin::MessageTable* table;
  Ref<Data> payload;
  const ::quorin::EventRecord* record;
  pb::Message* peer;
};

const std::vector<Event>& events() {
  static const std::vector<Event> all = [] {
    std::vector<Event> events;
    std::map<std::string, pb::Message*> peers;
    std::ifstream file("app/resources/drive.jsonl");
    for (std::string line; std::getline(file, line);) {
      std::string reason;
      const auto recorded = ::quorin::readRecordingLine(line, reason);
      const auto id = ::quorin::xpc_int64_get_value(
          ::quorin::xpc_dictionary_get_value(recorded->event.get(), "kKeyMetricID"));
      const Bytes bytes = ::quorin::xpc_data_get_bytes(
          ::quorin::xpc_dictionary_get_value(recorded->event.get(), "kKeyPayload"));
      const auto* table = ::quorin::catalogueRow(id)->table;
      pb::Message*& peer = peers[std::string(table->name)];
      if (!peer)
        peer = pb::MessageFactory::generated_factory()
                   ->GetPrototype(pb::DescriptorPool::generated_pool()->FindMessageTypeByName(
                       "quorin.metrics." + std::string(table->name)))
                   ->New();
      events.push_back({table, ::quorin::make<Data>(bytes),
                        ::quorin::_CFXPCCreateCFObjectFromXPCObject(recorded->event.get()), peer});
    }
    return events;
  }();
  return all;
}

template <class Work>
void perEvent(benchmark::State& state, Work work) {
  const auto& all = events();
  for (auto _ : state)
    for (const Event& event : all) work(event);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}

void standardReusedParse(benchmark::State& state) {
  perEvent(state, [](const Event& event) {
    const Bytes bytes = event.payload->bytes();
    benchmark::DoNotOptimize(
        event.peer->ParseFromArray(bytes.data(), static_cast<int>(bytes.size())));
  });
}
BENCHMARK(standardReusedParse);

void decode(benchmark::State& state) {
  perEvent(state, [](const Event& event) {
    benchmark::DoNotOptimize(event.table->make()->initWithData(event.payload));
  });
}
BENCHMARK(decode);

void decodeAndDictionary(benchmark::State& state) {
  perEvent(state, [](const Event& event) {
    const auto message = event.table->make();
    (void)message->initWithData(event.payload);
    benchmark::DoNotOptimize(message->dictionaryRepresentation().size());
  });
}
BENCHMARK(decodeAndDictionary);

void wholeIntakeWithoutLines(benchmark::State& state) {
  ::quorin::setSystemLogSink([](std::string_view) {});
  ::quorin::setPrintSink([](std::string_view) {});
  static ::quorin::Loopback service;
  service.install();
  const auto& validator = ::quorin::MetricValidator::sharedInstance();
  perEvent(state, [&](const Event& event) { validator->metricsDidUpdate(event.record); });
}
BENCHMARK(wholeIntakeWithoutLines);

}  // namespace

BENCHMARK_MAIN();

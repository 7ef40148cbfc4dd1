#include "fuzz/support/application.h"
#include "fuzz/support/promise.h"
#include "messages/catalogue.h"
#include "metrics/metric_cases.h"
#include "metrics/record_rows.h"

namespace {

using namespace quorin;
using fuzz::promise;

/// Everything that the store holds, as it was at one moment.
struct Held {
  std::vector<Dictionary> stores;
  std::vector<Value> members;
  std::vector<std::optional<Milliseconds>> arrivals;

  explicit Held(MetricValidator& validator) {
    for (const StoreRow& row : storeRows()) {
      stores.push_back((validator.*row.get)());
      arrivals.push_back(validator.arrival(row.get));
    }
    for (const RecordRow& row : recordRows()) members.push_back(valueOf(validator, row));
  }
};

std::vector<std::string> keysOf(const Dictionary& dictionary) {
  std::vector<std::string> keys;
  for (const auto& entry : dictionary) keys.emplace_back(entry.key.text);
  return keys;
}

/// What the store of a metric must be, from its message's own dictionary.
void checkStore(const MetricCase& row, const Dictionary& message, const Dictionary& store) {
  promise(keysOf(message) == keysOf(store), "a store has the fields of its message", message,
          store);
  for (std::size_t i = 0; i < store.size(); ++i) {
    const std::string_view key = store[i].key.text;
    const Value& now = store[i].value;
    if (key == "timestamp" && row.stamp != StampText::never)
      promise(now.kind() == Value::Kind::text && now.text().ends_with(" UTC"),
              "a time stamp becomes text", now);
    else if (row.convert && (key == "dl_bw" || key == "ul_bw"))
      promise(now.isInteger() &&
                  *now.integer() == static_cast<std::int32_t>(*message[i].value.integer()) / 2,
              "a bandwidth is halved towards zero", message);
    else
      promise(now == message[i].value, "every other field stays", message[i].value);
  }
}

/// What a member that comes from the store must be.
void checkMember(const RecordRow& row, const Value& member, const Dictionary& store,
                 const Value& before) {
  if (member.kind() == Value::Kind::dictionary)
    return promise(keysOf(member.dictionary()) == keysOf(before.dictionary()),
                   "a record's dictionary keeps its keys", member);
  if (member.kind() != Value::Kind::list) {
    const Value* source = store.find(row.key);
    return promise(source || (member.kind() == Value::Kind::text && member.text().empty()),
                   "a member without a source is empty text", member);
  }
  if (row.key.text.empty())
    return promise(member.list().size() == 1 && member.list()[0].dictionary() == store,
                   "a member without a key is the whole store", member);
  const Value* source = store.find(row.key);
  const std::size_t count = source ? source->list().size() : 0;
  promise(member.list().size() == count, "a record's list has an entry for each of its store's",
          member, store);
  for (std::size_t i = 0; i < count; ++i) {
    auto keys = keysOf(source->list()[i].dictionary());
    const bool adds = !row.addedKey.text.empty() && store.find(row.addedKey) &&
                      std::ranges::count(keys, row.addedKey.text) == 0;
    if (adds) keys.emplace_back(row.addedKey.text);
    promise(keysOf(member.list()[i].dictionary()) == keys, "an entry keeps its keys", member);
  }
}

void check(const std::string& kind, const fuzz::Application::Delivered& delivered,
           const Held& before, const Held& now, MetricValidator& validator) {
  const Value* entry = delivered.event.find(osmin::kKeyMetricID);
  const auto id = entry ? entry->integer() : std::nullopt;
  const bool isTaken = kind == osmin::kEventMetric && !delivered.isLeftOut;
  const MetricCase* row = isTaken && id ? metricCase(*id) : nullptr;
  for (std::size_t i = 0; i < now.stores.size(); ++i) {
    const bool isRows = row && storeRows()[i].get == row->get;
    if (!isRows) {
      promise(now.stores[i] == before.stores[i] && now.arrivals[i] == before.arrivals[i],
              "the other stores stay", storeRows()[i].name);
      continue;
    }
    const auto message = catalogueRow(row->id)->table->make();
    const Value* payload = delivered.event.find(osmin::kKeyPayload);
    const bool hasBytes = payload && payload->kind() == Value::Kind::data;
    promise(message->initWithData(hasBytes ? payload->data() : nullptr),
            "a payload that was stored decodes", storeRows()[i].name);
    checkStore(*row, message->dictionaryRepresentation(), now.stores[i]);
    promise(now.arrivals[i] == currentClock().uptime(), "its arrival is now", storeRows()[i].name);
  }
  for (std::size_t i = 0; i < now.members.size(); ++i) {
    const RecordRow& member = recordRows()[i];
    if (row && member.source == row->get)
      checkMember(member, now.members[i], (validator.*row->get)(), before.members[i]);
    else
      promise(now.members[i] == before.members[i], "the other members stay", member.member);
  }
  promise(validator.myLTESCellMeasDict().empty(), "nothing fills myLTESCellMeasDict");
  if (delivered.isLeftOut) return promise(delivered.lines.empty(), "what is left out says nothing");
  if (!row) return;
  promise(validator.metricID() == row->id, "the ID of the event that was handled is known");
  promise(delivered.lines.size() == 3 && delivered.lines[0].starts_with("Metric ID in Hex = ") &&
              delivered.lines[1].starts_with(row->logText) &&
              delivered.lines[2] == "Received Valid Metric",
          "a metric is logged in three lines");
}

}  // namespace

// A sequence of events, each as Event's bytes; the clock moves by a byte's seconds between them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz::Application& application = fuzz::Application::instance();
  const fuzz::Application::Run run;
  fuzz::Input input(bytes, size);
  Held before(application.validator());
  while (!input.empty()) {
    application.advance(std::chrono::seconds(input.byte()));
    const fuzz::Event event = fuzz::eventFrom(input);
    const auto delivered = application.deliver(event);
    Held now(application.validator());
    check(event.kind, delivered, before, now, application.validator());
    before = std::move(now);
  }
  return 0;
}

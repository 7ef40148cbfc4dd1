#include "tools/metricctl/import_rules.h"

namespace quorin::metricctl {

namespace {

/// How filling one message went.
enum class Filled : std::uint8_t { nothing, something, unwanted, malformed };

Filled fill(AnyMessage& message, std::span<const Rule> rules, const Record& object,
            const Record& enclosing, std::string& reason) {
  Filled filled = Filled::nothing;
  bool wanted = true;
  for (const Rule& rule : rules) {
    const Reading reading =
        rule.how.read(rule.place == Place::enclosing ? enclosing : object, rule.key, rule.how);
    if (reading.isMalformed()) {
      reason = "\"" + std::string(rule.key) + "\" cannot be read";
      return Filled::malformed;
    }
    if (!reading.isValue()) {
      wanted = wanted && rule.role != Role::condition;
      continue;
    }
    if (rule.put) rule.put(message, reading.number);
    if (rule.role == Role::telling) filled = Filled::something;
  }
  return wanted ? filled : Filled::unwanted;
}

/// The elements of a list; a list of one element may stand as {"Ignored": element}.
bool elements(const Record& object, std::string_view list, std::vector<const Record*>& found,
              std::string& reason) {
  if (list.empty()) return found.push_back(&object), true;
  const Record* value = find(object, list);
  if (!value) return true;
  if (value->is_array())
    for (const Record& element : *value) found.push_back(&element);
  else
    found.push_back(find(*value, "Ignored") ? find(*value, "Ignored") : value);
  for (const Record* element : found)
    if (!element->is_object())
      return reason = "\"" + std::string(list) + "\" is no list of objects", false;
  return true;
}

bool importObject(const Source& source, const Record& object, Milliseconds time,
                  std::vector<ImportedMetric>& metrics, std::string& reason) {
  const auto message = source.metric.make();
  Filled filled = fill(*message, source.rules, object, object, reason);
  if (filled == Filled::malformed) return false;
  if (filled == Filled::unwanted) return true;
  std::vector<const Record*> found;
  if (source.nested.make && !elements(object, source.nested.list, found, reason)) return false;
  for (const Record* element : found) {
    const auto inner = source.nested.make();
    const Filled part = fill(*inner, source.nested.rules, *element, object, reason);
    if (part == Filled::malformed) return false;
    if (part != Filled::something) continue;
    source.nested.add(*message, inner);
    filled = Filled::something;
  }
  if (filled == Filled::nothing) return true;
  source.metric.stamp(*message, time.count());
  metrics.push_back({source.metric.id, message});
  return true;
}

Reading part(const Record& object, std::string_view key, std::int64_t NetworkIdentity::*member) {
  bool malformed = false;
  const auto network = networkIn(object, key, malformed);
  if (malformed) return Reading::malformed();
  return network ? Reading::of((*network).*member) : Reading{};
}

bool isOtherThanText(const Record& object, std::string_view key) {
  const Record* value = find(object, key);
  return value && !value->is_string();
}

}  // namespace

Reading readNumber(const Record& object, std::string_view key, const How& how) {
  return numberIn(object, key, how.quantity);
}

Reading readHexadecimal(const Record& object, std::string_view key, const How& how) {
  return hexadecimalIn(object, key, how.quantity);
}

Reading readName(const Record& object, std::string_view key, const How& how) {
  if (isOtherThanText(object, key)) return Reading::malformed();
  return numberOf(textIn(object, key), how.names);
}

Reading readOtherName(const Record& object, std::string_view key, const How& how) {
  return readName(object, key, how).isValue() ? Reading{} : Reading::of(1);
}

Reading readNamePair(const Record& object, std::string_view key, const How& how) {
  if (isOtherThanText(object, key) || isOtherThanText(object, how.other))
    return Reading::malformed();
  const std::string pair =
      std::string(textIn(object, key)) + "/" + std::string(textIn(object, how.other));
  return numberOf(pair, how.names);
}

Reading readJoined(const Record& object, std::string_view key, const How& how) {
  const Reading low = numberIn(object, key, how.quantity);
  const Reading high = numberIn(object, how.other, how.otherQuantity);
  if (low.isMalformed() || high.isMalformed()) return Reading::malformed();
  if (!low.isValue() || !high.isValue()) return {};
  const auto lows = static_cast<std::int64_t>(how.quantity.highest) + 1;
  return Reading::of(high.number * lows + low.number);
}

Reading readAfterLetter(const Record& object, std::string_view key, const How& how) {
  const std::string_view text = textIn(object, key);
  if (!text.starts_with(how.other)) return {};
  const Reading reading = numberIn(text.substr(how.other.size()), how.quantity);
  return reading.isValue() ? reading : Reading{};
}

Reading readMcc(const Record& object, std::string_view key, const How& /*how*/) {
  return part(object, key, &NetworkIdentity::mcc);
}

Reading readMnc(const Record& object, std::string_view key, const How& /*how*/) {
  return part(object, key, &NetworkIdentity::mnc);
}

Reading readMncDigits(const Record& object, std::string_view key, const How& /*how*/) {
  return part(object, key, &NetworkIdentity::mncDigits);
}

bool importRecord(std::span<const Source> sources, std::string_view kind, const Record& record,
                  Milliseconds time, std::vector<ImportedMetric>& metrics, std::string& reason) {
  for (const Source& source : sources) {
    if (source.kind != kind) continue;
    std::vector<const Record*> found;
    if (!elements(record, source.list, found, reason)) return false;
    for (const Record* object : found)
      if (!importObject(source, *object, time, metrics, reason)) return false;
  }
  return true;
}

}  // namespace quorin::metricctl

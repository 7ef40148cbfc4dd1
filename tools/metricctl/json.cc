#include "tools/metricctl/json.h"

namespace quorin::metricctl {

namespace {

std::string utf8(std::string_view text) {
  std::string out;
  appendUtf8(out, text);
  return out;
}

}  // namespace

Json jsonOf(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::nothing: return nullptr;
    case Value::Kind::boolean: return value.boolean();
    case Value::Kind::uint64: return value.natural();
    case Value::Kind::int32:
    case Value::Kind::uint32:
    case Value::Kind::int64: return *value.integer();
    case Value::Kind::float32: return value.float32();
    case Value::Kind::float64: return static_cast<float>(value.float64());
    case Value::Kind::text: return utf8(value.text());
    case Value::Kind::data: return hexText(value.data()->bytes());
    case Value::Kind::list: {
      Json list = Json::array();
      for (const Value& element : value.list()) list.push_back(jsonOf(element));
      return list;
    }
    case Value::Kind::dictionary: return jsonOf(value.dictionary());
  }
  return nullptr;
}

Json jsonOf(const Dictionary& dictionary) {
  Json object = Json::object();
  for (const auto& [key, value] : dictionary) object[utf8(key.text)] = jsonOf(value);
  return object;
}

}  // namespace quorin::metricctl

#include <charconv>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>

#include "tools/metricctl/lines.h"
#include "tools/metricctl/message_class.h"

namespace quorin::metricctl {

namespace {

using Input = nlohmann::ordered_json;

/// Fills messages from JSON as decode writes it. The first mismatch ends it, with a reason.
class Encoder {
 public:
  [[nodiscard]] bool fill(AnyMessage& message, const Input& object) {
    if (!object.is_object()) return fail("is not an object");
    for (const auto& [key, value] : object.items()) {
      _path.push_back(key);
      if (!fillEntry(message, key, value)) return false;
      _path.pop_back();
    }
    return true;
  }

  [[nodiscard]] const std::string& reason() const { return _reason; }

 private:
  bool fail(const std::string& what) {
    std::string path;
    for (const std::string& key : _path) path += (path.empty() ? "" : ".") + key;
    _reason = (path.empty() ? "the line" : "\"" + path + "\"") + " " + what;
    return false;
  }

  bool fillEntry(AnyMessage& message, const std::string& key, const Input& value) {
    for (const Field& field : message.table().fields)
      if (field.key == key) return fillField(message, field, value);
    return fail("is no key of " + std::string(message.table().name));
  }

  template <class T>
  bool integer(const Input& value, T& out) {
    using Limits = std::numeric_limits<T>;
    const bool natural = value.is_number_unsigned();
    const bool fits =
        natural ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(Limits::max())
                : value.is_number_integer() && std::is_signed_v<T> &&
                      value.get<std::int64_t>() >= static_cast<std::int64_t>(Limits::min());
    if (!fits) return fail("is not an integer of its field's range");
    out = value.get<T>();
    return true;
  }

  template <class T>
  bool scalar(AnyMessage& message, const Field& field, const Input& value) {
    message.setHas(field.number, true);
    return integer(value, field.in<T>(message));
  }

  bool fillField(AnyMessage& message, const Field& field, const Input& value) {
    switch (field.kind) {
      case Kind::uint64: return scalar<std::uint64_t>(message, field, value);
      case Kind::uint32: return scalar<std::uint32_t>(message, field, value);
      case Kind::sint32: return scalar<std::int32_t>(message, field, value);
      case Kind::enumeration: return fillEnumeration(message, field, value);
      case Kind::boolean:
        if (!value.is_boolean()) return fail("is neither true nor false");
        message.setHas(field.number, true);
        field.in<bool>(message) = value.get<bool>();
        return true;
      case Kind::bytes: {
        const auto bytes =
            value.is_string() ? bytesFromHex(value.get<std::string>()) : std::nullopt;
        if (!bytes) return fail("is not hexadecimal");
        field.in<Ref<Data>>(message) = make<Data>(*bytes);
        return true;
      }
      case Kind::string:
        if (!value.is_string()) return fail("is no text");
        field.in<Ref<String>>(message) = make<String>(value.get<std::string>());
        return true;
      case Kind::message: {
        auto& nested = field.in<Ref<AnyMessage>>(message);
        nested = field.element->make();
        return fill(*nested, value);
      }
      case Kind::repeated:
        return forEach(value, [&](const Input& element) {
          const auto nested = field.element->make();
          appendElement(field.in<Ref<MessageArray>>(message), nested);
          return fill(*nested, element);
        });
      case Kind::packedUint32:
        return forEach(value, [&](const Input& element) {
          return integer(element, field.in<PBRepeatedUInt32>(message).values.emplace_back());
        });
      case Kind::packedSint32:
        return forEach(value, [&](const Input& element) {
          return integer(element, field.in<PBRepeatedInt32>(message).values.emplace_back());
        });
    }
    return false;
  }

  bool forEach(const Input& value, auto fillElement) {
    if (!value.is_array()) return fail("is no list");
    return std::ranges::all_of(value, fillElement);
  }

  /// A name of the field's table, or "(unknown: 7)".
  bool fillEnumeration(AnyMessage& message, const Field& field, const Input& value) {
    constexpr std::string_view kUnknown = "(unknown: ";
    if (!value.is_string()) return fail("is no name");
    const auto text = value.get<std::string>();
    auto& number = field.in<std::int32_t>(message);
    message.setHas(field.number, true);
    for (const EnumName& row : field.names.names)
      if (row.name == text) return number = row.value, true;
    const char* end = text.data() + text.size();
    const bool unknown = text.starts_with(kUnknown) && text.ends_with(')');
    const auto parsed = std::from_chars(text.data() + (unknown ? kUnknown.size() : 0), end, number);
    if (!unknown || parsed.ec != std::errc() || parsed.ptr != end - 1)
      return fail("is no name of " + std::string(field.names.title));
    return true;
  }

  std::vector<std::string> _path;
  std::string _reason;
};

int encodeLines(const MessageTable& table) {
  Lines lines("standard input", std::cin);
  for (std::string line; lines.next(line);) {
    const Input json = Input::parse(line, nullptr, /*allow_exceptions=*/false);
    if (json.is_discarded()) {
      lines.unreadable("not JSON");
      continue;
    }
    const bool decoded = json.is_object() && json.contains("dict");
    const auto message = table.make();
    Encoder encoder;
    if (!encoder.fill(*message, decoded ? json["dict"] : json)) {
      lines.unreadable(encoder.reason());
      continue;
    }
    PBDataWriter writer;
    message->writeTo(writer);
    std::cout << hexText(writer.bytes()) << '\n';
  }
  return lines.exitCode();
}

}  // namespace

Action encodeCommand(CLI::App& arguments) {
  auto choice = std::make_shared<MessageClass>();
  choice->addTo(arguments);
  arguments.footer("A line is a dictionary, or an object of decode's with its \"dict\".");
  return [choice]() -> int {
    const MessageTable* table = choice->table();
    return table ? encodeLines(*table) : wrongUse;
  };
}

}  // namespace quorin::metricctl

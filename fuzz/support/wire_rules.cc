#include "fuzz/support/wire_rules.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <vector>

#include "metrics/registry/KBBMetricUtility.h"

namespace quorin::fuzz {

namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

enum WireType : std::uint8_t { varint, fixed64, delimited, startGroup, endGroup, fixed32 };

// The standard reads keys and lengths of up to five bytes, and groups up to a hundred deep.
constexpr int kMostPrefixBytes = 5;
constexpr int kMostVarintBytes = 10;
constexpr std::size_t kSurelyNotTooDeep = 50;

// Their readers keep whole field numbers and do not ask the tag registry.
constexpr std::string_view kWholeKeys[] = {"SccRxMeasurement",
                                           "KCellularLteSecondaryCellMeasurements"};

bool isRegistered(std::uint64_t number) {
  return std::ranges::any_of(KBBMetricUtility::tags(),
                             [&](const MetricTag& tag) { return tag.tag == number; });
}

std::string varintText(std::uint64_t value) {
  std::string text;
  for (; value >= 0x80; value >>= 7) text += static_cast<char>(value | 0x80);
  return text += static_cast<char>(value);
}

std::string fieldText(int number, WireType type, const std::string& content) {
  const auto key = varintText(static_cast<std::uint64_t>(number) << 3 | type);
  return type == delimited ? key + varintText(content.size()) + content : key + content;
}

/// What was read of a message, by field number; an element a text of a repeated field.
struct Content {
  std::map<int, std::vector<std::string>> fields;
  std::map<int, std::string> runs;  // of packed fields, without key and length

  void replace(int number, std::string text) { fields[number] = {std::move(text)}; }
  [[nodiscard]] std::string text() const {
    std::string all;
    for (const auto& [number, texts] : fields)
      for (const std::string& text : texts) all += text;
    return all;
  }
};

class Rules {
 public:
  explicit Rules(std::string_view payload) : _payload(payload), _end(payload.size()) {}

  bool read(const Descriptor& message, Content& content) {
    const bool whole = std::ranges::count(kWholeKeys, message.name()) > 0;
    while (_pos < _end) {
      if (_error) break;
      const std::uint64_t key = prefix();
      const auto type = static_cast<WireType>(key & 7);
      std::uint64_t number = key >> 3;
      if (!whole && number > 0xffff) meet(Difference::cutNumber);
      if (!whole) number &= 0xffff;
      if (_error) break;
      if (type == endGroup) {
        meet(Difference::endOfGroup);
        break;
      }
      if (!whole && isRegistered(number)) {
        meet(Difference::registeredTag);
        (void)readVarint();
        continue;
      }
      const FieldDescriptor* field = number <= std::numeric_limits<int>::max()
                                         ? message.FindFieldByNumber(static_cast<int>(number))
                                         : nullptr;
      if (!(field ? readField(*field, type, content) : skip(number, type))) return false;
    }
    return !_error;
  }

  [[nodiscard]] const Differences& differences() const { return _differences; }

 private:
  void meet(Difference difference) { _differences.set(static_cast<std::size_t>(difference)); }

  std::uint64_t readVarint(int mostInStandard = kMostVarintBytes) {
    std::uint64_t value = 0;
    for (int count = 0; count < kMostVarintBytes; ++count) {
      if (_pos >= _end) {
        _error = true;
        return 0;
      }
      const auto byte = static_cast<std::uint8_t>(_payload[_pos++]);
      value |= static_cast<std::uint64_t>(byte & 0x7f) << (7 * count);
      if (count >= mostInStandard) meet(Difference::longPrefix);
      if (byte < 0x80) return value;
    }
    meet(Difference::longVarint);
    return 0;
  }
  std::uint64_t prefix() {
    const std::uint64_t value = readVarint(kMostPrefixBytes);
    if (value > std::numeric_limits<std::uint32_t>::max()) meet(Difference::longPrefix);
    return value;
  }

  /// The next `length` bytes; empty and an error where they are not all there.
  std::optional<std::string> take(std::uint64_t length) {
    if (_error || length > _end - _pos) {
      _error = true;
      return std::nullopt;
    }
    std::string bytes(_payload.substr(_pos, length));
    _pos += length;
    return bytes;
  }

  bool skip(std::uint64_t number, WireType type) {
    std::vector<std::uint64_t> groups;
    while (true) {
      if (number == 0) meet(Difference::numberZero);
      switch (type) {
        case varint: (void)readVarint(); break;
        case fixed64: (void)take(8); break;
        case delimited: (void)take(prefix()); break;
        case startGroup:
          groups.push_back(number);
          if (groups.size() > kSurelyNotTooDeep) meet(Difference::deepGroup);
          break;
        case endGroup:
          if (groups.empty() || (groups.back() & 0xffff) != (number & 0xffff)) return false;
          if (groups.back() != number) meet(Difference::cutNumber);
          groups.pop_back();
          break;
        case fixed32: (void)take(4); break;
        default: return false;
      }
      if (_error) return false;
      if (groups.empty()) return true;
      const std::uint64_t key = prefix();
      if (_error) return false;
      number = key >> 3;
      type = static_cast<WireType>(key & 7);
    }
  }

  /// Reads from within the length that comes next. False when it reaches too far or `inside` says
  /// so; the end is then left where it is, since nothing is read any more.
  template <class Inside>
  bool readWithin(Inside inside) {
    const std::uint64_t length = prefix();
    if (_error || length > _end - _pos) return false;
    const std::size_t outerEnd = _end;
    _end = _pos + length;
    if (!inside()) return false;
    _end = outerEnd;
    return true;
  }

  std::string scalarText(const FieldDescriptor& field, std::uint64_t value) {
    const auto low = static_cast<std::uint32_t>(value);
    const auto number = static_cast<std::int32_t>(low);
    switch (field.type()) {
      case FieldDescriptor::TYPE_UINT32: return varintText(low);
      case FieldDescriptor::TYPE_BOOL: return varintText(value != 0);
      case FieldDescriptor::TYPE_ENUM:
        if (!field.enum_type()->FindValueByNumber(number)) meet(Difference::nameless);
        return varintText(static_cast<std::uint64_t>(std::int64_t{number}));
      case FieldDescriptor::TYPE_SINT32: {
        if (number < 0) meet(Difference::signBit);
        // Shifted arithmetically, then encoded again.
        const std::int32_t read = (number >> 1) ^ -(number & 1);
        return varintText((static_cast<std::uint32_t>(read) << 1) ^
                          static_cast<std::uint32_t>(read >> 31));
      }
      default: return varintText(value);
    }
  }

  bool readField(const FieldDescriptor& field, WireType type, Content& content) {
    const int number = field.number();
    if (field.is_packed()) return readPacked(field, type, content);
    const bool isObject = field.type() == FieldDescriptor::TYPE_MESSAGE ||
                          field.type() == FieldDescriptor::TYPE_STRING ||
                          field.type() == FieldDescriptor::TYPE_BYTES;
    if (type != (isObject ? delimited : varint)) meet(Difference::otherWireType);
    if (field.type() == FieldDescriptor::TYPE_MESSAGE) return readMessage(field, content);
    if (!isObject) {
      // Present before it is read: cut short, it is 0.
      content.replace(number, fieldText(number, varint, scalarText(field, readVarint())));
      return true;
    }
    const auto bytes = take(prefix());
    if (bytes)
      content.replace(number, fieldText(number, delimited, *bytes));
    else
      content.fields.erase(number);
    return true;
  }

  bool readMessage(const FieldDescriptor& field, Content& content) {
    const int number = field.number();
    auto& texts = content.fields[number];
    if (!field.is_repeated() && !texts.empty()) {
      meet(Difference::replaced);
      texts.clear();
    }
    Content inner;
    const bool ok = readWithin([&] { return read(*field.message_type(), inner); });
    texts.push_back(fieldText(number, delimited, inner.text()));  // also what was read in part
    return ok;
  }

  bool readPacked(const FieldDescriptor& field, WireType type, Content& content) {
    std::string& run = content.runs[field.number()];
    const auto append = [&] { run += scalarText(field, readVarint()); };
    bool ok = true;
    if (type == delimited) {
      ok = readWithin([&] {
        while (_pos < _end && !_error) append();
        return true;
      });
    } else {
      if (type != varint) meet(Difference::otherWireType);
      append();
    }
    if (!run.empty()) content.replace(field.number(), fieldText(field.number(), delimited, run));
    return ok;
  }

  std::string_view _payload;
  std::size_t _pos = 0;
  std::size_t _end;
  bool _error = false;
  Differences _differences;
};

}  // namespace

Understood understand(const Descriptor& message, std::string_view payload) {
  Rules rules(payload);
  Content content;
  const bool ok = rules.read(message, content);
  return {ok, content.text(), rules.differences()};
}

}  // namespace quorin::fuzz

#include "tests/differential/peer.h"

#include <google/protobuf/descriptor.pb.h>
#include <google/protobuf/unknown_field_set.h>

#include <fstream>
#include <map>
#include <stdexcept>

namespace quorin::test {

namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

/// One value of a field; index -1: the field is singular.
Value valueOf(const Message& m, const FieldDescriptor& f, int index, Peer::Nameless nameless) {
  const Reflection& r = *m.GetReflection();
  const bool many = index >= 0;
  switch (f.type()) {
    case FieldDescriptor::TYPE_UINT64:
      return Value(std::uint64_t{many ? r.GetRepeatedUInt64(m, &f, index) : r.GetUInt64(m, &f)});
    case FieldDescriptor::TYPE_UINT32:
      return Value(many ? r.GetRepeatedUInt32(m, &f, index) : r.GetUInt32(m, &f));
    case FieldDescriptor::TYPE_SINT32:
      return Value(many ? r.GetRepeatedInt32(m, &f, index) : r.GetInt32(m, &f));
    case FieldDescriptor::TYPE_BOOL: return Value(r.GetBool(m, &f));
    case FieldDescriptor::TYPE_ENUM: return Value(r.GetEnum(m, &f)->name());
    case FieldDescriptor::TYPE_STRING: return Value(r.GetString(m, &f));
    case FieldDescriptor::TYPE_BYTES: {
      const std::string bytes = r.GetString(m, &f);
      return Value(make<Data>(std::vector<std::uint8_t>(bytes.begin(), bytes.end())));
    }
    case FieldDescriptor::TYPE_MESSAGE:
      return Value(Peer::dictionaryOf(
          many ? r.GetRepeatedMessage(m, &f, index) : r.GetMessage(m, &f), nameless));
    default: throw std::logic_error("a type that the .proto never has");
  }
}

void addNameless(const Message& message, std::map<int, std::pair<std::string, Value>>& entries) {
  const auto& unknown = message.GetReflection()->GetUnknownFields(message);
  for (int i = 0; i < unknown.field_count(); ++i) {
    const auto& field = unknown.field(i);
    const FieldDescriptor* known = message.GetDescriptor()->FindFieldByNumber(field.number());
    if (!known || field.type() != google::protobuf::UnknownField::TYPE_VARINT) continue;
    const auto value = static_cast<std::int32_t>(field.varint());
    entries[field.number()] = {known->name(), Value("(unknown: " + std::to_string(value) + ")")};
  }
}

/// The tag registry keeps this field from being read back.
constexpr int kNeverReadBack = 19;

std::string randomText(std::mt19937& random) {
  static constexpr const char* kTexts[] = {"", "a", "internet.example", "\xc3\xa4\xe2\x82\xac"};
  return kTexts[random() % std::size(kTexts)];
}

void fillOnce(Message& m, const FieldDescriptor& f, std::mt19937& random) {
  const Reflection& r = *m.GetReflection();
  const bool many = f.is_repeated();
  // Small, middling and large numbers, so that varints of every length come.
  const std::uint64_t number = (std::uint64_t{random()} << 32 | random()) >> random() % 64;
  const auto number32 = static_cast<std::uint32_t>(number);
  // Ours reads an encoded bit 31 as a sign, so zigzag values stay below it.
  const auto level = static_cast<std::int32_t>(number32) >> 1;
  switch (f.type()) {
    case FieldDescriptor::TYPE_UINT64: r.SetUInt64(&m, &f, number); break;
    case FieldDescriptor::TYPE_UINT32:
      many ? r.AddUInt32(&m, &f, number32) : r.SetUInt32(&m, &f, number32);
      break;
    case FieldDescriptor::TYPE_SINT32:
      many ? r.AddInt32(&m, &f, level) : r.SetInt32(&m, &f, level);
      break;
    case FieldDescriptor::TYPE_BOOL: r.SetBool(&m, &f, number & 1); break;
    case FieldDescriptor::TYPE_ENUM: {
      const auto& values = *f.enum_type();
      r.SetEnum(
          &m, &f,
          values.value(static_cast<int>(random() % static_cast<unsigned>(values.value_count()))));
      break;
    }
    case FieldDescriptor::TYPE_STRING:
    case FieldDescriptor::TYPE_BYTES: r.SetString(&m, &f, randomText(random)); break;
    case FieldDescriptor::TYPE_MESSAGE:
      Peer::fill(many ? *r.AddMessage(&m, &f) : *r.MutableMessage(&m, &f), random);
      break;
    default: throw std::logic_error("a type that the .proto never has");
  }
}

}  // namespace

Peer::Peer()
    : _pool(std::make_unique<google::protobuf::DescriptorPool>()),
      _factory(std::make_unique<google::protobuf::DynamicMessageFactory>()) {
  std::ifstream file(QUORIN_PROTO_DESCRIPTORS, std::ios::binary);
  google::protobuf::FileDescriptorSet set;
  if (!set.ParseFromIstream(&file) || set.file_size() != 1 || !_pool->BuildFile(set.file(0)))
    throw std::runtime_error("the exported .proto cannot be loaded");
}

std::unique_ptr<Message> Peer::make(std::string_view className) const {
  const auto* descriptor = _pool->FindMessageTypeByName("quorin.metrics." + std::string(className));
  if (!descriptor) throw std::runtime_error("no " + std::string(className));
  return std::unique_ptr<Message>(_factory->GetPrototype(descriptor)->New());
}

Dictionary Peer::dictionaryOf(const Message& message, Nameless nameless) {
  const Reflection& r = *message.GetReflection();
  std::map<int, std::pair<std::string, Value>> entries;  // by field number
  std::vector<const FieldDescriptor*> fields;
  r.ListFields(message, &fields);
  for (const FieldDescriptor* field : fields) {
    Value value;
    if (field->is_repeated()) {
      List list;
      for (int i = 0; i < r.FieldSize(message, field); ++i)
        list.append(valueOf(message, *field, i, nameless));
      value = Value(list);
    } else {
      value = valueOf(message, *field, -1, nameless);
    }
    entries[field->number()] = {field->name(), std::move(value)};
  }
  if (nameless == Nameless::shown) addNameless(message, entries);
  Dictionary dictionary;
  for (auto& [number, entry] : entries)
    dictionary.set(quorin::make<String>(entry.first), std::move(entry.second));
  return dictionary;
}

void Peer::fill(Message& message, std::mt19937& random) {
  const auto& descriptor = *message.GetDescriptor();
  for (int i = 0; i < descriptor.field_count(); ++i) {
    const FieldDescriptor& field = *descriptor.field(i);
    if (field.number() == kNeverReadBack || random() % 4 == 0) continue;
    const std::size_t times = field.is_repeated() ? random() % 4 : 1;
    for (std::size_t n = 0; n < times; ++n) fillOnce(message, field, random);
  }
}

}  // namespace quorin::test

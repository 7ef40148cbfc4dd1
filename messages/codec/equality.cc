#include <algorithm>
#include <typeinfo>

#include "messages/codec/AnyMessage.h"

namespace quorin {

namespace {

/// 2^32 divided by the golden ratio, so that small values spread over the word.
constexpr std::uint64_t kSpread = 2654435761;

bool sameField(const Field& field, const AnyMessage& a, const AnyMessage& b) {
  const auto scalar = [&]<class T>(T) {
    const bool present = a.has(field.number);
    return present == b.has(field.number) && (!present || field.in<T>(a) == field.in<T>(b));
  };
  const auto object = [&]<class T>(Ref<T>) {
    return areEqual(field.in<Ref<T>>(a), field.in<Ref<T>>(b));
  };
  switch (field.kind) {
    case Kind::uint64: return scalar(std::uint64_t{});
    case Kind::uint32: return scalar(std::uint32_t{});
    case Kind::enumeration:
    case Kind::sint32: return scalar(std::int32_t{});
    case Kind::boolean: return scalar(bool{});
    case Kind::bytes: return object(Ref<Data>{});
    case Kind::string: return object(Ref<String>{});
    case Kind::message: return object(Ref<AnyMessage>{});
    case Kind::repeated: return object(Ref<MessageArray>{});
    case Kind::packedUint32:
      return PBRepeatedIsEqual(field.in<PBRepeatedUInt32>(a), field.in<PBRepeatedUInt32>(b));
    case Kind::packedSint32:
      return PBRepeatedIsEqual(field.in<PBRepeatedInt32>(a), field.in<PBRepeatedInt32>(b));
  }
  fatal();
}

std::uint64_t fieldHash(const Field& field, const AnyMessage& m) {
  const auto scalar = [&]<class T>(T) {
    return m.has(field.number) ? static_cast<std::uint64_t>(field.in<T>(m)) * kSpread : 0;
  };
  const auto object = [&]<class T>(Ref<T>) {
    const auto& value = field.in<Ref<T>>(m);
    return value ? value->hash() : 0;
  };
  switch (field.kind) {
    case Kind::uint64: return scalar(std::uint64_t{});
    case Kind::uint32: return scalar(std::uint32_t{});
    case Kind::enumeration:
    case Kind::sint32: return scalar(std::int32_t{});
    case Kind::boolean: return scalar(bool{});
    case Kind::bytes: return object(Ref<Data>{});
    case Kind::string: return object(Ref<String>{});
    case Kind::message: return object(Ref<AnyMessage>{});
    case Kind::repeated: return object(Ref<MessageArray>{});
    case Kind::packedUint32: return PBRepeatedUInt32Hash(field.in<PBRepeatedUInt32>(m));
    case Kind::packedSint32: return PBRepeatedInt32Hash(field.in<PBRepeatedInt32>(m));
  }
  fatal();
}

}  // namespace

bool MessageArray::isEqual(const Object& other) const {
  const auto* array = dynamic_cast<const MessageArray*>(&other);
  return array && std::ranges::equal(elements, array->elements, areEqual<AnyMessage>);
}

std::uint64_t MessageArray::hash() const {
  std::uint64_t hash = elements.size();
  for (const auto& element : elements) hash = hash * kSpread + element->hash();
  return hash;
}

bool AnyMessage::isEqual(const Object& other) const {
  if (typeid(*this) != typeid(other)) return false;
  const auto& message = static_cast<const AnyMessage&>(other);
  return std::ranges::all_of(table().fields,
                             [&](const Field& field) { return sameField(field, *this, message); });
}

std::uint64_t AnyMessage::hash() const {
  std::uint64_t hash = 0;
  for (const Field& field : table().fields) hash ^= fieldHash(field, *this);
  return hash;
}

}  // namespace quorin

#include "messages/codec/AnyMessage.h"

namespace quorin {

namespace {

/// Copies the scalar with its bit when it is present. False when the field is no scalar.
bool copyScalar(const Field& field, const AnyMessage& from, AnyMessage& to) {
  const auto copy = [&]<class T>(T) {
    if (from.has(field.number)) {
      field.in<T>(to) = field.in<T>(from);
      to.setHas(field.number, true);
    }
    return true;
  };
  switch (field.kind) {
    case Kind::uint64: return copy(std::uint64_t{});
    case Kind::uint32: return copy(std::uint32_t{});
    case Kind::enumeration:
    case Kind::sint32: return copy(std::int32_t{});
    case Kind::boolean: return copy(bool{});
    default: return false;
  }
}

/// Hands the object over by reference when there is one.
template <class T>
void share(const Field& field, const AnyMessage& from, AnyMessage& to) {
  if (const auto& object = field.in<Ref<T>>(from)) field.in<Ref<T>>(to) = object;
}

void appendElements(const Field& field, const AnyMessage& from, AnyMessage& to, bool deeply) {
  const Ref<MessageArray> source = field.in<Ref<MessageArray>>(from);
  if (!source) return;
  const std::size_t count = source->elements.size();  // fixed: a message may be merged into itself
  for (std::size_t i = 0; i < count; ++i) {
    const Ref<AnyMessage> element = source->elements[i];
    appendElement(field.in<Ref<MessageArray>>(to), deeply ? element->deepCopy() : element);
  }
}

template <class Numbers>
void appendNumbers(const Field& field, const AnyMessage& from, AnyMessage& to) {
  const auto source = field.in<Numbers>(from).values;
  auto& target = field.in<Numbers>(to).values;
  target.insert(target.end(), source.begin(), source.end());
}

template <class T>
void copyObject(const Field& field, const AnyMessage& from, AnyMessage& to) {
  if (const auto& object = field.in<Ref<T>>(from)) {
    if constexpr (std::is_same_v<T, Data>)
      field.in<Ref<T>>(to) = make<Data>(object->bytes());
    else
      field.in<Ref<T>>(to) = make<String>(std::string(object->text()));
  }
}

}  // namespace

void AnyMessage::copyFieldsTo(AnyMessage& target) const {
  for (const Field& field : table().fields) {
    if (copyScalar(field, *this, target)) continue;
    switch (field.kind) {
      case Kind::bytes: share<Data>(field, *this, target); break;
      case Kind::string: share<String>(field, *this, target); break;
      case Kind::message: share<AnyMessage>(field, *this, target); break;
      case Kind::repeated: {
        const auto source = field.in<Ref<MessageArray>>(*this);
        auto& array = field.in<Ref<MessageArray>>(target);
        if (!source || source->elements.empty() || source == array) break;
        if (array) array->elements.clear();
        appendElements(field, *this, target, false);
        break;
      }
      case Kind::packedUint32:
        PBRepeatedCopy(field.in<PBRepeatedUInt32>(target), field.in<PBRepeatedUInt32>(*this));
        break;
      case Kind::packedSint32:
        PBRepeatedCopy(field.in<PBRepeatedInt32>(target), field.in<PBRepeatedInt32>(*this));
        break;
      default: break;
    }
  }
}

Ref<AnyMessage> AnyMessage::deepCopy() const {
  const auto made = table().make();
  AnyMessage& target = *made;
  for (const Field& field : table().fields) {
    if (copyScalar(field, *this, target)) continue;
    switch (field.kind) {
      case Kind::bytes: copyObject<Data>(field, *this, target); break;
      case Kind::string: copyObject<String>(field, *this, target); break;
      case Kind::message:
        if (const auto& message = field.in<Ref<AnyMessage>>(*this))
          field.in<Ref<AnyMessage>>(target) = message->deepCopy();
        break;
      case Kind::repeated: appendElements(field, *this, target, true); break;
      case Kind::packedUint32: appendNumbers<PBRepeatedUInt32>(field, *this, target); break;
      case Kind::packedSint32: appendNumbers<PBRepeatedInt32>(field, *this, target); break;
      default: break;
    }
  }
  return made;
}

void AnyMessage::mergeFieldsFrom(const AnyMessage& other) {
  for (const Field& field : table().fields) {
    if (copyScalar(field, other, *this)) continue;
    switch (field.kind) {
      case Kind::bytes: share<Data>(field, other, *this); break;
      case Kind::string: share<String>(field, other, *this); break;
      case Kind::message: {
        const auto& theirs = field.in<Ref<AnyMessage>>(other);
        const auto& ours = field.in<Ref<AnyMessage>>(*this);
        if (ours && theirs)
          ours->mergeFieldsFrom(*theirs);
        else
          share<AnyMessage>(field, other, *this);
        break;
      }
      case Kind::repeated: appendElements(field, other, *this, false); break;
      case Kind::packedUint32: appendNumbers<PBRepeatedUInt32>(field, other, *this); break;
      case Kind::packedSint32: appendNumbers<PBRepeatedInt32>(field, other, *this); break;
      default: break;
    }
  }
}

}  // namespace quorin

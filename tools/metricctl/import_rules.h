#pragma once

#include <vector>

#include "messages/codec/AnyMessage.h"
#include "tools/metricctl/import_values.h"

namespace quorin::metricctl {

struct How;

/// Sets a field. Requires: a message of the field's class, and a number that the field can hold.
using Put = void (*)(AnyMessage& message, std::int64_t number);
using Read = Reading (*)(const Record& object, std::string_view key, const How& how);

[[nodiscard]] Reading readNumber(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readHexadecimal(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readName(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readOtherName(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readNamePair(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readJoined(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readAfterLetter(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readMcc(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readMnc(const Record& object, std::string_view key, const How& how);
[[nodiscard]] Reading readMncDigits(const Record& object, std::string_view key, const How& how);

/// How a value is read, and what that needs to know.
struct How {
  Read read = readNumber;
  Quantity quantity{};
  std::span<const NamedNumber> names{};
  std::string_view other{};  // a second key, or a letter
  Quantity otherQuantity{};
};

constexpr How as(const Quantity& quantity) { return {readNumber, quantity}; }
constexpr How hexadecimal(const Quantity& quantity) { return {readHexadecimal, quantity}; }
constexpr How named(std::span<const NamedNumber> names) { return {readName, {}, names}; }
/// 1 where the text is none of these, or absent.
constexpr How noneOf(std::span<const NamedNumber> names) { return {readOtherName, {}, names}; }
/// Rows name both texts with a "/" between them.
constexpr How namedWith(std::string_view other, std::span<const NamedNumber> names) {
  return {readNamePair, {}, names, other};
}
/// The lower part of an identity whose upper part stands under another key.
constexpr How joined(const Quantity& low, std::string_view other, const Quantity& high) {
  return {readJoined, low, {}, other, high};
}
constexpr How afterLetter(std::string_view letter, const Quantity& quantity) {
  return {readAfterLetter, quantity, {}, letter};
}
inline constexpr How kMccOfNetwork{readMcc};
inline constexpr How kMncOfNetwork{readMnc};
inline constexpr How kMncDigitsOfNetwork{readMncDigits};

/// What a field means for its message: `telling` fields make it worth having, `supporting` ones
/// only go with them, and without a `condition` there is none.
enum class Role : std::uint8_t { telling, supporting, condition };
/// Whether a value stands in the list's element or in the object around the list.
enum class Place : std::uint8_t { element, enclosing };

/// One value of a log and the field that it fills.
struct Rule {
  std::string_view key;
  Put put;  // null: the value is only a condition
  How how;
  Role role = Role::telling;
  Place place = Place::element;
};

/// A message inside the metric's message, one for each element of a list of the log; without a name
/// of a list, one for the record itself.
struct Nested {
  std::string_view list{};
  Ref<AnyMessage> (*make)() = nullptr;
  void (*add)(AnyMessage& message, const Ref<AnyMessage>& element) = nullptr;
  std::span<const Rule> rules{};
};

struct Metric {
  std::int64_t id;
  Ref<AnyMessage> (*make)();
  Put stamp;
};

/// A kind of record and one metric that it fills. With the name of a list, each of its elements
/// does.
struct Source {
  std::string_view kind;
  Metric metric;
  std::span<const Rule> rules{};
  Nested nested{};
  std::string_view list{};
};

struct ImportedMetric {
  std::int64_t id;
  Ref<AnyMessage> message;
};

/// Adds the metrics that a record fills. False when one of its values is malformed; `reason` then
/// names it.
[[nodiscard]] bool importRecord(std::span<const Source> sources, std::string_view kind,
                                const Record& record, Milliseconds time,
                                std::vector<ImportedMetric>& metrics, std::string& reason);

template <class Setter>
struct SetterOf;
template <class M, class T>
struct SetterOf<void (M::*)(T)> {
  using Message = M;
  using Argument = T;
};
template <class M, class E>
struct SetterOf<void (M::*)(const Ref<E>&)> {
  using Message = M;
  using Element = E;
};

/// The setter of a scalar field as a `Put`.
template <auto setter>
void put(AnyMessage& message, std::int64_t value) {
  using Of = SetterOf<decltype(setter)>;
  (static_cast<typename Of::Message&>(message).*setter)(static_cast<typename Of::Argument>(value));
}

/// The setter or adder of a nested message.
template <auto setter>
constexpr Nested nested(std::span<const Rule> rules, std::string_view list = {}) {
  using Of = SetterOf<decltype(setter)>;
  using Element = typename Of::Element;
  return {list, [] { return Ref<AnyMessage>(make<Element>()); },
          [](AnyMessage& message, const Ref<AnyMessage>& element) {
            (static_cast<typename Of::Message&>(message).*
             setter)(Ref<Element>(static_cast<Element*>(element.get())));
          },
          rules};
}

template <class M>
constexpr Metric metric(std::int64_t id) {
  return {id, [] { return Ref<AnyMessage>(make<M>()); }, put<&M::setTimestamp>};
}

}  // namespace quorin::metricctl

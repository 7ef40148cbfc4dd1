#include "platform/foundation/Dictionary.h"

#include <limits>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(Value, KnowsItsKind) {
  EXPECT_EQ(Value().kind(), Value::Kind::nothing);
  EXPECT_EQ(Value(true).kind(), Value::Kind::boolean);
  EXPECT_EQ(Value(1).kind(), Value::Kind::int32);
  EXPECT_EQ(Value(1U).kind(), Value::Kind::uint32);
  EXPECT_EQ(Value(std::int64_t{1}).kind(), Value::Kind::int64);
  EXPECT_EQ(Value(std::uint64_t{1}).kind(), Value::Kind::uint64);
  EXPECT_EQ(Value(1.0F).kind(), Value::Kind::float32);
  EXPECT_EQ(Value(1.0).kind(), Value::Kind::float64);
  EXPECT_EQ(Value(Literal{"x"}).kind(), Value::Kind::text);
  EXPECT_EQ(Value(std::string("x")).kind(), Value::Kind::text);
  EXPECT_EQ(Value(test::data("00")).kind(), Value::Kind::data);
  EXPECT_EQ(Value(List()).kind(), Value::Kind::list);
  EXPECT_EQ(Value(Dictionary()).kind(), Value::Kind::dictionary);
  EXPECT_EQ(Value(Ref<String>()).kind(), Value::Kind::nothing);
  EXPECT_EQ(Value(Ref<Data>()).kind(), Value::Kind::nothing);
}

TEST(Value, IsAnIntegerOnlyWithinSixtyFourSignedBits) {
  EXPECT_EQ(Value(INT32_MIN).integer(), INT32_MIN);
  EXPECT_EQ(Value(UINT32_MAX).integer(), UINT32_MAX);
  EXPECT_EQ(Value(INT64_MIN).integer(), INT64_MIN);
  EXPECT_EQ(Value(static_cast<std::uint64_t>(INT64_MAX)).integer(), INT64_MAX);
  EXPECT_EQ(Value(UINT64_MAX).integer(), std::nullopt);
  for (const Value& value :
       {Value(), Value(true), Value(1.0), Value(1.0F), Value(std::string("1"))})
    EXPECT_EQ(value.integer(), std::nullopt);
}

TEST(Value, IsANumberOfAnyNumericKind) {
  EXPECT_EQ(Value(true).number(), 1.0);
  EXPECT_EQ(Value(-2).number(), -2.0);
  EXPECT_EQ(Value(UINT64_MAX).number(), 18446744073709551615.0);
  EXPECT_EQ(Value(0.5F).number(), 0.5);
  EXPECT_EQ(Value(0.25).number(), 0.25);
  for (const Value& value :
       {Value(), Value(std::string("1")), Value(test::data("01")), Value(List())})
    EXPECT_EQ(value.number(), std::nullopt);
}

TEST(Value, ComparesIntegersByTheirNumberAndOthersByKindAndContent) {
  EXPECT_EQ(Value(5), Value(std::uint64_t{5}));
  EXPECT_NE(Value(-1), Value(UINT64_MAX));
  EXPECT_EQ(Value(UINT64_MAX), Value(UINT64_MAX));
  EXPECT_NE(Value(UINT64_MAX), Value(UINT64_MAX - 1));
  EXPECT_NE(Value(1), Value(true));
  EXPECT_NE(Value(1), Value(1.0));
  EXPECT_NE(Value(1.0F), Value(1.0));
  EXPECT_EQ(Value(Literal{"x"}), Value(std::string("x")));
  EXPECT_NE(Value(std::string("x")), Value(test::data("78")));
  EXPECT_EQ(Value(test::data("78")), Value(test::data("78")));
  EXPECT_EQ(Value(List{Value(1)}), Value(List{Value(1U)}));
  EXPECT_NE(Value(List{Value(1)}), Value(List{Value(2)}));
  EXPECT_EQ(Value(Dictionary{{"a", Value(1)}}), Value(Dictionary{{"a", Value(1)}}));
  EXPECT_NE(Value(Dictionary{{"a", Value(1)}}), Value(Dictionary{{"b", Value(1)}}));
  EXPECT_EQ(Value(), Value());
}

TEST(Value, GivesBackAnEmptyListAndAnEmptyDictionary) {
  EXPECT_TRUE(Value(List()).list().empty());
  EXPECT_TRUE(Value(Dictionary()).dictionary().empty());
}

TEST(List, KeepsItsCopiesAsTheyWere) {
  List list{Value(1)};
  const List before = list;
  list.append(Value(2));
  EXPECT_EQ(printed(before), "[1]");
  EXPECT_EQ(printed(list), "[1, 2]");
}

TEST(Dictionary, KeepsTheOrderInWhichItsKeysWereFirstSet) {
  Dictionary dictionary;
  dictionary.set(Literal{"z"}, Value(1));
  dictionary.set(make<String>("a"), Value(2));
  dictionary.append(Literal{"m"}, Value(3));
  dictionary.set(Literal{"z"}, Value(4));
  EXPECT_EQ(printed(dictionary), "[z: 4, a: 2, m: 3]");
  EXPECT_EQ(dictionary.size(), 3U);
  EXPECT_EQ(dictionary.find("a")->integer(), 2);
  EXPECT_EQ(dictionary.find("A"), nullptr);
}

TEST(Dictionary, KeepsItsCopiesAsTheyWere) {
  Dictionary dictionary{{"a", Value(1)}};
  const Dictionary before = dictionary;
  const Value held(dictionary);
  dictionary.set(Literal{"a"}, Value(2));
  EXPECT_EQ(printed(before), "[a: 1]");
  EXPECT_EQ(printed(held), "[a: 1]");
  EXPECT_EQ(printed(dictionary), "[a: 2]");
}

TEST(Dictionary, HoldsMoreKeysOfItsOwnThanAKindHas) {
  Dictionary dictionary;
  for (int i = 0; i < 100; ++i)
    dictionary.append(make<String>(std::to_string(i)), i % 2 == 0 ? Value(i) : Value(data("00")));
  Dictionary copy = dictionary;
  for (const char* key : {"0", "1", "62", "63", "64", "99"}) copy.set(make<String>(key), Value(-1));
  copy.append(Literal{"more"}, Value(data("01")));
  ASSERT_EQ(dictionary.size(), 100U);
  ASSERT_EQ(copy.size(), 101U);
  std::size_t i = 0;
  for (const auto& [key, value] : dictionary) {
    EXPECT_EQ(key.text, std::to_string(i));
    EXPECT_EQ(value.kind(), i % 2 == 0 ? Value::Kind::int32 : Value::Kind::data);
    ++i;
  }
  EXPECT_EQ(copy.find("63")->integer(), -1);
  EXPECT_EQ(copy.find("64")->integer(), -1);
  EXPECT_EQ(copy.find("65")->kind(), Value::Kind::data);
  EXPECT_EQ(copy[100].key.text, "more");
  EXPECT_NE(copy, dictionary);
}

TEST(Dictionary, EndsWhatItCountsWhereverThatStands) {
  for (const std::size_t size : {1U, 2U, 62U, 63U, 64U, 65U, 80U})
    for (const std::size_t step : {1U, 2U, 7U, 61U, 62U, 63U, 64U, 79U}) {
      const auto text = make<String>(std::string_view("counted"));
      Dictionary dictionary;
      std::uint32_t held = 1;
      for (std::size_t i = 0; i < size; ++i) {
        const bool counts = i % step == step - 1;
        held += counts ? 1 : 0;
        dictionary.append(make<String>(std::to_string(i)), counts ? Value(text) : Value(1));
      }
      EXPECT_EQ(text->references(), held);
      dictionary = {};
      EXPECT_EQ(text->references(), 1U) << size << " entries, each " << step << "th a text";
    }
}

TEST(Dictionary, OfAKindGetsOtherKeysOfItsOwn) {
  static constexpr Literal kKeys[] = {kKey<"a">, kKey<"b">, kKey<"c">};
  DictionaryMaker maker(kKeys);
  maker.put(0, Value(1));
  maker.put(2, Value(test::data("03")));
  const Dictionary kind = maker.made();
  Dictionary other = kind;
  EXPECT_EQ(printed(kind), "[a: 1, c: <03>]");
  EXPECT_EQ(kind.size(), 2U);
  EXPECT_EQ(kind.find("b"), nullptr);
  other.append(make<String>("d"), Value(4));
  EXPECT_EQ(printed(other), "[a: 1, c: <03>, d: 4]");
  other.set(Literal{"b"}, Value(2));
  EXPECT_EQ(printed(other), "[a: 1, c: <03>, d: 4, b: 2]");
  EXPECT_EQ(printed(kind), "[a: 1, c: <03>]");
  EXPECT_TRUE(DictionaryMaker(kKeys).made().empty());
  EXPECT_EQ(DictionaryMaker(kKeys).made(), Dictionary());
}

TEST(Dictionary, CarriesTheMarkOfTheBridgeOnlyInThatCopy) {
  const Dictionary own{{"a", Value(1)}};
  const Dictionary bridged = own.bridged();
  EXPECT_FALSE(own.isBridged());
  EXPECT_TRUE(bridged.isBridged());
  EXPECT_EQ(bridged, own);
  EXPECT_TRUE(Dictionary().bridged().isBridged());
  EXPECT_FALSE(Dictionary().isBridged());
}

constexpr Literal kOuterKeys[] = {kKey<"number">, kKey<"absent">, kKey<"inner">, kKey<"bytes">,
                                  kKey<"list">};
constexpr Literal kInnerKeys[] = {kKey<"number">, kKey<"text">};

/// "[number: 1, inner: [number: 2, text: abc], bytes: <00ff>, list: [[number: 3], [number: 4]]]",
/// all in one block.
Dictionary inOneBlock() {
  Block block(4096);
  const auto dictionary = [&](Keys keys, int number) {
    Elements* made = Elements::createIn(block, keys);
    made->put(0, Value(number));
    return made;
  };
  const auto inside = [](Elements* elements, std::size_t place, Value value) {
    new (elements->first() + place) Value(std::move(value));
  };
  constexpr auto kDictionary = Value::Kind::dictionary;
  std::array<std::uint8_t, 2 + kReadableBehind> bytes{0x00, 0xff};
  std::array<std::uint8_t, 3 + kReadableBehind> text{'a', 'b', 'c'};
  Elements* whole = dictionary(kOuterKeys, 1);
  Elements* inner = dictionary(kInnerKeys, 2);
  Places places;
  places.add(1);
  inside(inner, 1, Value::inside(String::createFromPaddedIn(block, Bytes(text).first(3))));
  inner->setPresent(0b11, places, {});
  inside(whole, 2, Value::inside(kDictionary, inner));
  inside(whole, 3, Value::inside(Data::createFromPaddedIn(block, Bytes(bytes).first(2))));
  Elements* list = Elements::createIn(block, 2);
  for (const int number : {3, 4})
    list->appendInside(Value::inside(kDictionary, dictionary(kInnerKeys, number)));
  inside(whole, 4, Value::inside(Value::Kind::list, list));
  places = {};
  for (const std::size_t place : {2U, 3U, 4U}) places.add(place);
  whole->setPresent(0b11101, places, {});
  return Dictionary(Ref<Elements>::owning(whole->becomeWhole(block)));
}
constexpr char kInOneBlock[] =
    "[number: 1, inner: [number: 2, text: abc], bytes: <00ff>, list: [[number: 3], [number: 4]]]";

TEST(Block, IsFullWhereSomethingHasNoRoom) {
  Block block(64);
  EXPECT_NE(block.take(33), nullptr);
  EXPECT_FALSE(block.isFull);
  EXPECT_EQ(block.take(25), nullptr) << "a whole number of pointers was taken";
  EXPECT_TRUE(block.isFull);
  EXPECT_NE(block.take(24), nullptr);
  EXPECT_EQ(Elements::createIn(block, Keys()), nullptr);
  EXPECT_EQ(Elements::createIn(block, std::size_t{0}), nullptr);
  EXPECT_EQ(String::createIn(block, ""), nullptr);
  EXPECT_EQ(Data::createFromPaddedIn(block, {}), nullptr);
}

TEST(DictionaryInABlock, LivesAsLongAsAnyOfItsParts) {
  Dictionary whole = inOneBlock();
  EXPECT_EQ(printed(whole), kInOneBlock);
  const Dictionary inner = whole.find("inner")->dictionary();
  const Value text(*inner.find("text"));
  const Ref<Data> data = whole.find("bytes")->data();
  const List list = whole.find("list")->list();
  const Dictionary last = list[1].dictionary();
  EXPECT_EQ(data->references(), 6U) << "they count as one";
  whole = Dictionary();
  EXPECT_EQ(printed(inner), "[number: 2, text: abc]");
  EXPECT_EQ(text.text(), "abc");
  EXPECT_EQ(data->bytes()[1], 0xff);
  EXPECT_EQ(printed(list), "[[number: 3], [number: 4]]");
  EXPECT_EQ(data->references(), 5U);
}

TEST(DictionaryInABlock, IsChangedForWhoeverChangesIt) {
  const struct {
    const char* change;
    void (*make)(Dictionary&);
    const char* after;
  } rows[] = {
      {"a number", [](Dictionary& d) { d.set(Literal{"number"}, Value(5)); },
       "[number: 5, inner: [number: 2, text: abc], bytes: <00ff>, list: [[number: 3], [number: "
       "4]]]"},
      {"an object for a number",
       [](Dictionary& d) { d.set(Literal{"number"}, Value(std::string(40, 'x'))); },
       "[number: xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx, inner: [number: 2, text: abc], bytes: "
       "<00ff>, list: [[number: 3], [number: 4]]]"},
      {"an object for a part",
       [](Dictionary& d) { d.set(Literal{"inner"}, Value(test::data("01"))); },
       "[number: 1, inner: <01>, bytes: <00ff>, list: [[number: 3], [number: 4]]]"},
      {"a number for a part", [](Dictionary& d) { d.set(Literal{"list"}, Value(6)); },
       "[number: 1, inner: [number: 2, text: abc], bytes: <00ff>, list: 6]"},
      {"a part of its own", [](Dictionary& d) { d.set(Literal{"number"}, *d.find("inner")); },
       "[number: [number: 2, text: abc], inner: [number: 2, text: abc], bytes: <00ff>, list: "
       "[[number: 3], [number: 4]]]"},
      {"one more", [](Dictionary& d) { d.append(make<String>("m"), Value(test::data("02"))); },
       "[number: 1, inner: [number: 2, text: abc], bytes: <00ff>, list: [[number: 3], [number: "
       "4]], "
       "m: <02>]"},
      {"what its kind has, but not it",
       [](Dictionary& d) { d.set(Literal{"absent"}, Value(test::data("03"))); },
       "[number: 1, absent: <03>, inner: [number: 2, text: abc], bytes: <00ff>, list: [[number: "
       "3], "
       "[number: 4]]]"},
  };
  for (const auto& [change, make, after] : rows) {
    SCOPED_TRACE(change);
    Dictionary held = inOneBlock();
    Dictionary copy = held;
    make(copy);
    EXPECT_EQ(printed(held), kInOneBlock);
    EXPECT_EQ(printed(copy), after);
    copy = Dictionary();
    EXPECT_EQ(printed(held), kInOneBlock);
    make(held);  // now in its place
    EXPECT_EQ(printed(held), after);
  }
}

TEST(DictionaryInABlock, HasPartsThatAreChangedForWhoeverChangesThem) {
  const struct {
    Value value;
    const char* after;
  } rows[] = {{Value(7), "[number: 7, text: abc]"},
              {Value(test::data("07")), "[number: <07>, text: abc]"}};
  for (const auto& [value, after] : rows) {
    Dictionary whole = inOneBlock();
    Dictionary inner = whole.find("inner")->dictionary();
    inner.set(Literal{"number"}, value);
    EXPECT_EQ(printed(inner), after);
    EXPECT_EQ(printed(whole), kInOneBlock);
    inner = whole.find("inner")->dictionary();
    whole = Dictionary();  // only the part is held
    inner.set(Literal{"number"}, value);
    for (int more = 0; more < 8; ++more) inner.append(make<String>(std::to_string(more)), value);
    EXPECT_EQ(inner.size(), 10U);
    EXPECT_EQ(inner[0].value, value);
    EXPECT_EQ(inner.find("text")->text(), "abc");
    EXPECT_EQ(inner[9].value, value);
  }
}

/// Ten times "b", and a "c".
struct TimesTenAndMore {
  const Value& more;

  template <class Entries>
  void all(const Entries& entries) const {
    entries.change(entries.placeOf(Literal{"b"}), timesTen);
    entries.set(Literal{"c"}, more);
  }
  void one(Dictionary& entry) const {
    entry.change(entry.placeOf(Literal{"b"}), timesTen);
    entry.set(Literal{"c"}, more);
  }
  static void timesTen(Value& value) { value = Value(static_cast<int>(*value.integer() * 10)); }
};

TEST(ListChanged, IsOfCopies) {
  static constexpr Literal kFrom[] = {kKey<"a">, kKey<"b">, kKey<"d">};
  static constexpr Literal kTo[] = {kKey<"a">, kKey<"b">, kKey<"d">, kKey<"c">};
  static constexpr Literal kOther[] = {kKey<"b">};
  const auto dictionary = [](Keys keys, std::initializer_list<std::pair<int, Value>> values) {
    DictionaryMaker made(keys);
    for (const auto& [place, value] : values) made.put(static_cast<std::size_t>(place), value);
    return Value(made.made());
  };
  const Dictionary plain{{"a", Value(1)}, {"b", Value(2)}};
  const struct {
    const char* what;
    List list;
    Value added;
    const char* after;
  } rows[] = {
      {"plain",
       {Value(plain), Value(Dictionary{{"b", Value(3)}})},
       Value(9),
       "[[a: 1, b: 20, c: 9], [b: 30, c: 9]]"},
      {"plain, of the kind",
       {dictionary(kFrom, {{0, Value(1)}, {1, Value(2)}}), dictionary(kFrom, {{1, Value(3)}}),
        dictionary(kFrom, {})},
       Value(9),
       "[[a: 1, b: 20, c: 9], [b: 30, c: 9], [c: 9]]"},
      {"plain, of another kind",
       {dictionary(kFrom, {{0, Value(1)}}), dictionary(kOther, {{0, Value(3)}})},
       Value(9),
       "[[a: 1, c: 9], [b: 30, c: 9]]"},
      {"an object, of the kind",
       {dictionary(kFrom, {{1, Value(1)}, {2, Value(test::data("00"))}})},
       Value(9),
       "[[b: 10, d: <00>, c: 9]]"},
      {"nothing", {}, Value(9), "[]"},
      {"an object",
       {Value(plain), Value(Dictionary{{"b", Value(3)}, {"d", Value(test::data("00"))}})},
       Value(9),
       "[[a: 1, b: 20, c: 9], [b: 30, d: <00>, c: 9]]"},
      {"an object is added",
       {Value(plain), Value(plain)},
       Value(test::data("01")),
       "[[a: 1, b: 20, c: <01>], [a: 1, b: 20, c: <01>]]"},
      {"an empty one",
       {Value(Dictionary()), Value(plain)},
       Value(9),
       "[[c: 9], [a: 1, b: 20, c: 9]]"},
  };
  for (const auto& [what, list, added, after] : rows) {
    SCOPED_TRACE(what);
    const std::string before = printed(list);
    List copy = List::changed(Value(list), added.isPlain(), kFrom, kTo, TimesTenAndMore{added});
    EXPECT_EQ(printed(copy), after);
    EXPECT_EQ(printed(list), before);
    const Value last = copy.empty() ? Value() : copy[copy.size() - 1];
    copy = List();
    if (last.kind() == Value::Kind::nothing) continue;
    EXPECT_EQ(last.dictionary()[last.dictionary().size() - 1].value, added);
  }
}

}  // namespace
}  // namespace quorin::test

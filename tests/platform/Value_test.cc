#include "platform/foundation/Value.h"

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
  dictionary.set(Value(std::string("a")), Value(2));
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

TEST(Dictionary, CarriesTheMarkOfTheBridgeOnlyInThatCopy) {
  const Dictionary own{{"a", Value(1)}};
  const Dictionary bridged = own.bridged();
  EXPECT_FALSE(own.isBridged());
  EXPECT_TRUE(bridged.isBridged());
  EXPECT_EQ(bridged, own);
  EXPECT_TRUE(Dictionary().bridged().isBridged());
  EXPECT_FALSE(Dictionary().isBridged());
}

}  // namespace
}  // namespace quorin::test

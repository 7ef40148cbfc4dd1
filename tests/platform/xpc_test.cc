#include "platform/baseband/xpc.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

TEST(XpcObjects, HoldWhatTheyWereMadeFrom) {
  EXPECT_EQ(xpc_get_type(XpcRef(xpc_null_create()).get()), xpc_type_t::null);
  EXPECT_TRUE(xpc_bool_get_value(XpcRef(xpc_bool_create(true)).get()));
  EXPECT_EQ(xpc_int64_get_value(XpcRef(xpc_int64_create(INT64_MIN)).get()), INT64_MIN);
  EXPECT_EQ(xpc_double_get_value(XpcRef(xpc_double_create(-0.5)).get()), -0.5);
  EXPECT_EQ(xpc_string_get_string(XpcRef(xpc_string_create(std::string_view("a\0b", 3))).get()),
            std::string_view("a\0b", 3));
  const auto content = bytes("00 ff");
  const XpcRef data(xpc_data_create(content.data(), content.size()));
  EXPECT_EQ(hexText(xpc_data_get_bytes(data.get())), "00ff");
  EXPECT_EQ(shown(XpcRef(xpc_data_create(nullptr, 0)).get()), "data <>");
}

TEST(XpcDictionary, KeepsTheOrderOfFirstSettingAndReplacesInPlace) {
  const XpcRef dictionary(xpc_dictionary_create(nullptr, nullptr, 0));
  for (const auto& [key, value] : {std::pair{"z", 1}, std::pair{"a", 2}, std::pair{"z", 3}})
    xpc_dictionary_set_value(dictionary.get(), key, XpcRef(xpc_int64_create(value)).get());
  std::vector<std::string> entries;
  xpc_dictionary_apply(dictionary.get(), [&](const std::string& key, xpc_object_t value) {
    entries.push_back(key + "=" + shown(value));
  });
  EXPECT_THAT(entries, ElementsAre("z=int64 3", "a=int64 2"));
  EXPECT_EQ(xpc_dictionary_get_count(dictionary.get()), 2U);
  EXPECT_EQ(shown(xpc_dictionary_get_value(dictionary.get(), "a")), "int64 2");
  EXPECT_EQ(xpc_dictionary_get_value(dictionary.get(), "b"), nullptr);
}

TEST(XpcDictionary, TakesAReferenceOfItsOwnToEachValue) {
  xpc_object_t text = xpc_string_create("kept");
  const char* key = "k";
  const XpcRef dictionary(xpc_dictionary_create(&key, &text, 1));
  xpc_release(text);
  EXPECT_EQ(shown(xpc_dictionary_get_value(dictionary.get(), "k")), "string kept");
}

TEST(XpcDictionary, IsNoneWhereANullObjectStandsInForIt) {
  const XpcRef null(xpc_null_create());
  xpc_dictionary_set_value(null.get(), "k", XpcRef(xpc_int64_create(1)).get());
  EXPECT_EQ(shown(null.get()), "null");
}

TEST(XpcReferences, AreNoneForNull) {
  xpc_release(nullptr);
  EXPECT_EQ(xpc_retain(nullptr), nullptr);
  EXPECT_FALSE(XpcRef());
}

TEST(XpcCreateHook, SeesEachObjectAndMayGiveAnother) {
  std::vector<xpc_type_t> seen;
  setXpcCreateHook([&](xpc_object_t made) {
    seen.push_back(xpc_get_type(made));
    return made;
  });
  { const XpcRef objects[] = {XpcRef(xpc_int64_create(1)), XpcRef(xpc_null_create())}; }
  setXpcCreateHook([](xpc_object_t made) -> xpc_object_t {
    xpc_release(made);
    return nullptr;
  });
  EXPECT_EQ(xpc_int64_create(1), nullptr);
  EXPECT_EQ(xpc_dictionary_create(nullptr, nullptr, 0), nullptr);
  setXpcCreateHook(nullptr);
  EXPECT_THAT(seen, ElementsAre(xpc_type_t::int64, xpc_type_t::null));
}

}  // namespace
}  // namespace quorin::test

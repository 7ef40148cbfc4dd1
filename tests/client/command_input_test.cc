#include "client/command_input.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

std::string entriesOf(const XpcRef& dictionary) {
  std::string text;
  xpc_dictionary_apply(dictionary.get(), [&](const std::string& key, xpc_object_t value) {
    text += key + "=" + shown(value) + " ";
  });
  return text;
}

TEST(CommandInput, SetsItsKeysInTheirOrder) {
  const XpcRef text(xpc_string_create("x"));
  EXPECT_EQ(entriesOf(commandInput({{"b", 1}, {"a", -1}, {"c", 0, text.get()}})),
            "b=int64 1 a=int64 -1 c=string x ");
}

TEST(CommandInput, LeavesTheCallersReferenceToAnObjectAlone) {
  xpc_object_t text = xpc_string_create("x");
  { const XpcRef input = commandInput({{"c", 0, text}}); }
  EXPECT_EQ(shown(text), "string x");
  xpc_release(text);
}

TEST(CommandInput, IsAnEmptyDictionaryWithoutKeys) {
  const XpcRef input = commandInput({});
  EXPECT_EQ(shown(input.get()), "dictionary");
  EXPECT_EQ(xpc_dictionary_get_count(input.get()), 0U);
}

}  // namespace
}  // namespace quorin::test

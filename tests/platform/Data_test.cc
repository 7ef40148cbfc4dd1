#include "platform/foundation/Data.h"

#include "tests/support/resource_folder.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(Data, IsEqualByItsBytes) {
  EXPECT_TRUE(test::data("01 02")->isEqual(*test::data("01 02")));
  EXPECT_FALSE(test::data("01 02")->isEqual(*test::data("01")));
  EXPECT_FALSE(test::data("78")->isEqual(*make<String>("x")));
  EXPECT_EQ(test::data("01 02")->hash(), test::data("01 02")->hash());
}

TEST(HexText, ReadsBackWhatItWrites) {
  EXPECT_EQ(hexText(bytes("00 7F fF")), "007fff");
  EXPECT_EQ(hexText({}), "");
  EXPECT_EQ(bytesFromHex("007FfF"), bytes("007fff"));
  EXPECT_EQ(bytesFromHex(""), std::vector<std::uint8_t>());
  for (const char* text : {"0", "0g", "0x01", " 0", "00 1"})
    EXPECT_EQ(bytesFromHex(text), std::nullopt);
}

TEST(DataWithContentsOfFile, HoldsTheWholeFile) {
  const ResourceFolder folder;
  folder.put("file", std::string_view("a\0\r\n\xff", 5));
  folder.put("empty", "");
  const auto whole = dataWithContentsOfFile(folder.path() + "/file");
  ASSERT_TRUE(whole);
  EXPECT_EQ(hexText(whole->bytes()), "61000d0aff");
  const auto empty = dataWithContentsOfFile(folder.path() + "/empty");
  ASSERT_TRUE(empty);
  EXPECT_EQ(empty->length(), 0U);
}

TEST(DataWithContentsOfFile, IsNullForWhatCannotBeRead) {
  const ResourceFolder folder;
  EXPECT_FALSE(dataWithContentsOfFile(folder.path() + "/missing"));
  EXPECT_FALSE(dataWithContentsOfFile(""));
  EXPECT_FALSE(dataWithContentsOfFile(folder.path())) << "a folder";
}

}  // namespace
}  // namespace quorin::test

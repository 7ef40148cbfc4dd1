#include "platform/foundation/Bundle.h"

#include "tests/support/resource_folder.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(Bundle, FindsAFileByItsNameAndItsType) {
  const ResourceFolder folder;
  folder.put("name.type", "x");
  const Bundle bundle(folder.path());
  EXPECT_EQ(bundle.pathForResource("name", "type"), folder.path() + "/name.type");
  EXPECT_EQ(bundle.pathForResource("name", "other"), std::nullopt);
  EXPECT_EQ(bundle.pathForResource("other", "type"), std::nullopt);
  EXPECT_EQ(bundle.pathForResource("Name", "type"), std::nullopt);
  EXPECT_EQ(Bundle("/nowhere").pathForResource("name", "type"), std::nullopt);
}

TEST(Bundle, HasNoFolderForAResource) {
  const ResourceFolder folder;
  std::filesystem::create_directory(folder.path() + "/name.type");
  EXPECT_EQ(Bundle(folder.path()).pathForResource("name", "type"), std::nullopt);
}

TEST(MainBundle, StandsBesideTheProgramsFolderAndHoldsTheConfiguration) {
  EXPECT_EQ(Bundle::mainBundle().folder(), QUORIN_BINARY_DIR "/share/quorin");
  EXPECT_EQ(Bundle::mainBundle().pathForResource("zef_test_lte", "deviceconfig"),
            QUORIN_BINARY_DIR "/share/quorin/zef_test_lte.deviceconfig");
}

}  // namespace
}  // namespace quorin::test

#include <vector>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(InlineVector, KeepsItsElementsBeyondTheFewBesideIt) {
  const auto counted = std::make_shared<int>();
  {
    InlineVector<std::shared_ptr<int>, 2> vector;
    EXPECT_TRUE(vector.empty());
    for (long size = 1; size <= 9; ++size) {
      vector.push_back(counted);
      EXPECT_EQ(vector.size(), static_cast<std::size_t>(size));
      EXPECT_EQ(counted.use_count(), 1 + size);
    }
    for (const auto& element : vector) EXPECT_EQ(element, counted);
    EXPECT_EQ(vector.at(8), counted);
    EXPECT_THROW((void)vector.at(9), std::out_of_range);
    vector.clear();
    EXPECT_TRUE(vector.empty());
    EXPECT_EQ(counted.use_count(), 1);
    vector.push_back(counted);
  }
  EXPECT_EQ(counted.use_count(), 1);
}

}  // namespace
}  // namespace quorin::test

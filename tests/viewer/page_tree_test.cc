#include "viewer/page_tree.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

TEST(PageTree, ListsTheTechnologiesAndTheCategoriesOfEachInTheirOrder) {
  const PageTree tree = buildPageTree();
  EXPECT_THAT(tree.technologies, ElementsAre("Device Info", "LTE", "UMTS", "GSM"));
  EXPECT_EQ(tree.categories.size(), 4U);
  EXPECT_THAT(tree.categories.at("Device Info"), ElementsAre("IMSI", "IMEISV", "SIM Files"));
  EXPECT_THAT(
      tree.categories.at("LTE"),
      ElementsAre("NAS", "RRC State", "Serving Cell Info", "Serving Cell Meas", "Tx Power",
                  "Sel Resel Parameters", "EUTRA Neighbor Info", "C-DRX", "LTE Neighbor Cell Meas",
                  "UMTS Neighbor Cell Meas", "GSM Neighbor Cell Meas", "CA Status",
                  "Secondary Cell Meas", "Active Bearers"));
  EXPECT_THAT(
      tree.categories.at("UMTS"),
      ElementsAre("NAS GMM", "NAS MM", "RRC State", "RRC Configuration", "Serving Cell Info",
                  "Serving Cell Meas", "Tx Power", "Sel Resel Parameters", "EUTRA Neighbor Info",
                  "UTRA Neighbor Info", "GSM Neighbor Info", "LTE Neighbor Cell Meas",
                  "UMTS Neighbor Cell Meas", "GSM Neighbor Cell Meas", "Active Bearers"));
  EXPECT_THAT(
      tree.categories.at("GSM"),
      ElementsAre("NAS GMM", "NAS MM", "Serving Cell Info", "Idle Config", "Idle Serv Cell Meas",
                  "Connected Serv Cell Meas", "GSM GPRS Config", "LTE Neighbor Cell Meas",
                  "UMTS Neighbor Cell Meas", "GSM Neighbor Cell Meas", "Active Bearers"));
}

}  // namespace
}  // namespace quorin::test

#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

TEST(DictionaryRepresentation, StandsInFieldOrderWithoutAbsentFields) {
  KCellularLteRrcState message;
  EXPECT_EQ(printed(message.dictionaryRepresentation()), "[:]");
  message.setCause(255);
  message.setTimestamp(1);
  EXPECT_EQ(printed(message.dictionaryRepresentation()),
            "[timestamp: 1, cause: KLTE_RRC_CAUSE_NA]");
}

TEST(DictionaryRepresentation, KeepsTheKindsOfNumbers) {
  KCellularActivatedBearerContexts contexts;
  contexts.setTimestamp(1);
  contexts.setBearerContextCount(2);
  const auto bearer = make<BearerContext>();
  bearer->setIsAddrIratMobile(true);
  bearer->setApn(make<String>("internet"));
  bearer->setPdpAddr(data("0a 00 00 01"));
  contexts.addBearerContexts(bearer);
  const Dictionary dictionary = contexts.dictionaryRepresentation();
  EXPECT_EQ(dictionary.find("timestamp")->kind(), Value::Kind::uint64);
  EXPECT_EQ(dictionary.find("bearer_context_count")->kind(), Value::Kind::uint32);
  const Dictionary entry = dictionary.find("bearer_contexts")->list()[0].dictionary();
  EXPECT_EQ(entry.find("is_addr_irat_mobile")->kind(), Value::Kind::boolean);
  EXPECT_EQ(entry.find("pdp_addr")->data().get(), bearer->pdpAddr().get()) << "the object itself";
  EXPECT_EQ(printed(dictionary),
            "[timestamp: 1, bearer_context_count: 2, bearer_contexts: [[apn: internet, pdp_addr: "
            "<0a000001>, is_addr_irat_mobile: 1]]]");
}

TEST(DictionaryRepresentation, LeavesOutEmptyRepeatedFields) {
  KCellularLteCarrierAggregationStatus status;
  status.addSccList(make<SecondaryComponentCarrier>());
  EXPECT_EQ(printed(status.dictionaryRepresentation()), "[scc_list: [[:]]]");
  status.clearSccLists();
  EXPECT_EQ(printed(status.dictionaryRepresentation()), "[:]");
  KCellularLteSelReselCellInfo bands;
  bands.addMultiBandInfo(1);
  bands.clearMultiBandInfos();
  EXPECT_EQ(printed(bands.dictionaryRepresentation()), "[:]");
}

TEST(DictionaryRepresentation, HoldsAsMuchAsTheMessage) {
  for (const std::size_t count : {1U, 8U, 9U, 17U, 1'000U, 10'000U}) {
    KCellularLteCarrierAggregationStatus status;
    std::string expected = "[scc_list: [";
    for (std::size_t i = 0; i < count; ++i) {
      const auto carrier = make<SecondaryComponentCarrier>();
      carrier->setPci(static_cast<std::uint32_t>(i));
      status.addSccList(carrier);
      expected += (i == 0 ? "[pci: " : ", [pci: ") + std::to_string(i) + "]";
    }
    expected += "]]";
    EXPECT_EQ(printed(status.dictionaryRepresentation()), expected);
    PBDataWriter writer;
    status.writeTo(writer);
    const auto payload = make<Data>(Bytes(writer.bytes()));
    Elements* const usual = status.table().read(payload->bytes());
    const Dictionary direct(Ref<Elements>::owning(usual));
    const bool fits = usual != nullptr;
    EXPECT_EQ(fits, count <= 1'000)
        << "what takes more than a mebibyte is left to the exact reader";
    EXPECT_EQ(fits ? printed(direct) : expected, expected);
    KCellularLteCarrierAggregationStatus read;
    EXPECT_TRUE(read.initWithData(payload));
    EXPECT_EQ(printed(read.dictionaryRepresentation()), expected);
    EXPECT_TRUE(read.isEqual(status));
  }
}

TEST(DictionaryRepresentation, SharesNothingWithTheMessageThatTheMessageMayLose) {
  auto contexts = make<KCellularActivatedBearerContexts>();
  const auto bearer = make<BearerContext>();
  bearer->setApn(make<String>("internet"));
  contexts->addBearerContexts(bearer);
  const Dictionary dictionary = contexts->dictionaryRepresentation();
  bearer->setApn(nullptr);
  contexts = nullptr;
  EXPECT_EQ(printed(dictionary), "[bearer_contexts: [[apn: internet]]]");
}

TEST(DictionaryRepresentation, IsANewOneEachTime) {
  KCellularLteRrcState message;
  message.setTimestamp(1);
  Dictionary first = message.dictionaryRepresentation();
  first.set(Literal{"timestamp"}, Value(std::string("changed")));
  EXPECT_EQ(printed(message.dictionaryRepresentation()), "[timestamp: 1]");
}

TEST(DictionaryRepresentation, OfAMessageThatWasReadIsTheSameOnceItsFieldsAreAskedFor) {
  KCellularActivatedBearerContexts written;
  const auto bearer = make<BearerContext>();
  bearer->setApn(make<String>("internet"));
  bearer->setPdpAddr(data("0a 00"));
  written.setTimestamp(1);
  written.addBearerContexts(bearer);
  PBDataWriter writer;
  written.writeTo(writer);

  KCellularActivatedBearerContexts read;
  ASSERT_TRUE(read.initWithData(make<Data>(Bytes(writer.bytes()))));
  const Dictionary before = read.dictionaryRepresentation();
  constexpr char kBearer[] = "[timestamp: 1, bearer_contexts: [[apn: internet, pdp_addr: <0a00>]]]";
  EXPECT_EQ(printed(before), kBearer);
  const auto held = before.find("bearer_contexts")->list()[0].dictionary().find("pdp_addr")->data();
  EXPECT_EQ(read.bearerContextsAtIndex(0)->pdpAddr().get(), held.get()) << "the object itself";
  const Dictionary after = read.dictionaryRepresentation();
  EXPECT_EQ(printed(after), kBearer);

  read.bearerContextsAtIndex(0)->setApn(nullptr);
  read.setTimestamp(2);
  EXPECT_EQ(printed(read.dictionaryRepresentation()),
            "[timestamp: 2, bearer_contexts: [[pdp_addr: <0a00>]]]");
  EXPECT_EQ(printed(before), kBearer);
  EXPECT_EQ(printed(after), kBearer);
}

TEST(Description, IsTheBasesTextAndThePrintedDictionary) {
  KCellularEmmContext message;
  message.setGuti(make<Guti>());
  message.guti()->setMmec(5);
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<void*>(&message));
  EXPECT_EQ(message.description(),
            std::string("<KCellularEmmContext: ") + address + "> [guti: [mmec: 5]]");
}

}  // namespace
}  // namespace quorin::test

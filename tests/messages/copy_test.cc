#include "messages/catalogue.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

Ref<SecondaryComponentCarrier> carrier(std::uint32_t index) {
  auto made = make<SecondaryComponentCarrier>();
  made->setIndex(index);
  return made;
}

TEST(CopyTo, CopiesPresentScalarsAndLeavesTheOthersOfTheTarget) {
  KCellularLteRrcState source;
  source.setState(3);
  source.setTimestamp(9);
  source.setHasTimestamp(false);
  KCellularLteRrcState target;
  target.setTimestamp(1);
  target.setCause(7);
  source.copyTo(target);
  EXPECT_EQ(printed(target.dictionaryRepresentation()),
            "[timestamp: 1, state: KLTE_RRC_STATE_CONNECTED, cause: KLTE_RRC_CAUSE_REEST_HO_FAIL]");
}

TEST(CopyTo, SharesObjects) {
  KCellularMmCommonInfo source;
  source.setImsi(data("01"));
  source.addEplmnList(make<Plmn>());
  KCellularMmCommonInfo target;
  source.copyTo(target);
  EXPECT_EQ(target.imsi().get(), source.imsi().get());
  EXPECT_EQ(target.eplmnListAtIndex(0).get(), source.eplmnListAtIndex(0).get());
  EXPECT_NE(target.eplmnLists().get(), source.eplmnLists().get()) << "an array of its own";
}

TEST(CopyTo, ClearsTheTargetsArrayFirstButOnlyForANonEmptyOne) {
  KCellularLteCarrierAggregationStatus source;
  KCellularLteCarrierAggregationStatus target;
  target.addSccList(carrier(7));
  source.copyTo(target);
  EXPECT_EQ(target.sccListsCount(), 1U);
  source.addSccList(carrier(0));
  source.addSccList(carrier(1));
  source.copyTo(target);
  EXPECT_EQ(printed(target.dictionaryRepresentation()), "[scc_list: [[index: 0], [index: 1]]]");
}

TEST(CopyTo, ReplacesPackedNumbers) {
  KCellularLteSelReselCellInfo source;
  source.addMultiBandInfo(3);
  KCellularLteSelReselCellInfo target;
  target.addMultiBandInfo(1);
  target.addMultiBandInfo(2);
  source.copyTo(target);
  EXPECT_EQ(printed(target.dictionaryRepresentation()), "[multi_band_info: [3]]");
}

TEST(CopyWithZone, CopiesEverythingAndSharesNothing) {
  KCellularMmCommonInfo source;
  source.setTimestamp(5);
  source.setImsi(data("01"));
  source.addEplmnList(make<Plmn>());
  source.eplmnListAtIndex(0)->setEncodedPlmn(data("02"));
  const auto copy = source.copyWithZone();
  EXPECT_TRUE(copy->isEqual(source));
  EXPECT_NE(copy.get(), &source);
  EXPECT_NE(copy->imsi().get(), source.imsi().get());
  EXPECT_NE(copy->eplmnLists().get(), source.eplmnLists().get());
  EXPECT_NE(copy->eplmnListAtIndex(0).get(), source.eplmnListAtIndex(0).get());
  EXPECT_NE(copy->eplmnListAtIndex(0)->encodedPlmn().get(),
            source.eplmnListAtIndex(0)->encodedPlmn().get());

  KCellularEmmContext context;
  context.setGuti(make<Guti>());
  context.guti()->setMmec(5);
  const auto contextCopy = context.copyWithZone();
  EXPECT_NE(contextCopy->guti().get(), context.guti().get());
  EXPECT_EQ(contextCopy->guti()->mmec(), 5U);

  KCellularLteRsrpRsrqSinr quality;
  quality.setCallId(make<String>("id"));
  EXPECT_NE(quality.copyWithZone()->callId().get(), quality.callId().get());
  EXPECT_TRUE(quality.copyWithZone()->isEqual(quality));
}

TEST(CopyWithZone, LeavesOutTheValueOfAnAbsentScalar) {
  KCellularLteRrcState source;
  source.setTimestamp(9);
  source.setHasTimestamp(false);
  const auto copy = source.copyWithZone();
  copy->setHasTimestamp(true);
  EXPECT_EQ(copy->timestamp(), 0U);
}

TEST(MergeFrom, TakesPresentScalarsAndKeepsTheRest) {
  KCellularLteRrcState ours;
  ours.setTimestamp(1);
  ours.setState(1);
  KCellularLteRrcState theirs;
  theirs.setState(3);
  ours.mergeFrom(theirs);
  EXPECT_EQ(printed(ours.dictionaryRepresentation()),
            "[timestamp: 1, state: KLTE_RRC_STATE_CONNECTED]");
}

TEST(MergeFrom, MergesANestedMessageIntoOursOrAdoptsTheirs) {
  KCellularEmmContext theirs;
  theirs.setGuti(make<Guti>());
  theirs.guti()->setMmec(5);
  KCellularEmmContext ours;
  ours.mergeFrom(theirs);
  EXPECT_EQ(ours.guti().get(), theirs.guti().get()) << "adopted by reference";

  KCellularEmmContext holding;
  holding.setGuti(make<Guti>());
  holding.guti()->setMmegi(9);
  const auto before = holding.guti();
  holding.mergeFrom(theirs);
  EXPECT_EQ(holding.guti().get(), before.get());
  EXPECT_EQ(printed(holding.dictionaryRepresentation()), "[guti: [mmegi: 9, mmec: 5]]");
  KCellularEmmContext without;
  holding.mergeFrom(without);
  EXPECT_EQ(holding.guti().get(), before.get());
}

TEST(MergeFrom, ReplacesBytesAndTextByReference) {
  KCellularMmCommonInfo ours;
  ours.setImsi(data("01"));
  KCellularMmCommonInfo theirs;
  ours.mergeFrom(theirs);
  EXPECT_EQ(hexText(ours.imsi()->bytes()), "01");
  theirs.setImsi(data("02"));
  ours.mergeFrom(theirs);
  EXPECT_EQ(ours.imsi().get(), theirs.imsi().get());
}

TEST(MergeFrom, AppendsElementsByReferenceAndPackedNumbers) {
  KCellularLteCarrierAggregationStatus ours;
  ours.addSccList(carrier(0));
  KCellularLteCarrierAggregationStatus theirs;
  theirs.addSccList(carrier(1));
  ours.mergeFrom(theirs);
  EXPECT_EQ(ours.sccListsCount(), 2U);
  EXPECT_EQ(ours.sccListAtIndex(1).get(), theirs.sccListAtIndex(0).get());

  KCellularLteSelReselCellInfo bands;
  bands.addMultiBandInfo(1);
  KCellularLteSelReselCellInfo more;
  more.addMultiBandInfo(2);
  bands.mergeFrom(more);
  EXPECT_EQ(printed(bands.dictionaryRepresentation()), "[multi_band_info: [1, 2]]");
}

TEST(MergeFrom, DoublesAMessageThatIsMergedIntoItself) {
  KCellularLteCarrierAggregationStatus status;
  status.addSccList(carrier(0));
  status.mergeFrom(status);
  EXPECT_EQ(status.sccListsCount(), 2U);
}

/// Every field of the class present, nested messages filled likewise.
Ref<AnyMessage> filled(const MessageTable& table) {
  const auto message = table.make();
  for (const Field& field : table.fields) {
    message->setHas(field.number, true);
    switch (field.kind) {
      case Kind::uint64: field.in<std::uint64_t>(*message) = field.number; break;
      case Kind::uint32: field.in<std::uint32_t>(*message) = field.number; break;
      case Kind::enumeration:
      case Kind::sint32:
        field.in<std::int32_t>(*message) = -static_cast<std::int32_t>(field.number);
        break;
      case Kind::boolean: field.in<bool>(*message) = true; break;
      case Kind::bytes: field.in<Ref<Data>>(*message) = data("0a"); break;
      case Kind::string: field.in<Ref<String>>(*message) = make<String>("text"); break;
      case Kind::message: field.in<Ref<AnyMessage>>(*message) = filled(*field.element); break;
      case Kind::repeated:
        appendElement(field.in<Ref<MessageArray>>(*message), filled(*field.element));
        break;
      case Kind::packedUint32: field.in<PBRepeatedUInt32>(*message).values = {field.number}; break;
      case Kind::packedSint32: field.in<PBRepeatedInt32>(*message).values = {-1}; break;
    }
  }
  for (std::uint32_t number = 0; number < kFieldNumberLimit; ++number) {
    const Field* field = table.find(number);
    const bool scalar = field && field->kind <= Kind::boolean;
    message->setHas(number, scalar);
  }
  return message;
}

TEST(CopyOperations, KeepEveryFieldOfEveryClass) {
  for (const CatalogueRow& row : catalogue()) {
    SCOPED_TRACE(row.table->name);
    const auto message = filled(*row.table);
    EXPECT_EQ(message->dictionaryRepresentation().size(), row.table->fields.size());
    const auto copy = message->deepCopy();
    EXPECT_TRUE(copy->isEqual(*message));
    EXPECT_EQ(copy->hash(), message->hash());
    EXPECT_EQ(copy->dictionaryRepresentation(), message->dictionaryRepresentation());
  }
}

}  // namespace
}  // namespace quorin::test

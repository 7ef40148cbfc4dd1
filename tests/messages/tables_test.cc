#include <map>

#include "messages/catalogue.h"
#include "messages/codec/usual_ranges.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "metrics/registry/metric_ids.h"
#include "tests/support/rig.h"
#include "tests/support/tables.h"

namespace quorin::test {
namespace {

const std::map<Kind, std::string> kKindTexts = {
    {Kind::uint64, "uint64"},
    {Kind::uint32, "uint32"},
    {Kind::enumeration, "int32"},
    {Kind::sint32, "sint32"},
    {Kind::boolean, "bool"},
    {Kind::bytes, "bytes"},
    {Kind::string, "string"},
    {Kind::message, "message "},
    {Kind::repeated, "repeated message "},
    {Kind::packedUint32, "packed repeated uint32"},
    {Kind::packedSint32, "packed repeated sint32"},
};

std::string typeText(const Field& field) {
  return kKindTexts.at(field.kind) + (field.element ? std::string(field.element->name) : "");
}

TEST(Catalogue, HoldsExactlyTheFieldsOfTheTable) {
  std::vector<FieldFact> held;
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields)
      held.push_back({std::string(row.table->name), field.number, std::string(field.key),
                      std::string(field.property), typeText(field),
                      std::string(field.names.title)});
  const auto facts = fieldFacts();
  ASSERT_EQ(facts.size(), 355U);
  ASSERT_EQ(held.size(), facts.size());
  for (std::size_t i = 0; i < facts.size(); ++i) {
    SCOPED_TRACE(facts[i].className + "." + facts[i].property);
    EXPECT_EQ(held[i].className, facts[i].className);
    EXPECT_EQ(held[i].number, facts[i].number);
    EXPECT_EQ(held[i].key, facts[i].key);
    EXPECT_EQ(held[i].property, facts[i].property);
    EXPECT_EQ(held[i].type, facts[i].type);
    EXPECT_EQ(held[i].names, facts[i].names);
  }
}

TEST(Catalogue, Has31MetricsAnd25NestedClasses) {
  std::size_t metrics = 0;
  std::set<std::int64_t> ids;
  for (const CatalogueRow& row : catalogue())
    if (row.metricID != 0) ++metrics, ids.insert(row.metricID);
  EXPECT_EQ(catalogue().size(), 56U);
  EXPECT_EQ(metrics, 31U);
  EXPECT_EQ(ids.size(), 31U);
}

TEST(Catalogue, FindsAClassByNameAndByMetricId) {
  EXPECT_EQ(catalogueRow("Guti")->table->name, "Guti");
  EXPECT_EQ(catalogueRow(K_LTE_RRC_STATE)->table->name, "KCellularLteRrcState");
  EXPECT_EQ(catalogueRow(K_LTE_SCELL_MEAS)->table->name, "KCellularLteServingCellMeasurement");
  EXPECT_EQ(catalogueRow("Gut"), nullptr);
  EXPECT_EQ(catalogueRow(std::int64_t{0}), nullptr);
  EXPECT_EQ(catalogueRow(K_LTE_RLF), nullptr);
}

TEST(Catalogue, OnlyTheSecondaryCellClassesKeepWholeFieldNumbers) {
  std::vector<std::string_view> whole;
  for (const CatalogueRow& row : catalogue())
    if (row.table->keyRule == KeyRule::whole) whole.push_back(row.table->name);
  EXPECT_THAT(whole, ::testing::UnorderedElementsAre("SccRxMeasurement",
                                                     "KCellularLteSecondaryCellMeasurements"));
}

TEST(UsualRanges, AreOfNumbersThatTakeTwoBytesOrThree) {
  for (const UsualRange& range : kUsualRanges) {
    std::size_t fields = 0;
    for (const CatalogueRow& row : catalogue()) {
      for (const Field& field : row.table->fields) {
        if (usualRange(row.table->name, field) != &range) continue;
        ++fields;
        PBDataWriter writer;
        if (field.kind == Kind::sint32)
          PBDataWriterWriteSint32Field(writer, static_cast<std::int32_t>(range.lowest), kPBNoKey);
        else
          PBDataWriterWriteUint32Field(writer, static_cast<std::uint32_t>(range.highest), kPBNoKey);
        const std::size_t bytes = writer.bytes().size();
        EXPECT_TRUE(bytes == 2 || bytes == 3) << row.table->name << " " << field.key;
        EXPECT_EQ(usualBytes(row.table->name, field), bytes) << row.table->name << " " << field.key;
      }
    }
    EXPECT_GE(fields, 1U) << range.key;
    EXPECT_LT(range.lowest, range.highest) << range.key;
  }
}

TEST(EnumTables, HoldExactlyTheNamesOfTheTable) {
  std::map<std::string, std::map<std::int32_t, std::string>> facts;
  for (const auto& row : tableRows("names.tsv")) facts[row.at(0)][std::stoi(row.at(1))] = row.at(2);
  ASSERT_EQ(facts.size(), 22U);
  std::map<std::string, std::map<std::int32_t, std::string>> held;
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields)
      for (const EnumName& name : field.names.names)
        held[std::string(field.names.title)][name.value] = name.name;
  EXPECT_EQ(held, facts);
}

TEST(EnumTables, NameEveryValueAndNoOther) {
  std::map<std::string, std::map<std::int32_t, std::string>> facts;
  for (const auto& row : tableRows("names.tsv")) facts[row.at(0)][std::stoi(row.at(1))] = row.at(2);
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields) {
      if (field.kind != Kind::enumeration) continue;
      const auto& names = facts.at(std::string(field.names.title));
      for (std::int32_t value = -2; value <= 300; ++value) {
        const auto message = row.table->make();
        message->setHas(field.number, true);
        field.in<std::int32_t>(*message) = value;
        const auto known = names.find(value);
        EXPECT_EQ(message->dictionaryRepresentation().find(field.key)->text(),
                  known != names.end() ? known->second : "(unknown: " + std::to_string(value) + ")")
            << row.table->name << "." << field.property << " = " << value;
        PBDataWriter writer;
        message->writeTo(writer);
        const auto read = row.table->make();
        EXPECT_TRUE(read->initWithData(make<Data>(Bytes(writer.bytes()))));
        EXPECT_EQ(field.in<std::int32_t>(*read), value) << "no two values have one name";
      }
    }
}

TEST(EnumTables, GiveTheValueOfANameAtCompileTime) {
  static_assert(valueOf(names::KLTE_RRC_STATE, "KLTE_RRC_STATE_CONNECTED") == 3);
  static_assert(valueOf(names::KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_NA") == 255);
  EXPECT_EQ(EnumTable(names::KLTE_RRC_STATE).nameOf(3), "KLTE_RRC_STATE_CONNECTED");
  EXPECT_EQ(EnumTable().nameOf(0), "");
}

TEST(MetricIds, AreAllPrefixedTags) {
  EXPECT_EQ(std::size(kMetricIDs), 32U);
  for (const MetricID& row : kMetricIDs) EXPECT_EQ(row.id >> 16, 0x3C) << row.name;
}

}  // namespace
}  // namespace quorin::test

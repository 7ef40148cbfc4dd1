#include "fuzz/support/Input.h"
#include "fuzz/support/promise.h"
#include "messages/catalogue.h"
#include "messages/gsm/KCellularGsmCsRfMeasurement.h"
#include "messages/gsm/KCellularGsmGprsConfig.h"
#include "messages/gsm/KCellularGsmGrrEventMeasCr.h"
#include "messages/gsm/KCellularGsmIdleConfig.h"
#include "messages/gsm/KCellularGsmIdleScellMeasurement.h"
#include "messages/gsm/KCellularGsmScellInfo.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteCdrxConfig.h"
#include "messages/lte/KCellularLteComponentCarrierInfo.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "messages/lte/KCellularLteNbrInterRatCellMeas.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/lte/KCellularLteSecondaryCellMeasurements.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/lte/KCellularLteServingCellMeasurement.h"
#include "messages/lte/KCellularLteTxPower.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularGmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/nas/KCellularMmContext.h"
#include "messages/nas/KCellularSimCardFiles.h"
#include "messages/umts/KCellularWcdmaCellInfo.h"
#include "messages/umts/KCellularWcdmaNbrCellMeas.h"
#include "messages/umts/KCellularWcdmaRrcConfiguration.h"
#include "messages/umts/KCellularWcdmaRrcConnectionState.h"
#include "messages/umts/KCellularWcdmaScellMeasurement.h"
#include "messages/umts/KCellularWcdmaSelReselCellInfo.h"
#include "messages/umts/KCellularWcdmaTxPower.h"

namespace {

using namespace quorin;
using fuzz::promise;

Value joined(const Value& first, const Value& second) {
  List list;
  for (const Value& value : first.list()) list.append(value);
  for (const Value& value : second.list()) list.append(value);
  return Value(list);
}

bool isPacked(Kind kind) { return kind == Kind::packedUint32 || kind == Kind::packedSint32; }

/// How two messages of a class become one, field by field; null: the field is absent there.
using Rule = std::optional<Value> (*)(const Field& field, const Value* into, const Value* from);

Dictionary byRule(const MessageTable& table, const Dictionary& into, const Dictionary& from,
                  Rule rule) {
  Dictionary result;
  for (const Field& field : table.fields)
    if (auto value = rule(field, into.find(field.key), from.find(field.key)))
      result.append(Literal{field.key}, std::move(*value));
  return result;
}

std::optional<Value> later(const Value* into, const Value* from) {
  if (!from) from = into;
  return from ? std::optional(*from) : std::nullopt;
}

/// Nested messages merge, lists grow, all else is replaced by what is present.
std::optional<Value> merged(const Field& field, const Value* into, const Value* from) {
  if (!into || !from) return later(into, from);
  if (field.kind == Kind::message)
    return Value(byRule(*field.element, into->dictionary(), from->dictionary(), merged));
  if (field.kind == Kind::repeated || isPacked(field.kind)) return joined(*into, *from);
  return *from;
}

/// Everything is replaced by what is present, and packed numbers even by none.
std::optional<Value> copied(const Field& field, const Value* into, const Value* from) {
  return later(isPacked(field.kind) ? nullptr : into, from);
}

/// On the wire, one behind the other, lists grow and all else is replaced.
std::optional<Value> readBehind(const Field& field, const Value* into, const Value* from) {
  return field.kind == Kind::message ? later(into, from) : merged(field, into, from);
}

template <class M>
Ref<M> read(Bytes payload) {
  const auto message = make<M>();
  (void)message->initWithData(make<Data>(payload));
  return message;
}

template <class M>
void check(Bytes first, Bytes second) {
  const MessageTable& table = kTable<M>;
  const Dictionary into = read<M>(first)->dictionaryRepresentation();
  const auto source = read<M>(second);
  const Dictionary from = source->dictionaryRepresentation();

  const auto merging = read<M>(first);
  merging->mergeFrom(*source);
  promise(merging->dictionaryRepresentation() == byRule(table, into, from, merged),
          "a message merges field by field", table.name, into, from);

  const auto copying = read<M>(first);
  source->copyTo(*copying);
  promise(copying->dictionaryRepresentation() == byRule(table, into, from, copied),
          "a message is copied over another field by field", table.name, into, from);

  const auto copy = source->copyWithZone();
  promise(copy->isEqual(*source) && copy->hash() == source->hash(), "a copy is equal", table.name,
          from);
  copy->mergeFrom(*source);
  promise(source->dictionaryRepresentation() == from, "a copy shares nothing", table.name, from);

  PBDataWriter both;
  read<M>(first)->writeTo(both);
  source->writeTo(both);
  promise(
      read<M>(both.bytes())->dictionaryRepresentation() == byRule(table, into, from, readBehind),
      "two messages behind one another are read as one", table.name, into, from);
}

template <class... M>
constexpr std::array<void (*)(Bytes, Bytes), sizeof...(M)> kChecks = {check<M>...};

// In the catalogue's order.
constexpr auto& kAll = kChecks<
    KCellularLteRrcState, KCellularLteCdrxConfig, KCellularLteServingCellMeasurement, RxInfo,
    KCellularLteRsrpRsrqSinr, RsrpRsrqSinr, KCellularLteTxPower, TxPowerInfo,
    KCellularLteNbrEutraCellMeas, EgwErrcNbrEutraMeas, KCellularLteNbrInterRatCellMeas,
    EgwErrcNbrUtraMeas, EgwErrcNbrGeranMeas, KCellularLteSelReselCellInfo, NbrEutra,
    KCellularLteScellInfo, KCellularLteComponentCarrierInfo, KCellularLteCarrierAggregationStatus,
    SecondaryComponentCarrier, KCellularLteSecondaryCellMeasurements, SccRxMeasurement,
    KCellularWcdmaRrcConnectionState, KCellularWcdmaRrcConfiguration, KCellularWcdmaCellInfo,
    KCellularWcdmaScellMeasurement, KCellularWcdmaNbrCellMeas, UtraCellMeasResult,
    GsmCellMeasResult, LteCellMeasResult, KCellularWcdmaTxPower, KCellularWcdmaSelReselCellInfo,
    EutraFreqInfo, UtraFreqInfo, GsmFreqInfo, KCellularGsmScellInfo, KCellularGsmIdleConfig,
    KCellularGsmGprsConfig, KCellularGsmIdleScellMeasurement, KCellularGsmCsRfMeasurement,
    KCellularGsmGrrEventMeasCr, GsmNcellMeas, UmtsNcellMeas, LteNcellMeas, KCellularMmCommonInfo,
    Plmn, KCellularLocationAreaId, KCellularTrackingAreaId, RoutingAreaId, KCellularMmContext,
    KCellularGmmContext, KCellularEmmContext, Guti, KCellularActivatedBearerContexts, BearerContext,
    KCellularSimCardFiles, ElementaryFile>;

}  // namespace

// The first byte chooses the message class; two payloads follow.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const LogSink before = setSystemLogSink([](std::string_view) {});
  promise(kAll.size() == catalogue().size(), "every message class is here");
  fuzz::Input input(bytes, size);
  const auto check = kAll[input.choice(kAll.size())];
  const Bytes first = input.chunk();
  check(first, input.rest());
  return 0;
}

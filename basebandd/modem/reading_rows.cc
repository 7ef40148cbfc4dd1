#include "basebandd/modem/reading_rows.h"

#include "messages/gsm/GsmNcellMeas.h"
#include "messages/gsm/KCellularGsmIdleScellMeasurement.h"
#include "messages/gsm/KCellularGsmScellInfo.h"
#include "messages/gsm/LteNcellMeas.h"
#include "messages/gsm/UmtsNcellMeas.h"
#include "messages/lte/EgwErrcNbrEutraMeas.h"
#include "messages/lte/EgwErrcNbrGeranMeas.h"
#include "messages/lte/EgwErrcNbrUtraMeas.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/lte/RsrpRsrqSinr.h"
#include "messages/nas/BearerContext.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularGmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/nas/KCellularMmContext.h"
#include "messages/shared/RxInfo.h"
#include "messages/umts/GsmCellMeasResult.h"
#include "messages/umts/KCellularWcdmaCellInfo.h"
#include "messages/umts/LteCellMeasResult.h"
#include "messages/umts/UtraCellMeasResult.h"

namespace quorin::modem {

namespace {

template <class M>
Ref<AnyMessage> empty() {
  return quorin::make<M>();
}

// A setter, as a row holds it.
template <class M, class Number>
struct SetterOf {
  using Message = M;
  using Argument = Number;
};
template <class M, class T>
SetterOf<M, T> setterOf(void (M::*)(T));

template <auto setter>
void put(AnyMessage& message, std::int64_t number) {
  using Setter = decltype(setterOf(setter));
  (static_cast<typename Setter::Message&>(message).*
   setter)(static_cast<typename Setter::Argument>(number));
}

template <auto setter>
void putBytes(AnyMessage& message, const Ref<Data>& bytes) {
  using Setter = decltype(setterOf(setter));
  (static_cast<typename Setter::Message&>(message).*setter)(bytes);
}

constexpr ReadingRow kLteQualityRows[] = {
    {"rsrp", rsrp, put<&RsrpRsrqSinr::setRsrp0>},
    {"rsrq", rsrq, put<&RsrpRsrqSinr::setRsrq0>},
    {"snr", snrHalves, put<&RsrpRsrqSinr::setSinr0>},
};
constexpr ReadingRow kLteQualityCellRows[] = {
    {"physical-ci", physicalCellIdentity, put<&RsrpRsrqSinr::setPhyCellId>},
};
constexpr ReadingRow kUmtsReceiveRows[] = {
    {"rssi", rssi, put<&RxInfo::setRssi>},
};
constexpr ReadingRow kGsmIdleRows[] = {
    {"rssi", rssi, put<&KCellularGsmIdleScellMeasurement::setIdleRxlevDBm>},
};
constexpr ReadingRow kGsmIdleCellRows[] = {
    {"arfcn", arfcn, put<&KCellularGsmIdleScellMeasurement::setScellArfcn>},
};

constexpr ReadingRow kLteServingRows[] = {
    {"physical-ci", physicalCellIdentity, put<&KCellularLteScellInfo::setPhyCellId>},
    {"earfcn", earfcn, put<&KCellularLteScellInfo::setDlFreq>},
    {"earfcn", eutraUplink, put<&KCellularLteScellInfo::setUlFreq>},
    {"earfcn", eutraBand, put<&KCellularLteScellInfo::setFreqBandInd>},
    {"ci", cellIdentity28, put<&KCellularLteScellInfo::setCellId>},
    {"tac", areaCode, put<&KCellularLteScellInfo::setTrackingAreaCode>},
    {"operator-id", mobileCountryCode, put<&KCellularLteScellInfo::setSelPlmnMcc>},
    {"operator-id", mobileNetworkCode, put<&KCellularLteScellInfo::setSelPlmnMnc>},
    {"operator-id", networkCodeDigits, put<&KCellularLteScellInfo::setNumMncDigits>},
};
constexpr ReadingRow kUmtsServingRows[] = {
    {"uarfcn", uarfcn, put<&KCellularWcdmaCellInfo::setDlUarfcn>},
    {"uarfcn", utraSysBand, put<&KCellularWcdmaCellInfo::setWcdmaBand>},
    {"psc", scramblingCode, put<&KCellularWcdmaCellInfo::setPsc>},
    {"ci", cellIdentity28, put<&KCellularWcdmaCellInfo::setCellId>},
    {"lac", areaCode, put<&KCellularWcdmaCellInfo::setLac>},
    {"operator-id", mobileCountryCode, put<&KCellularWcdmaCellInfo::setMcc>},
    {"operator-id", mobileNetworkCode, put<&KCellularWcdmaCellInfo::setMnc>},
    {"operator-id", networkCodeDigits, put<&KCellularWcdmaCellInfo::setNumMncDigits>},
};
constexpr ReadingRow kGsmServingRows[] = {
    {"arfcn", arfcn, put<&KCellularGsmScellInfo::setArfcn>},
    {"arfcn", gsmSysBand, put<&KCellularGsmScellInfo::setGsmBand>},
    {"base-station-id", baseStationIdentityCode, put<&KCellularGsmScellInfo::setBsic>},
    {"ci", cellIdentity16, put<&KCellularGsmScellInfo::setCellId>},
    {"lac", areaCode, put<&KCellularGsmScellInfo::setLac>},
    {"operator-id", mobileCountryCode, put<&KCellularGsmScellInfo::setMcc>},
    {"operator-id", mobileNetworkCode, put<&KCellularGsmScellInfo::setMnc>},
    {"operator-id", networkCodeDigits, put<&KCellularGsmScellInfo::setNumMncDigits>},
};

constexpr ReadingRow kLteFromLteRows[] = {
    {"earfcn", earfcn, put<&EgwErrcNbrEutraMeas::setNbrEarfcn>},
    {"earfcn", eutraBand, put<&EgwErrcNbrEutraMeas::setFreqBandInd>},
    {"physical-ci", physicalCellIdentity, put<&EgwErrcNbrEutraMeas::setNbrPhysCellId>},
    {"rsrp", rsrp, put<&EgwErrcNbrEutraMeas::setNbrRsrp>},
    {"rsrq", rsrqHalves, put<&EgwErrcNbrEutraMeas::setNbrRsrq>},
};
constexpr ReadingRow kUmtsFromLteRows[] = {
    {"uarfcn", uarfcn, put<&EgwErrcNbrUtraMeas::setUarfcn>},
    {"psc", scramblingCode, put<&EgwErrcNbrUtraMeas::setPsc>},
    {"rscp", rscp, put<&EgwErrcNbrUtraMeas::setRscp>},
    {"ecio", ecnoIndex, put<&EgwErrcNbrUtraMeas::setEcno>},
};
constexpr ReadingRow kGsmFromLteRows[] = {
    {"arfcn", arfcn, put<&EgwErrcNbrGeranMeas::setArfcn>},
    {"base-station-id", baseStationIdentityCode, put<&EgwErrcNbrGeranMeas::setBsic>},
    {"rx-level", rxlev, put<&EgwErrcNbrGeranMeas::setRxlev>},
};
constexpr ReadingRow kUmtsFromUmtsRows[] = {
    {"uarfcn", uarfcn, put<&UtraCellMeasResult::setUarfcn>},
    {"uarfcn", utraBand, put<&UtraCellMeasResult::setBand>},
    {"psc", scramblingCode, put<&UtraCellMeasResult::setPsc>},
    {"ecio", ecnoIndex, put<&UtraCellMeasResult::setEcno>},
    {"rscp", rscp, put<&UtraCellMeasResult::setRscp>},
};
constexpr ReadingRow kGsmFromUmtsRows[] = {
    {"arfcn", arfcn, put<&GsmCellMeasResult::setArfcn>},
    {"base-station-id", baseStationIdentityCode, put<&GsmCellMeasResult::setBsic>},
    {"rx-level", rxlev, put<&GsmCellMeasResult::setRxlev>},
};
constexpr ReadingRow kLteFromUmtsRows[] = {
    {"earfcn", earfcn, put<&LteCellMeasResult::setEarfcn>},
    {"earfcn", eutraBand, put<&LteCellMeasResult::setEutraBand>},
    {"physical-ci", physicalCellIdentity, put<&LteCellMeasResult::setPhyCellId>},
    {"rsrp", rsrp, put<&LteCellMeasResult::setRsrp>},
    {"rsrq", rsrqHalves, put<&LteCellMeasResult::setRsrq>},
};
constexpr ReadingRow kGsmFromGsmRows[] = {
    {"operator-id", mobileCountryCode, put<&GsmNcellMeas::setMcc>},
    {"operator-id", mobileNetworkCode, put<&GsmNcellMeas::setMnc>},
    {"lac", areaCode, put<&GsmNcellMeas::setLac>},
    {"ci", cellIdentity16, put<&GsmNcellMeas::setCi>},
    {"base-station-id", baseStationIdentityCode, put<&GsmNcellMeas::setBsic>},
    {"arfcn", arfcn, put<&GsmNcellMeas::setArfcn>},
    {"rx-level", rxlev, put<&GsmNcellMeas::setRxlev>},
};
constexpr ReadingRow kUmtsFromGsmRows[] = {
    {"psc", scramblingCode, put<&UmtsNcellMeas::setCpichSc>},
    {"uarfcn", uarfcn, put<&UmtsNcellMeas::setDlUarfcn>},
    {"rscp", rscpIndex, put<&UmtsNcellMeas::setCpichRscp>},
    {"ecio", ecnoIndex, put<&UmtsNcellMeas::setCpichEcn0>},
};
constexpr ReadingRow kLteFromGsmRows[] = {
    {"physical-ci", physicalCellIdentity, put<&LteNcellMeas::setPhysicalCellId>},
    {"rsrp", rsrpIndex, put<&LteNcellMeas::setRsrp>},
    {"earfcn", earfcn, put<&LteNcellMeas::setEarfcn>},
    {"rsrq", rsrqIndex, put<&LteNcellMeas::setRsrq>},
};

constexpr ReadingRow kEmmRows[] = {
    {"RegistrationState", registrationStatus, put<&KCellularEmmContext::setRegStatus>},
    {"EpsUeModeOperation", ueModeOfOperation, put<&KCellularEmmContext::setUeOpMode>},
};
constexpr ReadingRow kMmRows[] = {
    {"RegistrationState", registrationStatus, put<&KCellularMmContext::setRegStatus>},
};
constexpr ReadingRow kGmmRows[] = {
    {"RegistrationState", registrationStatus, put<&KCellularGmmContext::setRegStatus>},
};
constexpr ReadingRow kTrackingAreaRows[] = {
    {"tac", areaCode, put<&KCellularTrackingAreaId::setTac>},
};
constexpr CodingRow kTrackingAreaCodings[] = {
    {"operator-id", encodedPlmn, putBytes<&KCellularTrackingAreaId::setEncodedPlmn>},
};
constexpr ReadingRow kLocationAreaRows[] = {
    {"lac", areaCode, put<&KCellularLocationAreaId::setLac>},
};
constexpr CodingRow kLocationAreaCodings[] = {
    {"operator-id", encodedPlmn, putBytes<&KCellularLocationAreaId::setEncodedPlmn>},
};
constexpr ReadingRow kRoutingAreaRows[] = {
    {"lac", areaCode, put<&RoutingAreaId::setLac>},
};
constexpr CodingRow kRoutingAreaCodings[] = {
    {"operator-id", encodedPlmn, putBytes<&RoutingAreaId::setEncodedPlmn>},
};

constexpr CodingRow kMmCommonCodings[] = {
    {"Imsi", imsiIdentity, putBytes<&KCellularMmCommonInfo::setImsi>},
};
constexpr ReadingRow kBearerRows[] = {
    {"ip-type", pdpType, put<&BearerContext::setPdpType>},
};

constexpr FileRow kFiles[] = {
    {"Imsi", 0x6F07, imsiFile},
    {"SimIdentifier", 0x2FE2, iccidFile},
    {"Gid1", 0x6F3E, plainBytes},
};

constexpr AddressRow kAddresses[] = {
    {"address", putBytes<&BearerContext::setPdpAddr>, nullptr},
    {"dns1", putBytes<&BearerContext::setPrimaryDnsAddr>, put<&BearerContext::setPrimaryDnsType>},
    {"dns2", putBytes<&BearerContext::setSecondaryDnsAddr>,
     put<&BearerContext::setSecondaryDnsType>},
};

}  // namespace

constinit const ReadingTable kLteQuality = {empty<RsrpRsrqSinr>, kLteQualityRows};
constinit const ReadingTable kLteQualityCell = {empty<RsrpRsrqSinr>, kLteQualityCellRows};
constinit const ReadingTable kUmtsReceive = {empty<RxInfo>, kUmtsReceiveRows};
constinit const ReadingTable kGsmIdle = {empty<KCellularGsmIdleScellMeasurement>, kGsmIdleRows};
constinit const ReadingTable kGsmIdleCell = {empty<KCellularGsmIdleScellMeasurement>,
                                             kGsmIdleCellRows};
constinit const ReadingTable kLteServing = {empty<KCellularLteScellInfo>, kLteServingRows};
constinit const ReadingTable kUmtsServing = {empty<KCellularWcdmaCellInfo>, kUmtsServingRows};
constinit const ReadingTable kGsmServing = {empty<KCellularGsmScellInfo>, kGsmServingRows};
constinit const ReadingTable kLteFromLte = {empty<EgwErrcNbrEutraMeas>, kLteFromLteRows};
constinit const ReadingTable kUmtsFromLte = {empty<EgwErrcNbrUtraMeas>, kUmtsFromLteRows};
constinit const ReadingTable kGsmFromLte = {empty<EgwErrcNbrGeranMeas>, kGsmFromLteRows};
constinit const ReadingTable kUmtsFromUmts = {empty<UtraCellMeasResult>, kUmtsFromUmtsRows};
constinit const ReadingTable kGsmFromUmts = {empty<GsmCellMeasResult>, kGsmFromUmtsRows};
constinit const ReadingTable kLteFromUmts = {empty<LteCellMeasResult>, kLteFromUmtsRows};
constinit const ReadingTable kGsmFromGsm = {empty<GsmNcellMeas>, kGsmFromGsmRows};
constinit const ReadingTable kUmtsFromGsm = {empty<UmtsNcellMeas>, kUmtsFromGsmRows};
constinit const ReadingTable kLteFromGsm = {empty<LteNcellMeas>, kLteFromGsmRows};
constinit const ReadingTable kEmm = {empty<KCellularEmmContext>, kEmmRows};
constinit const ReadingTable kMm = {empty<KCellularMmContext>, kMmRows};
constinit const ReadingTable kGmm = {empty<KCellularGmmContext>, kGmmRows};
constinit const ReadingTable kTrackingArea = {empty<KCellularTrackingAreaId>, kTrackingAreaRows,
                                              kTrackingAreaCodings};
constinit const ReadingTable kLocationArea = {empty<KCellularLocationAreaId>, kLocationAreaRows,
                                              kLocationAreaCodings};
constinit const ReadingTable kRoutingArea = {empty<RoutingAreaId>, kRoutingAreaRows,
                                             kRoutingAreaCodings};
constinit const ReadingTable kMmCommon = {empty<KCellularMmCommonInfo>, {}, kMmCommonCodings};
constinit const ReadingTable kBearer = {empty<BearerContext>, kBearerRows};

std::span<const ReadingTable* const> readingTables() {
  static constexpr const ReadingTable* kAll[] = {
      &kLteQuality,   &kLteQualityCell, &kUmtsReceive, &kGsmIdle,     &kGsmIdleCell,
      &kLteServing,   &kUmtsServing,    &kGsmServing,  &kLteFromLte,  &kUmtsFromLte,
      &kGsmFromLte,   &kUmtsFromUmts,   &kGsmFromUmts, &kLteFromUmts, &kGsmFromGsm,
      &kUmtsFromGsm,  &kLteFromGsm,     &kEmm,         &kMm,          &kGmm,
      &kTrackingArea, &kLocationArea,   &kRoutingArea, &kMmCommon,    &kBearer};
  return kAll;
}

std::span<const FileRow> fileRows() { return kFiles; }
std::span<const AddressRow> addressRows() { return kAddresses; }

bool ReadingTable::fill(AnyMessage& message, const Readings& readings) const {
  bool isFilled = false;
  for (const ReadingRow& row : rows)
    if (const auto number = row.convert(at(readings, row.reading))) {
      row.set(message, *number);
      isFilled = true;
    }
  for (const CodingRow& row : codings)
    if (auto bytes = row.code(at(readings, row.reading))) {
      row.set(message, quorin::make<Data>(std::move(*bytes)));
      isFilled = true;
    }
  return isFilled;
}

}  // namespace quorin::modem

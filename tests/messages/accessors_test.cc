#include <functional>

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
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

template <class T>
constexpr T kSample = static_cast<T>(~T{0} - T{4});
template <>
constexpr bool kSample<bool> = true;

/// The bits of all scalar fields but one must stay as they were.
void expectOnly(const AnyMessage& message, std::uint32_t number, bool present) {
  for (std::uint32_t other = 0; other < kFieldNumberLimit; ++other)
    EXPECT_EQ(message.has(other), present && other == number) << other;
}

template <class M, class T>
void checkScalar(std::uint32_t number, bool zeroWhileAbsent, T (M::*get)() const,
                 void (M::*set)(T), bool (M::*has)() const, void (M::*setHas)(bool)) {
  M message;
  EXPECT_FALSE((message.*has)());
  EXPECT_EQ((message.*get)(), T{});
  (message.*set)(kSample<T>);
  EXPECT_EQ((message.*get)(), kSample<T>);
  EXPECT_TRUE((message.*has)());
  expectOnly(message, number, true);
  (message.*setHas)(false);
  EXPECT_FALSE((message.*has)());
  expectOnly(message, number, false);
  EXPECT_EQ((message.*get)(), zeroWhileAbsent ? T{} : kSample<T>);
  (message.*setHas)(true);
  EXPECT_EQ((message.*get)(), kSample<T>);
}

template <class M, class T>
void checkObject(const std::function<Ref<T>(const M&)>& get,
                 const std::function<void(M&, Ref<T>)>& set, bool (M::*has)() const,
                 const Ref<T>& object) {
  M message;
  EXPECT_FALSE((message.*has)());
  EXPECT_FALSE(get(message));
  set(message, object);
  EXPECT_TRUE((message.*has)());
  EXPECT_EQ(get(message).get(), object.get()) << "the same object, not a copy";
  set(message, nullptr);
  EXPECT_FALSE((message.*has)());
}

template <class M, class T>
void checkRepeated(Ref<MessageArray> (M::*all)() const, void (M::*setAll)(Ref<MessageArray>),
                   void (M::*clear)(), void (M::*add)(const Ref<T>&),
                   std::size_t (M::*count)() const, Ref<T> (M::*at)(std::size_t) const) {
  M message;
  EXPECT_FALSE((message.*all)()) << "made on first use";
  EXPECT_EQ((message.*count)(), 0U);
  const auto first = make<T>();
  const auto second = make<T>();
  (message.*add)(first);
  (message.*add)(second);
  EXPECT_EQ((message.*count)(), 2U);
  EXPECT_EQ((message.*at)(0).get(), first.get());
  EXPECT_EQ((message.*at)(1).get(), second.get());
  M other;
  (other.*setAll)((message.*all)());
  EXPECT_EQ((other.*all)().get(), (message.*all)().get()) << "the same array, not a copy";
  (message.*clear)();
  EXPECT_EQ((message.*count)(), 0U);
  EXPECT_TRUE((message.*all)()) << "emptied, not dropped";
}

template <class M, class T>
void checkPacked(const T* (M::*all)() const, void (M::*setAll)(const T*, std::size_t),
                 void (M::*clear)(), void (M::*add)(T), std::size_t (M::*count)() const,
                 T (M::*at)(std::size_t) const) {
  M message;
  EXPECT_EQ((message.*count)(), 0U);
  (message.*add)(7);
  (message.*add)(kSample<T>);
  EXPECT_EQ((message.*count)(), 2U);
  EXPECT_EQ((message.*at)(0), T{7});
  EXPECT_EQ((message.*all)()[1], kSample<T>);
  const T values[] = {1, 2, 3};
  (message.*setAll)(values, 3);
  EXPECT_EQ((message.*count)(), 3U);
  EXPECT_EQ((message.*at)(2), T{3});
  (message.*clear)();
  EXPECT_EQ((message.*count)(), 0U);
}

#define SCALAR_(M, n, x, X, zero) \
  {#M "." #x, [] { checkScalar(n, zero, &M::x, &M::set##X, &M::has##X, &M::setHas##X); }},
#define SCALAR(M, n, x, X) SCALAR_(M, n, x, X, false)
#define ENUM(M, n, x, X) SCALAR_(M, n, x, X, true)
#define OBJECT(M, n, x, X, T)                                                  \
  {#M "." #x, [] {                                                             \
     checkObject<M, T>([](const M& m) { return m.x(); },                       \
                       [](M& m, Ref<T> object) { m.set##X(object); }, &M::has##X, sample<T>()); \
   }},
#define REPEATED(M, n, one, One, many, Many, T)                                                  \
  {#M "." #many, [] {                                                                            \
     checkRepeated<M, T>(&M::many, &M::set##Many, &M::clear##Many, &M::add##One, &M::many##Count, \
                         &M::one##AtIndex);                                                      \
   }},
#define PACKED(M, n, one, One, many, Many)                                                       \
  {#M "." #many, [] {                                                                            \
     checkPacked(&M::many, &M::set##Many, &M::clear##Many, &M::add##One, &M::many##Count,        \
                 &M::one##AtIndex);                                                              \
   }},

template <class T>
Ref<T> sample() {
  return make<T>();
}
template <>
Ref<Data> sample<Data>() {
  return data("01 02");
}
template <>
Ref<String> sample<String>() {
  return make<String>("text");
}

struct Accessors {
  const char* field;
  void (*check)();
};

// clang-format off
const Accessors kAccessors[] = {
  SCALAR(KCellularLteRrcState, 1, timestamp, Timestamp)
  ENUM(KCellularLteRrcState, 2, state, State)
  ENUM(KCellularLteRrcState, 3, prevState, PrevState)
  SCALAR(KCellularLteRrcState, 4, prevStateDurMs, PrevStateDurMs)
  ENUM(KCellularLteRrcState, 5, cause, Cause)
  SCALAR(KCellularLteCdrxConfig, 1, timestamp, Timestamp)
  SCALAR(KCellularLteCdrxConfig, 2, cellStatus, CellStatus)
  SCALAR(KCellularLteCdrxConfig, 3, onDurationMs, OnDurationMs)
  SCALAR(KCellularLteCdrxConfig, 4, drxInactivityMs, DrxInactivityMs)
  SCALAR(KCellularLteCdrxConfig, 5, drxRetxTimerMs, DrxRetxTimerMs)
  SCALAR(KCellularLteCdrxConfig, 7, longDrxCycleMs, LongDrxCycleMs)
  SCALAR(KCellularLteCdrxConfig, 10, shortDrxCycleMs, ShortDrxCycleMs)
  SCALAR(KCellularLteCdrxConfig, 11, drxShortCycleNum, DrxShortCycleNum)
  ENUM(KCellularLteCdrxConfig, 12, rrcState, RrcState)
  SCALAR(KCellularLteCdrxConfig, 13, cdrxConfigStatus, CdrxConfigStatus)
  SCALAR(KCellularLteCdrxConfig, 14, transmissionMode, TransmissionMode)
  SCALAR(KCellularLteServingCellMeasurement, 1, timestamp, Timestamp)
  SCALAR(KCellularLteServingCellMeasurement, 2, isConnectedMode, IsConnectedMode)
  REPEATED(KCellularLteServingCellMeasurement, 3, rxInfo, RxInfo, rxInfos, RxInfos, RxInfo)
  SCALAR(RxInfo, 1, rssi, Rssi)
  SCALAR(RxInfo, 2, rsrpRange, RsrpRange)
  SCALAR(RxInfo, 3, rsrqRange, RsrqRange)
  SCALAR(RxInfo, 4, snr, Snr)
  SCALAR(KCellularLteRsrpRsrqSinr, 1, timestamp, Timestamp)
  OBJECT(KCellularLteRsrpRsrqSinr, 3, callId, CallId, String)
  SCALAR(KCellularLteRsrpRsrqSinr, 6, lastXSeconds, LastXSeconds)
  SCALAR(KCellularLteRsrpRsrqSinr, 7, lastYSamples, LastYSamples)
  SCALAR(KCellularLteRsrpRsrqSinr, 8, samplePeriodMs, SamplePeriodMs)
  SCALAR(KCellularLteRsrpRsrqSinr, 10, durationMs, DurationMs)
  SCALAR(KCellularLteRsrpRsrqSinr, 11, numSamples, NumSamples)
  OBJECT(KCellularLteRsrpRsrqSinr, 14, avgValues, AvgValues, RsrpRsrqSinr)
  REPEATED(KCellularLteRsrpRsrqSinr, 15, instValues, InstValues, instValues, InstValues, RsrpRsrqSinr)
  SCALAR(RsrpRsrqSinr, 1, phyCellId, PhyCellId)
  SCALAR(RsrpRsrqSinr, 4, rsrp0, Rsrp0)
  SCALAR(RsrpRsrqSinr, 5, rsrp1, Rsrp1)
  SCALAR(RsrpRsrqSinr, 7, rsrq0, Rsrq0)
  SCALAR(RsrpRsrqSinr, 8, rsrq1, Rsrq1)
  SCALAR(RsrpRsrqSinr, 10, sinr0, Sinr0)
  SCALAR(RsrpRsrqSinr, 11, sinr1, Sinr1)
  SCALAR(KCellularLteTxPower, 1, timestamp, Timestamp)
  REPEATED(KCellularLteTxPower, 2, txPowerInfo, TxPowerInfo, txPowerInfos, TxPowerInfos, TxPowerInfo)
  SCALAR(TxPowerInfo, 1, pucchTxPower, PucchTxPower)
  SCALAR(TxPowerInfo, 2, puschTxPower, PuschTxPower)
  SCALAR(TxPowerInfo, 3, subframeIndex, SubframeIndex)
  SCALAR(KCellularLteNbrEutraCellMeas, 1, timestamp, Timestamp)
  REPEATED(KCellularLteNbrEutraCellMeas, 2, measNbrEutra, MeasNbrEutra, measNbrEutras, MeasNbrEutras, EgwErrcNbrEutraMeas)
  SCALAR(EgwErrcNbrEutraMeas, 1, nbrEarfcn, NbrEarfcn)
  SCALAR(EgwErrcNbrEutraMeas, 2, nbrPhysCellId, NbrPhysCellId)
  SCALAR(EgwErrcNbrEutraMeas, 3, freqBandInd, FreqBandInd)
  SCALAR(EgwErrcNbrEutraMeas, 4, nbrRsrp, NbrRsrp)
  SCALAR(EgwErrcNbrEutraMeas, 5, nbrRsrq, NbrRsrq)
  SCALAR(KCellularLteNbrInterRatCellMeas, 1, timestamp, Timestamp)
  REPEATED(KCellularLteNbrInterRatCellMeas, 2, measNbrUtra, MeasNbrUtra, measNbrUtras, MeasNbrUtras, EgwErrcNbrUtraMeas)
  REPEATED(KCellularLteNbrInterRatCellMeas, 3, measNbrGeran, MeasNbrGeran, measNbrGerans, MeasNbrGerans, EgwErrcNbrGeranMeas)
  SCALAR(EgwErrcNbrUtraMeas, 1, uarfcn, Uarfcn)
  SCALAR(EgwErrcNbrUtraMeas, 2, psc, Psc)
  SCALAR(EgwErrcNbrUtraMeas, 3, rscp, Rscp)
  SCALAR(EgwErrcNbrUtraMeas, 4, ecno, Ecno)
  SCALAR(EgwErrcNbrGeranMeas, 1, arfcn, Arfcn)
  SCALAR(EgwErrcNbrGeranMeas, 2, bsic, Bsic)
  SCALAR(EgwErrcNbrGeranMeas, 3, rxlev, Rxlev)
  SCALAR(KCellularLteSelReselCellInfo, 1, timestamp, Timestamp)
  PACKED(KCellularLteSelReselCellInfo, 2, multiBandInfo, MultiBandInfo, multiBandInfos, MultiBandInfos)
  SCALAR(KCellularLteSelReselCellInfo, 3, imsEmergencySupport, ImsEmergencySupport)
  SCALAR(KCellularLteSelReselCellInfo, 4, acBarringForEmergency, AcBarringForEmergency)
  SCALAR(KCellularLteSelReselCellInfo, 5, moSignallingAcBarringFactor, MoSignallingAcBarringFactor)
  SCALAR(KCellularLteSelReselCellInfo, 6, moSignallingAcBarringTime, MoSignallingAcBarringTime)
  SCALAR(KCellularLteSelReselCellInfo, 7, moSignallingAcBarringForSpecialAc, MoSignallingAcBarringForSpecialAc)
  SCALAR(KCellularLteSelReselCellInfo, 8, moDataAcBarringFactor, MoDataAcBarringFactor)
  SCALAR(KCellularLteSelReselCellInfo, 9, moDataAcBarringTime, MoDataAcBarringTime)
  SCALAR(KCellularLteSelReselCellInfo, 10, moDataAcBarringForSpecialAc, MoDataAcBarringForSpecialAc)
  SCALAR(KCellularLteSelReselCellInfo, 11, qRxLevMin, QRxLevMin)
  SCALAR(KCellularLteSelReselCellInfo, 12, qQualMin, QQualMin)
  SCALAR(KCellularLteSelReselCellInfo, 13, qHyst, QHyst)
  SCALAR(KCellularLteSelReselCellInfo, 14, sNonIntraSearchP, SNonIntraSearchP)
  SCALAR(KCellularLteSelReselCellInfo, 15, sNonIntraSearchQ, SNonIntraSearchQ)
  SCALAR(KCellularLteSelReselCellInfo, 16, sIntraSearchP, SIntraSearchP)
  SCALAR(KCellularLteSelReselCellInfo, 17, sIntraSearchQ, SIntraSearchQ)
  SCALAR(KCellularLteSelReselCellInfo, 18, threshServingLowP, ThreshServingLowP)
  SCALAR(KCellularLteSelReselCellInfo, 19, threshServingLowQ, ThreshServingLowQ)
  SCALAR(KCellularLteSelReselCellInfo, 20, priorityOperatingFreq, PriorityOperatingFreq)
  REPEATED(KCellularLteSelReselCellInfo, 21, nbrEutra, NbrEutra, nbrEutras, NbrEutras, NbrEutra)
  SCALAR(NbrEutra, 1, earfcn, Earfcn)
  SCALAR(NbrEutra, 2, qRxlevMin, QRxlevMin)
  SCALAR(NbrEutra, 3, qQualMin, QQualMin)
  SCALAR(NbrEutra, 4, qOffset, QOffset)
  SCALAR(NbrEutra, 5, pmax, Pmax)
  SCALAR(NbrEutra, 6, dlBw, DlBw)
  SCALAR(NbrEutra, 7, thresXHighP, ThresXHighP)
  SCALAR(NbrEutra, 8, thresXLowP, ThresXLowP)
  SCALAR(NbrEutra, 9, thresXHighQ, ThresXHighQ)
  SCALAR(NbrEutra, 10, thresXLowQ, ThresXLowQ)
  SCALAR(NbrEutra, 11, priority, Priority)
  ENUM(NbrEutra, 12, frameType, FrameType)
  SCALAR(NbrEutra, 13, band, Band)
  SCALAR(KCellularLteScellInfo, 1, timestamp, Timestamp)
  SCALAR(KCellularLteScellInfo, 2, phyCellId, PhyCellId)
  SCALAR(KCellularLteScellInfo, 3, dlFreq, DlFreq)
  SCALAR(KCellularLteScellInfo, 4, ulFreq, UlFreq)
  SCALAR(KCellularLteScellInfo, 5, dlBw, DlBw)
  SCALAR(KCellularLteScellInfo, 6, ulBw, UlBw)
  SCALAR(KCellularLteScellInfo, 7, cellId, CellId)
  SCALAR(KCellularLteScellInfo, 8, freqBandInd, FreqBandInd)
  SCALAR(KCellularLteScellInfo, 9, trackingAreaCode, TrackingAreaCode)
  SCALAR(KCellularLteScellInfo, 10, numMncDigits, NumMncDigits)
  SCALAR(KCellularLteScellInfo, 11, selPlmnMcc, SelPlmnMcc)
  SCALAR(KCellularLteScellInfo, 12, selPlmnMnc, SelPlmnMnc)
  SCALAR(KCellularLteScellInfo, 14, tddSfAssignment, TddSfAssignment)
  SCALAR(KCellularLteScellInfo, 15, tddSsfPatterns, TddSsfPatterns)
  SCALAR(KCellularLteComponentCarrierInfo, 1, timestamp, Timestamp)
  SCALAR(KCellularLteComponentCarrierInfo, 2, pccEarfcn, PccEarfcn)
  SCALAR(KCellularLteComponentCarrierInfo, 3, scc0Earfcn, Scc0Earfcn)
  SCALAR(KCellularLteComponentCarrierInfo, 4, scc1Earfcn, Scc1Earfcn)
  SCALAR(KCellularLteComponentCarrierInfo, 5, pccBandwidth, PccBandwidth)
  SCALAR(KCellularLteComponentCarrierInfo, 6, scc0Bandwidth, Scc0Bandwidth)
  SCALAR(KCellularLteComponentCarrierInfo, 7, scc1Bandwidth, Scc1Bandwidth)
  SCALAR(KCellularLteCarrierAggregationStatus, 1, timestamp, Timestamp)
  REPEATED(KCellularLteCarrierAggregationStatus, 2, sccList, SccList, sccLists, SccLists, SecondaryComponentCarrier)
  SCALAR(SecondaryComponentCarrier, 1, index, Index)
  ENUM(SecondaryComponentCarrier, 2, state, State)
  SCALAR(SecondaryComponentCarrier, 3, pci, Pci)
  SCALAR(SecondaryComponentCarrier, 4, dlEarfcn, DlEarfcn)
  SCALAR(SecondaryComponentCarrier, 5, dlRfBand, DlRfBand)
  SCALAR(SecondaryComponentCarrier, 6, dlBandwidth, DlBandwidth)
  SCALAR(SecondaryComponentCarrier, 7, hasUplink, HasUplink)
  SCALAR(SecondaryComponentCarrier, 8, ulEarfcn, UlEarfcn)
  SCALAR(SecondaryComponentCarrier, 9, ulRfBand, UlRfBand)
  SCALAR(SecondaryComponentCarrier, 10, ulBandwidth, UlBandwidth)
  SCALAR(SecondaryComponentCarrier, 11, rsrp, Rsrp)
  SCALAR(SecondaryComponentCarrier, 12, rsrq, Rsrq)
  SCALAR(SecondaryComponentCarrier, 13, snr, Snr)
  SCALAR(SecondaryComponentCarrier, 14, rssi, Rssi)
  SCALAR(KCellularLteSecondaryCellMeasurements, 1, timestamp, Timestamp)
  REPEATED(KCellularLteSecondaryCellMeasurements, 2, sccRxMeasurement, SccRxMeasurement, sccRxMeasurements, SccRxMeasurements, SccRxMeasurement)
  SCALAR(SccRxMeasurement, 1, index, Index)
  SCALAR(SccRxMeasurement, 2, rsrp, Rsrp)
  SCALAR(SccRxMeasurement, 3, rsrq, Rsrq)
  SCALAR(SccRxMeasurement, 4, snr, Snr)
  SCALAR(SccRxMeasurement, 5, rssi, Rssi)
  SCALAR(KCellularWcdmaRrcConnectionState, 1, timestamp, Timestamp)
  ENUM(KCellularWcdmaRrcConnectionState, 2, state, State)
  ENUM(KCellularWcdmaRrcConnectionState, 3, establishmentCause, EstablishmentCause)
  ENUM(KCellularWcdmaRrcConnectionState, 4, releaseCause, ReleaseCause)
  SCALAR(KCellularWcdmaRrcConfiguration, 1, timestamp, Timestamp)
  SCALAR(KCellularWcdmaRrcConfiguration, 2, drxCycleLengthMs, DrxCycleLengthMs)
  SCALAR(KCellularWcdmaRrcConfiguration, 3, isMimoConfigured, IsMimoConfigured)
  SCALAR(KCellularWcdmaRrcConfiguration, 4, isDcConfigured, IsDcConfigured)
  SCALAR(KCellularWcdmaCellInfo, 1, timestamp, Timestamp)
  SCALAR(KCellularWcdmaCellInfo, 4, mcc, Mcc)
  SCALAR(KCellularWcdmaCellInfo, 5, mnc, Mnc)
  SCALAR(KCellularWcdmaCellInfo, 6, lac, Lac)
  SCALAR(KCellularWcdmaCellInfo, 7, cellId, CellId)
  ENUM(KCellularWcdmaCellInfo, 8, wcdmaBand, WcdmaBand)
  SCALAR(KCellularWcdmaCellInfo, 9, dlUarfcn, DlUarfcn)
  SCALAR(KCellularWcdmaCellInfo, 10, psc, Psc)
  SCALAR(KCellularWcdmaCellInfo, 13, numMncDigits, NumMncDigits)
  ENUM(KCellularWcdmaCellInfo, 14, hspa, Hspa)
  SCALAR(KCellularWcdmaScellMeasurement, 1, timestamp, Timestamp)
  SCALAR(KCellularWcdmaScellMeasurement, 2, connectedMode, ConnectedMode)
  REPEATED(KCellularWcdmaScellMeasurement, 3, rxInfo, RxInfo, rxInfos, RxInfos, RxInfo)
  SCALAR(KCellularWcdmaNbrCellMeas, 1, timestamp, Timestamp)
  REPEATED(KCellularWcdmaNbrCellMeas, 2, measUtraResult, MeasUtraResult, measUtraResults, MeasUtraResults, UtraCellMeasResult)
  REPEATED(KCellularWcdmaNbrCellMeas, 3, measGsmResult, MeasGsmResult, measGsmResults, MeasGsmResults, GsmCellMeasResult)
  REPEATED(KCellularWcdmaNbrCellMeas, 4, measLteResult, MeasLteResult, measLteResults, MeasLteResults, LteCellMeasResult)
  SCALAR(UtraCellMeasResult, 1, uarfcn, Uarfcn)
  SCALAR(UtraCellMeasResult, 2, band, Band)
  SCALAR(UtraCellMeasResult, 3, psc, Psc)
  SCALAR(UtraCellMeasResult, 4, ecno, Ecno)
  SCALAR(UtraCellMeasResult, 5, rscp, Rscp)
  SCALAR(GsmCellMeasResult, 1, arfcn, Arfcn)
  SCALAR(GsmCellMeasResult, 2, bsic, Bsic)
  SCALAR(GsmCellMeasResult, 3, rxlev, Rxlev)
  SCALAR(LteCellMeasResult, 1, earfcn, Earfcn)
  SCALAR(LteCellMeasResult, 2, phyCellId, PhyCellId)
  SCALAR(LteCellMeasResult, 3, eutraBand, EutraBand)
  SCALAR(LteCellMeasResult, 4, rsrp, Rsrp)
  SCALAR(LteCellMeasResult, 5, rsrq, Rsrq)
  SCALAR(KCellularWcdmaTxPower, 1, timestamp, Timestamp)
  REPEATED(KCellularWcdmaTxPower, 2, txPowerInfo, TxPowerInfo, txPowerInfos, TxPowerInfos, TxPowerInfo)
  SCALAR(KCellularWcdmaSelReselCellInfo, 1, timestamp, Timestamp)
  SCALAR(KCellularWcdmaSelReselCellInfo, 2, hsdpaCapable, HsdpaCapable)
  SCALAR(KCellularWcdmaSelReselCellInfo, 3, edchCapable, EdchCapable)
  ENUM(KCellularWcdmaSelReselCellInfo, 4, duplexMode, DuplexMode)
  PACKED(KCellularWcdmaSelReselCellInfo, 5, multiBandInfo, MultiBandInfo, multiBandInfos, MultiBandInfos)
  SCALAR(KCellularWcdmaSelReselCellInfo, 6, imsEmergencySupport, ImsEmergencySupport)
  SCALAR(KCellularWcdmaSelReselCellInfo, 7, cellBarred, CellBarred)
  SCALAR(KCellularWcdmaSelReselCellInfo, 8, fachMeasOccInfoPresent, FachMeasOccInfoPresent)
  SCALAR(KCellularWcdmaSelReselCellInfo, 9, sRxlev, SRxlev)
  SCALAR(KCellularWcdmaSelReselCellInfo, 10, sQual, SQual)
  SCALAR(KCellularWcdmaSelReselCellInfo, 11, sIntrasearch, SIntrasearch)
  SCALAR(KCellularWcdmaSelReselCellInfo, 12, sIntersearch, SIntersearch)
  SCALAR(KCellularWcdmaSelReselCellInfo, 13, sSearchRat, SSearchRat)
  SCALAR(KCellularWcdmaSelReselCellInfo, 21, sCellPrio, SCellPrio)
  REPEATED(KCellularWcdmaSelReselCellInfo, 22, eutraPrioInfo, EutraPrioInfo, eutraPrioInfos, EutraPrioInfos, EutraFreqInfo)
  REPEATED(KCellularWcdmaSelReselCellInfo, 23, utraPrioInfo, UtraPrioInfo, utraPrioInfos, UtraPrioInfos, UtraFreqInfo)
  REPEATED(KCellularWcdmaSelReselCellInfo, 24, gsmPrioInfo, GsmPrioInfo, gsmPrioInfos, GsmPrioInfos, GsmFreqInfo)
  SCALAR(EutraFreqInfo, 1, earfcn, Earfcn)
  SCALAR(EutraFreqInfo, 2, prio, Prio)
  SCALAR(UtraFreqInfo, 1, uarfcn, Uarfcn)
  SCALAR(UtraFreqInfo, 2, prio, Prio)
  SCALAR(GsmFreqInfo, 1, arfcn, Arfcn)
  SCALAR(GsmFreqInfo, 2, prio, Prio)
  SCALAR(KCellularGsmScellInfo, 1, timestamp, Timestamp)
  SCALAR(KCellularGsmScellInfo, 4, mcc, Mcc)
  SCALAR(KCellularGsmScellInfo, 5, mnc, Mnc)
  SCALAR(KCellularGsmScellInfo, 6, lac, Lac)
  SCALAR(KCellularGsmScellInfo, 7, cellId, CellId)
  ENUM(KCellularGsmScellInfo, 8, gsmBand, GsmBand)
  SCALAR(KCellularGsmScellInfo, 9, arfcn, Arfcn)
  SCALAR(KCellularGsmScellInfo, 10, bsic, Bsic)
  ENUM(KCellularGsmScellInfo, 11, state, State)
  SCALAR(KCellularGsmScellInfo, 13, numMncDigits, NumMncDigits)
  SCALAR(KCellularGsmIdleConfig, 1, timestamp, Timestamp)
  SCALAR(KCellularGsmIdleConfig, 2, arfcnBcch, ArfcnBcch)
  SCALAR(KCellularGsmIdleConfig, 3, mcc, Mcc)
  SCALAR(KCellularGsmIdleConfig, 4, mnc, Mnc)
  SCALAR(KCellularGsmIdleConfig, 5, lac, Lac)
  SCALAR(KCellularGsmIdleConfig, 6, ci, Ci)
  SCALAR(KCellularGsmIdleConfig, 7, bsic, Bsic)
  SCALAR(KCellularGsmIdleConfig, 8, dtxFromBs, DtxFromBs)
  SCALAR(KCellularGsmIdleConfig, 9, radioLinkTimeout, RadioLinkTimeout)
  SCALAR(KCellularGsmIdleConfig, 10, multibRep, MultibRep)
  SCALAR(KCellularGsmIdleConfig, 11, gsmBand, GsmBand)
  SCALAR(KCellularGsmIdleConfig, 12, accessTech, AccessTech)
  SCALAR(KCellularGsmIdleConfig, 13, typeOfCurChan, TypeOfCurChan)
  SCALAR(KCellularGsmIdleConfig, 14, msTxpwr, MsTxpwr)
  SCALAR(KCellularGsmIdleConfig, 15, rxAccMin, RxAccMin)
  SCALAR(KCellularGsmIdleConfig, 16, cbq, Cbq)
  SCALAR(KCellularGsmIdleConfig, 17, cba, Cba)
  SCALAR(KCellularGsmIdleConfig, 18, c2Valid, C2Valid)
  SCALAR(KCellularGsmIdleConfig, 19, crOffset, CrOffset)
  SCALAR(KCellularGsmIdleConfig, 20, tmpOffset, TmpOffset)
  SCALAR(KCellularGsmIdleConfig, 21, penaltyT, PenaltyT)
  SCALAR(KCellularGsmIdleConfig, 22, t3212, T3212)
  SCALAR(KCellularGsmIdleConfig, 23, acc, Acc)
  SCALAR(KCellularGsmIdleConfig, 24, bsPaMfrms, BsPaMfrms)
  SCALAR(KCellularGsmIdleConfig, 25, csPagemode, CsPagemode)
  SCALAR(KCellularGsmIdleConfig, 26, maxRetransCs, MaxRetransCs)
  SCALAR(KCellularGsmIdleConfig, 27, emergCallAllowed, EmergCallAllowed)
  SCALAR(KCellularGsmIdleConfig, 28, attachAllowed, AttachAllowed)
  SCALAR(KCellularGsmIdleConfig, 29, halfRateSupported, HalfRateSupported)
  SCALAR(KCellularGsmIdleConfig, 30, si78Broadcast, Si78Broadcast)
  SCALAR(KCellularGsmIdleConfig, 31, cbchSupported, CbchSupported)
  SCALAR(KCellularGsmIdleConfig, 32, reestAllowed, ReestAllowed)
  SCALAR(KCellularGsmIdleConfig, 33, ecsc, Ecsc)
  SCALAR(KCellularGsmIdleConfig, 34, si2TerNeeded, Si2TerNeeded)
  SCALAR(KCellularGsmGprsConfig, 1, timestamp, Timestamp)
  SCALAR(KCellularGsmGprsConfig, 2, gprsSup, GprsSup)
  SCALAR(KCellularGsmGprsConfig, 3, rac, Rac)
  SCALAR(KCellularGsmGprsConfig, 4, spPgCy, SpPgCy)
  SCALAR(KCellularGsmGprsConfig, 5, nco, Nco)
  SCALAR(KCellularGsmGprsConfig, 6, nom, Nom)
  SCALAR(KCellularGsmGprsConfig, 7, crHyst, CrHyst)
  SCALAR(KCellularGsmGprsConfig, 8, accThr, AccThr)
  SCALAR(KCellularGsmGprsConfig, 9, extUplTbfSupported, ExtUplTbfSupported)
  SCALAR(KCellularGsmGprsConfig, 10, priorityClass, PriorityClass)
  SCALAR(KCellularGsmGprsConfig, 11, cellBarAccess2, CellBarAccess2)
  SCALAR(KCellularGsmIdleScellMeasurement, 1, timestamp, Timestamp)
  SCALAR(KCellularGsmIdleScellMeasurement, 2, scellArfcn, ScellArfcn)
  SCALAR(KCellularGsmIdleScellMeasurement, 3, simplifiedL1State, SimplifiedL1State)
  SCALAR(KCellularGsmIdleScellMeasurement, 4, currentAntenna, CurrentAntenna)
  SCALAR(KCellularGsmIdleScellMeasurement, 5, idleRxlevDBm, IdleRxlevDBm)
  SCALAR(KCellularGsmCsRfMeasurement, 1, timestamp, Timestamp)
  SCALAR(KCellularGsmCsRfMeasurement, 2, scellArfcn, ScellArfcn)
  SCALAR(KCellularGsmCsRfMeasurement, 3, simplifiedL1State, SimplifiedL1State)
  SCALAR(KCellularGsmCsRfMeasurement, 4, currentAntenna, CurrentAntenna)
  PACKED(KCellularGsmCsRfMeasurement, 5, csTxPwr, CsTxPwr, csTxPwrs, CsTxPwrs)
  SCALAR(KCellularGsmCsRfMeasurement, 6, csRxlevSub, CsRxlevSub)
  SCALAR(KCellularGsmCsRfMeasurement, 7, csRxqualSub, CsRxqualSub)
  SCALAR(KCellularGsmCsRfMeasurement, 8, scellBand, ScellBand)
  SCALAR(KCellularGsmGrrEventMeasCr, 1, timestamp, Timestamp)
  REPEATED(KCellularGsmGrrEventMeasCr, 2, gsmNcellMeas, GsmNcellMeas, gsmNcellMeas, GsmNcellMeas, GsmNcellMeas)
  REPEATED(KCellularGsmGrrEventMeasCr, 3, umtsNcellMeas, UmtsNcellMeas, umtsNcellMeas, UmtsNcellMeas, UmtsNcellMeas)
  REPEATED(KCellularGsmGrrEventMeasCr, 4, lteNcellMeas, LteNcellMeas, lteNcellMeas, LteNcellMeas, LteNcellMeas)
  SCALAR(GsmNcellMeas, 1, mcc, Mcc)
  SCALAR(GsmNcellMeas, 2, mnc, Mnc)
  SCALAR(GsmNcellMeas, 3, lac, Lac)
  SCALAR(GsmNcellMeas, 4, ci, Ci)
  SCALAR(GsmNcellMeas, 5, bsic, Bsic)
  SCALAR(GsmNcellMeas, 6, arfcn, Arfcn)
  SCALAR(GsmNcellMeas, 7, rxlev, Rxlev)
  SCALAR(UmtsNcellMeas, 1, cellType, CellType)
  SCALAR(UmtsNcellMeas, 2, cpichSc, CpichSc)
  SCALAR(UmtsNcellMeas, 3, dlUarfcn, DlUarfcn)
  SCALAR(UmtsNcellMeas, 4, cpichRscp, CpichRscp)
  SCALAR(UmtsNcellMeas, 5, cpichEcn0, CpichEcn0)
  SCALAR(LteNcellMeas, 1, physicalCellId, PhysicalCellId)
  SCALAR(LteNcellMeas, 2, bandwidth, Bandwidth)
  SCALAR(LteNcellMeas, 3, rsrp, Rsrp)
  SCALAR(LteNcellMeas, 4, earfcn, Earfcn)
  SCALAR(LteNcellMeas, 5, rsrq, Rsrq)
  SCALAR(KCellularMmCommonInfo, 1, timestamp, Timestamp)
  OBJECT(KCellularMmCommonInfo, 2, imsi, Imsi, Data)
  REPEATED(KCellularMmCommonInfo, 3, eplmnList, EplmnList, eplmnLists, EplmnLists, Plmn)
  REPEATED(KCellularMmCommonInfo, 4, roamingFlaiList, RoamingFlaiList, roamingFlaiLists, RoamingFlaiLists, KCellularLocationAreaId)
  REPEATED(KCellularMmCommonInfo, 5, regProvFlaiList, RegProvFlaiList, regProvFlaiLists, RegProvFlaiLists, KCellularLocationAreaId)
  REPEATED(KCellularMmCommonInfo, 6, roamingFtaiList, RoamingFtaiList, roamingFtaiLists, RoamingFtaiLists, KCellularTrackingAreaId)
  REPEATED(KCellularMmCommonInfo, 7, regProvFtaiList, RegProvFtaiList, regProvFtaiLists, RegProvFtaiLists, KCellularTrackingAreaId)
  OBJECT(Plmn, 1, encodedPlmn, EncodedPlmn, Data)
  OBJECT(KCellularLocationAreaId, 1, encodedPlmn, EncodedPlmn, Data)
  SCALAR(KCellularLocationAreaId, 2, lac, Lac)
  OBJECT(KCellularTrackingAreaId, 1, encodedPlmn, EncodedPlmn, Data)
  SCALAR(KCellularTrackingAreaId, 2, tac, Tac)
  OBJECT(RoutingAreaId, 1, encodedPlmn, EncodedPlmn, Data)
  SCALAR(RoutingAreaId, 3, lac, Lac)
  SCALAR(RoutingAreaId, 4, rac, Rac)
  SCALAR(KCellularMmContext, 1, timestamp, Timestamp)
  ENUM(KCellularMmContext, 2, regStatus, RegStatus)
  ENUM(KCellularMmContext, 3, updateStatus, UpdateStatus)
  OBJECT(KCellularMmContext, 4, lai, Lai, KCellularLocationAreaId)
  SCALAR(KCellularMmContext, 5, tmsi, Tmsi)
  SCALAR(KCellularMmContext, 6, t3212DurS, T3212DurS)
  ENUM(KCellularMmContext, 7, procFailureCause, ProcFailureCause)
  ENUM(KCellularMmContext, 8, rejectCause, RejectCause)
  SCALAR(KCellularMmContext, 9, isCombinedProc, IsCombinedProc)
  SCALAR(KCellularGmmContext, 1, timestamp, Timestamp)
  ENUM(KCellularGmmContext, 2, regStatus, RegStatus)
  ENUM(KCellularGmmContext, 3, updateStatus, UpdateStatus)
  OBJECT(KCellularGmmContext, 4, rai, Rai, RoutingAreaId)
  SCALAR(KCellularGmmContext, 5, pTmsi, PTmsi)
  SCALAR(KCellularGmmContext, 6, t3312DurS, T3312DurS)
  ENUM(KCellularGmmContext, 7, procFailureCause, ProcFailureCause)
  ENUM(KCellularGmmContext, 8, rejectCause, RejectCause)
  ENUM(KCellularGmmContext, 9, regProc, RegProc)
  SCALAR(KCellularEmmContext, 1, timestamp, Timestamp)
  ENUM(KCellularEmmContext, 2, regStatus, RegStatus)
  ENUM(KCellularEmmContext, 3, updateStatus, UpdateStatus)
  ENUM(KCellularEmmContext, 4, ueOpMode, UeOpMode)
  REPEATED(KCellularEmmContext, 5, taiList, TaiList, taiLists, TaiLists, KCellularTrackingAreaId)
  OBJECT(KCellularEmmContext, 6, guti, Guti, Guti)
  ENUM(KCellularEmmContext, 7, rejectCause, RejectCause)
  ENUM(KCellularEmmContext, 8, regProc, RegProc)
  SCALAR(KCellularEmmContext, 9, t3412DurS, T3412DurS)
  SCALAR(KCellularEmmContext, 10, isImsVoiceSupported, IsImsVoiceSupported)
  SCALAR(KCellularEmmContext, 11, isEmergBearerSupported, IsEmergBearerSupported)
  SCALAR(Guti, 1, mmegi, Mmegi)
  SCALAR(Guti, 2, mmec, Mmec)
  SCALAR(Guti, 3, mTmsi, MTmsi)
  SCALAR(KCellularActivatedBearerContexts, 1, timestamp, Timestamp)
  SCALAR(KCellularActivatedBearerContexts, 2, bearerContextCount, BearerContextCount)
  REPEATED(KCellularActivatedBearerContexts, 3, bearerContexts, BearerContexts, bearerContexts, BearerContexts, BearerContext)
  SCALAR(BearerContext, 1, cid, Cid)
  SCALAR(BearerContext, 2, nsapi, Nsapi)
  OBJECT(BearerContext, 3, apn, Apn, String)
  ENUM(BearerContext, 4, pdpType, PdpType)
  OBJECT(BearerContext, 5, pdpAddr, PdpAddr, Data)
  ENUM(BearerContext, 6, primaryDnsType, PrimaryDnsType)
  OBJECT(BearerContext, 7, primaryDnsAddr, PrimaryDnsAddr, Data)
  ENUM(BearerContext, 8, secondaryDnsType, SecondaryDnsType)
  OBJECT(BearerContext, 9, secondaryDnsAddr, SecondaryDnsAddr, Data)
  SCALAR(BearerContext, 10, isAddrIratMobile, IsAddrIratMobile)
  SCALAR(KCellularSimCardFiles, 1, timestamp, Timestamp)
  REPEATED(KCellularSimCardFiles, 2, efList, EfList, efLists, EfLists, ElementaryFile)
  SCALAR(ElementaryFile, 1, efId, EfId)
  OBJECT(ElementaryFile, 2, content, Content, Data)
};
// clang-format on

TEST(Accessors, OfEveryFieldReadWriteAndTellPresence) {
  EXPECT_EQ(std::size(kAccessors), 355U);
  for (const Accessors& row : kAccessors) {
    SCOPED_TRACE(row.field);
    row.check();
  }
}

}  // namespace
}  // namespace quorin::test

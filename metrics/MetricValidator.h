#pragma once

#include <array>
#include <map>
#include <optional>

#include "client/OsminWrapper.h"
#include "metrics/registry/metric_ids.h"
#include "metrics/technology_records.h"

namespace quorin {

/// The one store: takes metric events, decodes those that are shown, and keeps the latest of each
/// kind as a dictionary, and the records that the pages read. Everything on the main thread,
/// without locks.
class MetricValidator : public OsminWrapperDelegate,
                        public std::enable_shared_from_this<MetricValidator> {
 public:
  /// The one store of the process, made on the first call.
  [[nodiscard]] static const std::shared_ptr<MetricValidator>& sharedInstance();

  MetricValidator();
  /// Listens, and only then becomes the wrapper's delegate. Requires: held by a shared pointer.
  void init();

  /// Fatal without a dictionary, without an integer metric ID, and for a payload of a handled
  /// metric that does not decode.
  void metricsDidUpdate(const EventRecord* metric) override;
  void eventsDidUpdate(const EventRecord* trigger) override;

  /// No pure test: a handled metric is decoded and stored like any other. True when it was.
  [[nodiscard]] bool isMetricIDValidWithMetricdict(const Dictionary& metric);

  /// Bandwidth code of a message -> LTE channel bandwidth in MHz (3GPP TS 36.101, 5.6).
  [[nodiscard]] const std::map<std::int32_t, float>& dlbwlookup() const { return _dlbwlookup; }

  /// The ID of the event being handled.
  [[nodiscard]] std::optional<std::int64_t> metricID() const { return _metricID; }

  [[nodiscard]] const std::shared_ptr<OsminWrapper>& mySharedOsminInstance() const {
    return _mySharedOsminInstance;
  }
  [[nodiscard]] std::string_view metricIDKey() const { return _metricIDKey.text; }
  [[nodiscard]] std::string_view payloadKey() const { return _payloadKey.text; }
  [[nodiscard]] std::string_view profileIDKey() const { return _profileIDKey.text; }

  /// One of the stores, by its accessor.
  using Store = const Dictionary& (MetricValidator::*)() const;

  /// Uptime when the store's metric last came; empty: never. Kept beside the stores, never in them.
  [[nodiscard]] std::optional<Milliseconds> arrival(Store store) const;

  // The technology records.
  [[nodiscard]] const LTE& myLTE() const { return _myLTE; }
  [[nodiscard]] LTE& myLTE() { return _myLTE; }
  [[nodiscard]] const UMTS& myUMTS() const { return _myUMTS; }
  [[nodiscard]] UMTS& myUMTS() { return _myUMTS; }
  [[nodiscard]] const GSM& myGSM() const { return _myGSM; }
  [[nodiscard]] GSM& myGSM() { return _myGSM; }
  [[nodiscard]] const Common& myCommon() const { return _myCommon; }
  [[nodiscard]] Common& myCommon() { return _myCommon; }

  // The category stores: each holds the latest message of one kind. Nothing fills
  // myLTESCellMeasDict: meant.
  [[nodiscard]] const Dictionary& myLTERRCStateDict() const { return _myLTERRCStateDict; }
  void setMyLTERRCStateDict(Dictionary&& store) { _myLTERRCStateDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTECDRXConfigDict() const { return _myLTECDRXConfigDict; }
  void setMyLTECDRXConfigDict(Dictionary&& store) { _myLTECDRXConfigDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTESCellInfoDict() const { return _myLTESCellInfoDict; }
  void setMyLTESCellInfoDict(Dictionary&& store) { _myLTESCellInfoDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTESCellMeasDict() const { return _myLTESCellMeasDict; }
  void setMyLTESCellMeasDict(Dictionary&& store) { _myLTESCellMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTESelReselDict() const { return _myLTESelReselDict; }
  void setMyLTESelReselDict(Dictionary&& store) { _myLTESelReselDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTERsrpRsrqSinrDict() const { return _myLTERsrpRsrqSinrDict; }
  void setMyLTERsrpRsrqSinrDict(Dictionary&& store) { _myLTERsrpRsrqSinrDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTECompCarrDict() const { return _myLTECompCarrDict; }
  void setMyLTECompCarrDict(Dictionary&& store) { _myLTECompCarrDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTETxPowerDict() const { return _myLTETxPowerDict; }
  void setMyLTETxPowerDict(Dictionary&& store) { _myLTETxPowerDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTEInterRatMeasDict() const { return _myLTEInterRatMeasDict; }
  void setMyLTEInterRatMeasDict(Dictionary&& store) { _myLTEInterRatMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTEIntraRatMeasDict() const { return _myLTEIntraRatMeasDict; }
  void setMyLTEIntraRatMeasDict(Dictionary&& store) { _myLTEIntraRatMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTECAStatusDict() const { return _myLTECAStatusDict; }
  void setMyLTECAStatusDict(Dictionary&& store) { _myLTECAStatusDict = std::move(store); }
  [[nodiscard]] const Dictionary& myLTESecondaryCellMeasDict() const {
    return _myLTESecondaryCellMeasDict;
  }
  void setMyLTESecondaryCellMeasDict(Dictionary&& store) {
    _myLTESecondaryCellMeasDict = std::move(store);
  }
  [[nodiscard]] const Dictionary& myLTEEMMContextDict() const { return _myLTEEMMContextDict; }
  void setMyLTEEMMContextDict(Dictionary&& store) { _myLTEEMMContextDict = std::move(store); }
  [[nodiscard]] const Dictionary& myCellularMMCommonInfoDict() const {
    return _myCellularMMCommonInfoDict;
  }
  void setMyCellularMMCommonInfoDict(Dictionary&& store) {
    _myCellularMMCommonInfoDict = std::move(store);
  }
  [[nodiscard]] const Dictionary& myCellularActiveBearerDict() const {
    return _myCellularActiveBearerDict;
  }
  void setMyCellularActiveBearerDict(Dictionary&& store) {
    _myCellularActiveBearerDict = std::move(store);
  }
  [[nodiscard]] const Dictionary& myGMMContextDict() const { return _myGMMContextDict; }
  void setMyGMMContextDict(Dictionary&& store) { _myGMMContextDict = std::move(store); }
  [[nodiscard]] const Dictionary& myMMContextDict() const { return _myMMContextDict; }
  void setMyMMContextDict(Dictionary&& store) { _myMMContextDict = std::move(store); }
  [[nodiscard]] const Dictionary& myUMTSRRCStateDict() const { return _myUMTSRRCStateDict; }
  void setMyUMTSRRCStateDict(Dictionary&& store) { _myUMTSRRCStateDict = std::move(store); }
  [[nodiscard]] const Dictionary& myUMTSRRCConfigDict() const { return _myUMTSRRCConfigDict; }
  void setMyUMTSRRCConfigDict(Dictionary&& store) { _myUMTSRRCConfigDict = std::move(store); }
  [[nodiscard]] const Dictionary& myUMTSCellInfoDict() const { return _myUMTSCellInfoDict; }
  void setMyUMTSCellInfoDict(Dictionary&& store) { _myUMTSCellInfoDict = std::move(store); }
  [[nodiscard]] const Dictionary& myUMTSCellMeasDict() const { return _myUMTSCellMeasDict; }
  void setMyUMTSCellMeasDict(Dictionary&& store) { _myUMTSCellMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myUMTSTxPowerDict() const { return _myUMTSTxPowerDict; }
  void setMyUMTSTxPowerDict(Dictionary&& store) { _myUMTSTxPowerDict = std::move(store); }
  [[nodiscard]] const Dictionary& myUMTSSelReselDict() const { return _myUMTSSelReselDict; }
  void setMyUMTSSelReselDict(Dictionary&& store) { _myUMTSSelReselDict = std::move(store); }
  [[nodiscard]] const Dictionary& myUMTSNbrMeasDict() const { return _myUMTSNbrMeasDict; }
  void setMyUMTSNbrMeasDict(Dictionary&& store) { _myUMTSNbrMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myGSMScellInfoDict() const { return _myGSMScellInfoDict; }
  void setMyGSMScellInfoDict(Dictionary&& store) { _myGSMScellInfoDict = std::move(store); }
  [[nodiscard]] const Dictionary& myGSMIdleConfigInfoDict() const {
    return _myGSMIdleConfigInfoDict;
  }
  void setMyGSMIdleConfigInfoDict(Dictionary&& store) {
    _myGSMIdleConfigInfoDict = std::move(store);
  }
  [[nodiscard]] const Dictionary& myGSMIdleScellMeasDict() const { return _myGSMIdleScellMeasDict; }
  void setMyGSMIdleScellMeasDict(Dictionary&& store) { _myGSMIdleScellMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myGSMConnRfMeasDict() const { return _myGSMConnRfMeasDict; }
  void setMyGSMConnRfMeasDict(Dictionary&& store) { _myGSMConnRfMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myGSMNbrMeasDict() const { return _myGSMNbrMeasDict; }
  void setMyGSMNbrMeasDict(Dictionary&& store) { _myGSMNbrMeasDict = std::move(store); }
  [[nodiscard]] const Dictionary& myGSMGPRSConfigDict() const { return _myGSMGPRSConfigDict; }
  void setMyGSMGPRSConfigDict(Dictionary&& store) { _myGSMGPRSConfigDict = std::move(store); }
  [[nodiscard]] const Dictionary& mySIMFileInfoDict() const { return _mySIMFileInfoDict; }
  void setMySIMFileInfoDict(Dictionary&& store) { _mySIMFileInfoDict = std::move(store); }

 protected:
  /// Handles one event: true when its metric is one of the handled ones and was stored.
  virtual bool handleMetric(const Dictionary& metric);

 private:
  [[gnu::always_inline]] inline bool handleRecord(const EventRecord& event);
  /// The same as the handler. Requires: zeros behind the payload, as behind a `Data`.
  [[gnu::always_inline]] inline bool handle(std::int64_t id, Bytes payload);
  /// The store step, common to all cases: replaces the store whole and rebuilds what comes from it.
  [[gnu::always_inline]] inline void keep(const struct MetricCase& row, Dictionary&& store);

  std::shared_ptr<OsminWrapper> _mySharedOsminInstance;
  static constexpr Literal _metricIDKey = kKey<"kKeyMetricID">;
  static constexpr Literal _payloadKey = kKey<"kKeyPayload">;
  static constexpr Literal _profileIDKey = kKey<"kKeyProfileID">;
  std::map<std::int32_t, float> _dlbwlookup;
  std::optional<std::int64_t> _metricID;
  std::array<std::optional<Milliseconds>, 30> _arrivals;  // by metric case

  LTE _myLTE;
  UMTS _myUMTS;
  GSM _myGSM;
  Common _myCommon;

  Dictionary _myLTERRCStateDict;
  Dictionary _myLTECDRXConfigDict;
  Dictionary _myLTESCellInfoDict;
  Dictionary _myLTESCellMeasDict;
  Dictionary _myLTESelReselDict;
  Dictionary _myLTERsrpRsrqSinrDict;
  Dictionary _myLTECompCarrDict;
  Dictionary _myLTETxPowerDict;
  Dictionary _myLTEInterRatMeasDict;
  Dictionary _myLTEIntraRatMeasDict;
  Dictionary _myLTECAStatusDict;
  Dictionary _myLTESecondaryCellMeasDict;
  Dictionary _myLTEEMMContextDict;
  Dictionary _myCellularMMCommonInfoDict;
  Dictionary _myCellularActiveBearerDict;
  Dictionary _myGMMContextDict;
  Dictionary _myMMContextDict;
  Dictionary _myUMTSRRCStateDict;
  Dictionary _myUMTSRRCConfigDict;
  Dictionary _myUMTSCellInfoDict;
  Dictionary _myUMTSCellMeasDict;
  Dictionary _myUMTSTxPowerDict;
  Dictionary _myUMTSSelReselDict;
  Dictionary _myUMTSNbrMeasDict;
  Dictionary _myGSMScellInfoDict;
  Dictionary _myGSMIdleConfigInfoDict;
  Dictionary _myGSMIdleScellMeasDict;
  Dictionary _myGSMConnRfMeasDict;
  Dictionary _myGSMNbrMeasDict;
  Dictionary _myGSMGPRSConfigDict;
  Dictionary _mySIMFileInfoDict;
};

}  // namespace quorin

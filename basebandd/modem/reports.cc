#include "basebandd/modem/reports.h"

#include <algorithm>

#include "basebandd/modem/reading_rows.h"
#include "messages/gsm/KCellularGsmGrrEventMeasCr.h"
#include "messages/gsm/KCellularGsmIdleScellMeasurement.h"
#include "messages/gsm/KCellularGsmScellInfo.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "messages/lte/KCellularLteNbrInterRatCellMeas.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularGmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/nas/KCellularMmContext.h"
#include "messages/nas/KCellularSimCardFiles.h"
#include "messages/umts/KCellularWcdmaCellInfo.h"
#include "messages/umts/KCellularWcdmaNbrCellMeas.h"
#include "messages/umts/KCellularWcdmaScellMeasurement.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::modem {

namespace {

/// How the source numbers a technology: bits of access technologies and of capabilities, and a
/// cell's type.
struct TechnologyRow {
  Technology technology;
  std::int64_t accessBits;
  std::int64_t capabilityBit;
  std::int64_t cellType;
};
// LTE first: beside NR it anchors the connection.
constexpr TechnologyRow kTechnologies[] = {
    {Technology::lte, 1 << 14 | 1 << 16 | 1 << 17, 1 << 3, 5},
    {Technology::umts, 0x3E0, 1 << 2, 3},
    {Technology::gsm, 0x1E, 1 << 2, 2},
    {Technology::nrOnly, 1 << 15, 1 << 6, 6},
    {Technology::none, 0, 0, 0},
};

const TechnologyRow& rowOf(Technology technology) {
  return *std::ranges::find(kTechnologies, technology, &TechnologyRow::technology);
}

bool isServing(const Readings& cell) {
  constexpr std::int64_t kPrimary = 1;
  return valueAt(cell, "serving", false) &&
         valueAt(cell, "serving-cell-type", kPrimary) == kPrimary;
}

// Its identities from the registration where the cell list has none.
Readings servingCell(const ModemReadings& readings) {
  Readings cell;
  const std::int64_t type = rowOf(technologyOf(readings)).cellType;
  for (const Readings& listed : readings.cells)
    if (cell.empty() && isServing(listed) && valueAt(listed, "cell-type", std::int64_t{0}) == type)
      cell = listed;
  cell.insert(readings.area.begin(), readings.area.end());
  if (const auto* code = at(readings.network, "OperatorCode").as<std::string>();
      code && !code->empty())
    cell.insert({"operator-id", Reading{*code}});
  return cell;
}

Readings nested(const Readings& readings, std::string_view key) {
  return valueAt(readings, key, Readings{});
}

bool fillLteQuality(const ModemReadings& readings, KCellularLteRsrpRsrqSinr& message) {
  const auto values = kLteQuality.filled<RsrpRsrqSinr>(nested(readings.signal, "Lte"));
  if (!values) return false;
  kLteQualityCell.fill(*values, servingCell(readings));
  message.addInstValues(values);
  return true;
}

bool fillUmtsReceive(const ModemReadings& readings, KCellularWcdmaScellMeasurement& message) {
  const auto values = kUmtsReceive.filled<RxInfo>(nested(readings.signal, "Umts"));
  if (!values) return false;
  message.addRxInfo(values);
  return true;
}

bool fillGsmIdle(const ModemReadings& readings, KCellularGsmIdleScellMeasurement& message) {
  if (!kGsmIdle.fill(message, nested(readings.signal, "Gsm"))) return false;
  kGsmIdleCell.fill(message, servingCell(readings));
  return true;
}

template <class M, const ReadingTable& table>
bool fillServing(const ModemReadings& readings, M& message) {
  return table.fill(message, servingCell(readings));
}

// Neighbours of a technology, as another one's message takes them.
template <class M, class Row, void (M::*add)(const Ref<Row>&)>
void addNeighbours(const ModemReadings& readings, Technology technology, const ReadingTable& table,
                   M& message) {
  for (const Readings& cell : readings.cells) {
    if (valueAt(cell, "serving", false) ||
        valueAt(cell, "cell-type", std::int64_t{0}) != rowOf(technology).cellType)
      continue;
    if (const auto row = table.filled<Row>(cell)) (message.*add)(row);
  }
}

bool fillLteNeighbours(const ModemReadings& readings, KCellularLteNbrEutraCellMeas& message) {
  using M = KCellularLteNbrEutraCellMeas;
  addNeighbours<M, EgwErrcNbrEutraMeas, &M::addMeasNbrEutra>(readings, Technology::lte, kLteFromLte,
                                                             message);
  return !readings.cells.empty();
}

bool fillLteOthers(const ModemReadings& readings, KCellularLteNbrInterRatCellMeas& message) {
  using M = KCellularLteNbrInterRatCellMeas;
  addNeighbours<M, EgwErrcNbrUtraMeas, &M::addMeasNbrUtra>(readings, Technology::umts, kUmtsFromLte,
                                                           message);
  addNeighbours<M, EgwErrcNbrGeranMeas, &M::addMeasNbrGeran>(readings, Technology::gsm, kGsmFromLte,
                                                             message);
  return !readings.cells.empty();
}

bool fillUmtsNeighbours(const ModemReadings& readings, KCellularWcdmaNbrCellMeas& message) {
  using M = KCellularWcdmaNbrCellMeas;
  addNeighbours<M, UtraCellMeasResult, &M::addMeasUtraResult>(readings, Technology::umts,
                                                              kUmtsFromUmts, message);
  addNeighbours<M, GsmCellMeasResult, &M::addMeasGsmResult>(readings, Technology::gsm, kGsmFromUmts,
                                                            message);
  addNeighbours<M, LteCellMeasResult, &M::addMeasLteResult>(readings, Technology::lte, kLteFromUmts,
                                                            message);
  return !readings.cells.empty();
}

bool fillGsmNeighbours(const ModemReadings& readings, KCellularGsmGrrEventMeasCr& message) {
  using M = KCellularGsmGrrEventMeasCr;
  addNeighbours<M, GsmNcellMeas, &M::addGsmNcellMeas>(readings, Technology::gsm, kGsmFromGsm,
                                                      message);
  addNeighbours<M, UmtsNcellMeas, &M::addUmtsNcellMeas>(readings, Technology::umts, kUmtsFromGsm,
                                                        message);
  addNeighbours<M, LteNcellMeas, &M::addLteNcellMeas>(readings, Technology::lte, kLteFromGsm,
                                                      message);
  return !readings.cells.empty();
}

// While it is not known where the modem is, its registration is that of all that it can.
bool hasContext(const ModemReadings& readings, Technology technology) {
  const Technology camped = technologyOf(readings);
  if (camped != Technology::none) return camped == technology;
  return valueAt(readings.modem, "CurrentCapabilities", std::int64_t{0}) &
         rowOf(technology).capabilityBit;
}

bool hasOlderContext(const ModemReadings& readings) {
  return hasContext(readings, Technology::umts) || hasContext(readings, Technology::gsm);
}

bool isRegistered(const ModemReadings& readings) {
  constexpr std::int64_t kRegistered[] = {1, 5, 6, 7, 9, 10};
  const auto state = valueAt(readings.network, "RegistrationState", std::int64_t{0});
  return std::ranges::find(kRegistered, state) != std::end(kRegistered);
}

// An area identity is whole, or it is none.
template <class M>
Ref<M> registeredArea(const ModemReadings& readings, const ReadingTable& table) {
  const Readings cell = servingCell(readings);
  const bool isKnown = isRegistered(readings) &&
                       table.rows.front().convert(at(cell, table.rows.front().reading)) &&
                       encodedPlmn(at(cell, "operator-id"));
  return isKnown ? table.filled<M>(cell) : nullptr;
}

bool fillEmm(const ModemReadings& readings, KCellularEmmContext& message) {
  if (!hasContext(readings, Technology::lte) || !kEmm.fill(message, readings.network)) return false;
  if (const auto area = registeredArea<KCellularTrackingAreaId>(readings, kTrackingArea))
    message.addTaiList(area);
  return message.hasRegStatus();
}

bool fillMm(const ModemReadings& readings, KCellularMmContext& message) {
  if (!hasOlderContext(readings) || !kMm.fill(message, readings.network)) return false;
  if (const auto area = registeredArea<KCellularLocationAreaId>(readings, kLocationArea))
    message.setLai(area);
  return true;
}

bool fillGmm(const ModemReadings& readings, KCellularGmmContext& message) {
  if (!hasOlderContext(readings) || !kGmm.fill(message, readings.network)) return false;
  if (const auto area = registeredArea<RoutingAreaId>(readings, kRoutingArea)) message.setRai(area);
  return true;
}

bool fillMmCommon(const ModemReadings& readings, KCellularMmCommonInfo& message) {
  return kMmCommon.fill(message, readings.sim);
}

bool fillSim(const ModemReadings& readings, KCellularSimCardFiles& message) {
  for (const FileRow& file : fileRows()) {
    auto content = file.code(at(readings.sim, file.reading));
    if (!content) continue;
    const auto row = quorin::make<ElementaryFile>();
    row->setEfId(file.file);
    row->setContent(quorin::make<Data>(std::move(*content)));
    message.addEfList(row);
  }
  return message.efListsCount() > 0;
}

// Of a bearer with both kinds of address the one after the other, as 3GPP TS 24.008 10.5.6.4 has
// them; of name servers the first kind's.
void addAddresses(BearerContext& row, const Readings& bearer) {
  const Readings ipv4 = nested(bearer, "Ip4Config");
  const Readings ipv6 = nested(bearer, "Ip6Config");
  for (const AddressRow& field : addressRows()) {
    auto bytes = ipv4Address(at(ipv4, field.reading));
    const bool isIpv4 = bytes.has_value();
    const auto more = ipv6Address(at(ipv6, field.reading));
    if (more && !bytes)
      bytes = more;
    else if (more && !field.setType)
      bytes->insert(bytes->end(), more->begin(), more->end());
    if (!bytes) continue;
    field.set(row, quorin::make<Data>(std::move(*bytes)));
    if (field.setType)
      field.setType(row, isIpv4 ? valueOf(names::PDP_TYPE, "PDP_TYPE_IPv4")
                                : valueOf(names::PDP_TYPE, "PDP_TYPE_IPv6"));
  }
}

// A modem's bearers are known as soon as it is; none connected is a list without entries.
bool fillBearers(const ModemReadings& readings, KCellularActivatedBearerContexts& message) {
  if (!at(readings.modem, "Bearers").as<std::vector<Reading>>()) return false;
  for (const Readings& bearer : readings.bearers) {
    if (!valueAt(bearer, "Connected", false)) continue;
    const auto row = quorin::make<BearerContext>();
    const Readings properties = nested(bearer, "Properties");
    if (const auto* apn = at(properties, "apn").as<std::string>(); apn && !apn->empty())
      row->setApn(quorin::make<String>(*apn));
    kBearer.fill(*row, properties);
    addAddresses(*row, bearer);
    message.addBearerContexts(row);
  }
  message.setBearerContextCount(static_cast<std::uint32_t>(message.bearerContextsCount()));
  return true;
}

template <class M, bool (*fill)(const ModemReadings&, M&)>
Ref<Data> made(const ModemReadings& readings, std::optional<std::uint64_t> timestamp) {
  M message;
  if (!fill(readings, message)) return nullptr;
  if (timestamp) message.setTimestamp(*timestamp);
  PBDataWriter writer;
  message.writeTo(writer);
  return quorin::make<Data>(std::move(writer.bytes()));
}

/// The same, while the modem is camped on this technology.
template <Technology technology, class M, bool (*fill)(const ModemReadings&, M&)>
Ref<Data> madeOn(const ModemReadings& readings, std::optional<std::uint64_t> timestamp) {
  if (technologyOf(readings) != technology) return nullptr;
  return made<M, fill>(readings, timestamp);
}

constexpr auto kLte = Technology::lte;
constexpr auto kUmts = Technology::umts;
constexpr auto kGsm = Technology::gsm;
constexpr Groups kPlace = kCellGroup | kNetworkGroup;

constexpr Report kReports[] = {
    {K_LTE_SCELL_INFO, kPlace, 0,
     madeOn<kLte, KCellularLteScellInfo, fillServing<KCellularLteScellInfo, kLteServing>>},
    {K_UMTS_SCELL_INFO, kPlace, 0,
     madeOn<kUmts, KCellularWcdmaCellInfo, fillServing<KCellularWcdmaCellInfo, kUmtsServing>>},
    {K_GSM_SCELL_INFO, kPlace, 0,
     madeOn<kGsm, KCellularGsmScellInfo, fillServing<KCellularGsmScellInfo, kGsmServing>>},
    {K_LTE_RSRP_RSRQ_SINR, kSignalGroup | kPlace, kSignalGroup,
     madeOn<kLte, KCellularLteRsrpRsrqSinr, fillLteQuality>},
    {K_UMTS_SCELL_MEAS, kSignalGroup | kPlace, kSignalGroup,
     madeOn<kUmts, KCellularWcdmaScellMeasurement, fillUmtsReceive>},
    {K_GSM_IDLE_SCELL_MEAS, kSignalGroup | kPlace, kSignalGroup,
     madeOn<kGsm, KCellularGsmIdleScellMeasurement, fillGsmIdle>},
    {K_LTE_INTRARAT_MEAS, kCellGroup, kCellGroup,
     madeOn<kLte, KCellularLteNbrEutraCellMeas, fillLteNeighbours>},
    {K_LTE_INTERRAT_MEAS, kCellGroup, kCellGroup,
     madeOn<kLte, KCellularLteNbrInterRatCellMeas, fillLteOthers>},
    {K_UMTS_NCELL_MEAS, kCellGroup, kCellGroup,
     madeOn<kUmts, KCellularWcdmaNbrCellMeas, fillUmtsNeighbours>},
    {K_GSM_NCELL_MEAS, kCellGroup, kCellGroup,
     madeOn<kGsm, KCellularGsmGrrEventMeasCr, fillGsmNeighbours>},
    {K_LTE_EMM_CTXT, kPlace, 0, made<KCellularEmmContext, fillEmm>},
    {K_CELLULAR_MM_CTXT, kPlace, 0, made<KCellularMmContext, fillMm>},
    {K_CELLULAR_GMM_CTXT, kPlace, 0, made<KCellularGmmContext, fillGmm>},
    {K_CELLULAR_MM_INFO, kSimGroup, 0, made<KCellularMmCommonInfo, fillMmCommon>},
    {K_SIM_FILE_INFO, kSimGroup, 0, made<KCellularSimCardFiles, fillSim>},
    {K_CELLULAR_ACTIVE_BEARER, kBearerGroup, 0,
     made<KCellularActivatedBearerContexts, fillBearers>},
};

}  // namespace

Technology technologyOf(const ModemReadings& readings) {
  const auto access = valueAt(readings.modem, "AccessTechnologies", std::int64_t{0});
  constexpr std::int64_t kAny = 0xFFFFFFFF;
  for (const TechnologyRow& row : kTechnologies)
    if (access != kAny && access & row.accessBits) return row.technology;
  for (const TechnologyRow& row : kTechnologies)
    for (const Readings& cell : readings.cells)
      if (isServing(cell) && valueAt(cell, "cell-type", std::int64_t{0}) == row.cellType)
        return row.technology;
  return Technology::none;
}

Readings areaOf(std::string_view location) {
  constexpr std::string_view kKeys[] = {"mcc", "mnc", "lac", "ci", "tac"};
  Readings area;
  std::string plmn;
  for (std::size_t i = 0; i < std::size(kKeys); ++i) {
    const auto comma = location.find(',');
    const std::string part(location.substr(0, comma));
    if (i < 2)
      plmn += part;
    else if (!part.empty())
      area.insert({std::string(kKeys[i]), Reading{part}});
    if (comma == std::string_view::npos) break;
    location.remove_prefix(comma + 1);
  }
  if (!plmn.empty()) area.insert({"operator-id", Reading{plmn}});
  return area;
}

std::span<const Report> reports() { return kReports; }

}  // namespace quorin::modem

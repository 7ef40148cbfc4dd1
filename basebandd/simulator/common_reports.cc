#include "basebandd/simulator/State.h"
#include "basebandd/simulator/reports.h"
#include "basebandd/simulator/sim_card.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularGmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/nas/KCellularMmContext.h"
#include "messages/nas/KCellularSimCardFiles.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::simulator {

namespace {

Ref<Data> plmn() { return make<Data>(Bytes(kPlmn)); }

bool fillSim(const State& /*state*/, KCellularSimCardFiles& message) {
  for (const SimFile& file : simFiles()) {
    const auto row = make<ElementaryFile>();
    row->setEfId(file.id);
    row->setContent(make<Data>(file.content));
    message.addEfList(row);
  }
  return true;
}

bool fillMmCommon(const State& state, KCellularMmCommonInfo& message) {
  message.setImsi(make<Data>(imsiIdentity()));
  const auto equivalent = make<Plmn>();
  equivalent->setEncodedPlmn(make<Data>(Bytes(kEquivalentPlmn)));
  message.addEplmnList(equivalent);
  for (const std::uint32_t tac : state.registration.forbidden) {
    const auto area = make<KCellularTrackingAreaId>();
    area->setEncodedPlmn(plmn());
    area->setTac(tac);
    message.addRoamingFtaiList(area);
  }
  return true;
}

constexpr std::int32_t kPsMode1 = valueOf(names::EPS_UE_OP_MODE, "EPS_UE_OP_MODE_PS_MODE_1");

bool fillEmm(const State& state, KCellularEmmContext& message) {
  if (technology(state) != Technology::lte) return false;
  const EpsRegistration& eps = state.registration.eps;
  message.setRegStatus(eps.status);
  message.setUpdateStatus(eps.update);
  message.setUeOpMode(kPsMode1);
  for (const std::uint32_t tac : eps.listed) {
    const auto area = make<KCellularTrackingAreaId>();
    area->setEncodedPlmn(plmn());
    area->setTac(tac);
    message.addTaiList(area);
  }
  if (eps.mTmsi) {
    const auto guti = make<Guti>();
    guti->setMmegi(kMmeGroup);
    guti->setMmec(kMmeCode);
    guti->setMTmsi(*eps.mTmsi);
    message.setGuti(guti);
  }
  message.setRejectCause(eps.rejectCause);
  message.setRegProc(eps.procedure);
  if (eps.listed.empty()) return true;
  message.setT3412DurS(kT3412Seconds);
  message.setIsImsVoiceSupported(true);
  message.setIsEmergBearerSupported(true);
  return true;
}

bool isOnOlder(const State& state) {
  return technology(state) == Technology::umts || technology(state) == Technology::gsm;
}

// MM's update status has other numbers than GMM's.
std::int32_t updateStatus(const AreaRegistration& area, std::int32_t updated,
                          std::int32_t notUpdated) {
  return area.psStatus == valueOf(names::KREG_STATUS, "KREG_STATUS_NORMAL_SERVICE") ? updated
                                                                                    : notUpdated;
}

bool fillMm(const State& state, KCellularMmContext& message) {
  if (!isOnOlder(state)) return false;
  const AreaRegistration& area = state.registration.area;
  message.setRegStatus(area.csStatus);
  message.setUpdateStatus(updateStatus(area, valueOf(names::STATUS, "STATUS_UPDATED"),
                                       valueOf(names::STATUS, "STATUS_NOT_UPDATED")));
  message.setProcFailureCause(area.failure);
  message.setRejectCause(area.rejectCause);
  message.setIsCombinedProc(area.isCombined);
  if (area.locationArea == 0) return true;
  const auto lai = make<KCellularLocationAreaId>();
  lai->setEncodedPlmn(plmn());
  lai->setLac(area.locationArea);
  message.setLai(lai);
  message.setTmsi(area.tmsi);
  message.setT3212DurS(kT3212Seconds);
  return true;
}

bool fillGmm(const State& state, KCellularGmmContext& message) {
  if (!isOnOlder(state)) return false;
  const AreaRegistration& area = state.registration.area;
  message.setRegStatus(area.psStatus);
  message.setUpdateStatus(updateStatus(area, valueOf(names::GPRS_STATUS, "GPRS_STATUS_UPDATED"),
                                       valueOf(names::GPRS_STATUS, "GPRS_STATUS_NOT_UPDATED")));
  message.setProcFailureCause(area.failure);
  message.setRejectCause(area.rejectCause);
  message.setRegProc(area.procedure);
  if (area.locationArea == 0) return true;
  const auto rai = make<RoutingAreaId>();
  rai->setEncodedPlmn(plmn());
  rai->setLac(area.locationArea);
  rai->setRac(kRoutingAreaCode);
  message.setRai(rai);
  message.setPTmsi(area.pTmsi);
  message.setT3312DurS(kT3312Seconds);
  return true;
}

bool fillBearers(const State& state, KCellularActivatedBearerContexts& message) {
  for (const Bearer& bearer : state.bearers.all) {
    if (bearer.address.empty()) continue;
    const auto row = make<BearerContext>();
    row->setCid(bearer.row->cid);
    row->setNsapi(bearer.row->nsapi);
    row->setApn(make<String>(std::string(bearer.row->apn)));
    row->setPdpType(bearer.row->type);
    row->setPdpAddr(make<Data>(Bytes(bearer.address)));
    row->setPrimaryDnsType(bearer.row->type);
    row->setPrimaryDnsAddr(make<Data>(bearer.row->nameServer));
    message.addBearerContexts(row);
  }
  message.setBearerContextCount(static_cast<std::uint32_t>(message.bearerContextsCount()));
  return true;
}

constexpr Report kReports[] = {
    {K_SIM_FILE_INFO, 0, 0, nullptr, made<KCellularSimCardFiles, fillSim>},
    {K_CELLULAR_MM_INFO, 0, 0, nullptr, made<KCellularMmCommonInfo, fillMmCommon>},
    {K_LTE_EMM_CTXT, 0, 0, nullptr, made<KCellularEmmContext, fillEmm>},
    {K_CELLULAR_MM_CTXT, 0, 0, nullptr, made<KCellularMmContext, fillMm>},
    {K_CELLULAR_GMM_CTXT, 0, 0, nullptr, made<KCellularGmmContext, fillGmm>},
    {K_CELLULAR_ACTIVE_BEARER, 0, 0, nullptr, made<KCellularActivatedBearerContexts, fillBearers>},
};

}  // namespace

std::span<const Report> commonReports() { return kReports; }

}  // namespace quorin::simulator

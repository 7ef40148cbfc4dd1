#pragma once

#include "messages/codec/fields.h"
#include "messages/nas/KCellularLocationAreaId.h"
#include "messages/nas/KCellularTrackingAreaId.h"
#include "messages/nas/Plmn.h"

namespace quorin {

/// IMSI, equivalent networks and forbidden areas (3GPP TS 24.008, 24.301).
class KCellularMmCommonInfo final : public Message<KCellularMmCommonInfo> {
  PB_MESSAGE(KCellularMmCommonInfo)
  PB_UINT64  (1, "timestamp",          timestamp,       Timestamp)
  PB_BYTES   (2, "imsi",               imsi,            Imsi)
  PB_REPEATED(3, "eplmn_list",         eplmnList,       EplmnList,       eplmnLists,       EplmnLists,       Plmn)
  PB_REPEATED(4, "roaming_flai_list",  roamingFlaiList, RoamingFlaiList, roamingFlaiLists, RoamingFlaiLists, KCellularLocationAreaId)
  PB_REPEATED(5, "reg_prov_flai_list", regProvFlaiList, RegProvFlaiList, regProvFlaiLists, RegProvFlaiLists, KCellularLocationAreaId)
  PB_REPEATED(6, "roaming_ftai_list",  roamingFtaiList, RoamingFtaiList, roamingFtaiLists, RoamingFtaiLists, KCellularTrackingAreaId)
  PB_REPEATED(7, "reg_prov_ftai_list", regProvFtaiList, RegProvFtaiList, regProvFtaiLists, RegProvFtaiLists, KCellularTrackingAreaId)
};

}  // namespace quorin

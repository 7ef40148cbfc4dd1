#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/NbrEutra.h"

namespace quorin {

/// LTE cell selection and reselection parameters, as broadcast (3GPP TS 36.304).
class KCellularLteSelReselCellInfo final : public Message<KCellularLteSelReselCellInfo> {
  PB_MESSAGE(KCellularLteSelReselCellInfo)
  PB_UINT64       ( 1, "timestamp",                               timestamp,                         Timestamp)
  PB_PACKED_UINT32( 2, "multi_band_info",                         multiBandInfo,                     MultiBandInfo, multiBandInfos, MultiBandInfos)
  PB_UINT32       ( 3, "ims_emergency_support",                   imsEmergencySupport,               ImsEmergencySupport)
  PB_UINT32       ( 4, "ac_barring_for_emergency",                acBarringForEmergency,             AcBarringForEmergency)
  PB_UINT32       ( 5, "mo_signalling_ac_barring_factor",         moSignallingAcBarringFactor,       MoSignallingAcBarringFactor)
  PB_UINT32       ( 6, "mo_signalling_ac_barring_time",           moSignallingAcBarringTime,         MoSignallingAcBarringTime)
  PB_UINT32       ( 7, "mo_signalling_ac_barring_for_special_ac", moSignallingAcBarringForSpecialAc, MoSignallingAcBarringForSpecialAc)
  PB_UINT32       ( 8, "mo_data_ac_barring_factor",               moDataAcBarringFactor,             MoDataAcBarringFactor)
  PB_UINT32       ( 9, "mo_data_ac_barring_time",                 moDataAcBarringTime,               MoDataAcBarringTime)
  PB_UINT32       (10, "mo_data_ac_barring_for_special_ac",       moDataAcBarringForSpecialAc,       MoDataAcBarringForSpecialAc)
  PB_SINT32       (11, "QRxLevMin",                               qRxLevMin,                         QRxLevMin)
  PB_SINT32       (12, "QQualMin",                                qQualMin,                          QQualMin)
  PB_UINT32       (13, "Q_hyst",                                  qHyst,                             QHyst)
  PB_UINT32       (14, "S_non_intra_search_P",                    sNonIntraSearchP,                  SNonIntraSearchP)
  PB_UINT32       (15, "S_non_intra_search_Q",                    sNonIntraSearchQ,                  SNonIntraSearchQ)
  PB_UINT32       (16, "S_intra_search_P",                        sIntraSearchP,                     SIntraSearchP)
  PB_UINT32       (17, "S_intra_search_Q",                        sIntraSearchQ,                     SIntraSearchQ)
  PB_UINT32       (18, "Thresh_serving_lowP",                     threshServingLowP,                 ThreshServingLowP)
  PB_UINT32       (19, "Thresh_serving_lowQ",                     threshServingLowQ,                 ThreshServingLowQ)
  PB_UINT32       (20, "priority_operating_freq",                 priorityOperatingFreq,             PriorityOperatingFreq)
  PB_REPEATED     (21, "nbr_eutra",                               nbrEutra,                          NbrEutra,      nbrEutras,      NbrEutras, NbrEutra)
};

}  // namespace quorin

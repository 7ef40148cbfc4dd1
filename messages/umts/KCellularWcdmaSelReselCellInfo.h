#pragma once

#include "messages/codec/fields.h"
#include "messages/umts/EutraFreqInfo.h"
#include "messages/umts/GsmFreqInfo.h"
#include "messages/umts/UtraFreqInfo.h"
#include "messages/umts/names.h"

namespace quorin {

/// UMTS cell selection and reselection parameters (3GPP TS 25.304) and frequency priorities.
class KCellularWcdmaSelReselCellInfo final : public Message<KCellularWcdmaSelReselCellInfo> {
  PB_MESSAGE(KCellularWcdmaSelReselCellInfo)
  PB_UINT64       ( 1, "timestamp",                  timestamp,              Timestamp)
  PB_UINT32       ( 2, "hsdpa_capable",              hsdpaCapable,           HsdpaCapable)
  PB_UINT32       ( 3, "edch_capable",               edchCapable,            EdchCapable)
  PB_ENUM         ( 4, "duplex_mode",                duplexMode,             DuplexMode,    names::DUPLEX_MODE)
  PB_PACKED_UINT32( 5, "multi_band_info",            multiBandInfo,          MultiBandInfo, multiBandInfos, MultiBandInfos)
  PB_UINT32       ( 6, "ims_emergency_support",      imsEmergencySupport,    ImsEmergencySupport)
  PB_UINT32       ( 7, "cell_barred",                cellBarred,             CellBarred)
  PB_UINT32       ( 8, "fach_meas_occ_info_present", fachMeasOccInfoPresent, FachMeasOccInfoPresent)
  PB_SINT32       ( 9, "s_rxlev",                    sRxlev,                 SRxlev)
  PB_SINT32       (10, "s_qual",                     sQual,                  SQual)
  PB_SINT32       (11, "s_intrasearch",              sIntrasearch,           SIntrasearch)
  PB_SINT32       (12, "s_intersearch",              sIntersearch,           SIntersearch)
  PB_SINT32       (13, "s_search_rat",               sSearchRat,             SSearchRat)
  PB_UINT32       (21, "s_cell_prio",                sCellPrio,              SCellPrio)
  PB_REPEATED     (22, "eutra_prio_info",            eutraPrioInfo,          EutraPrioInfo, eutraPrioInfos, EutraPrioInfos, EutraFreqInfo)
  PB_REPEATED     (23, "utra_prio_info",             utraPrioInfo,           UtraPrioInfo,  utraPrioInfos,  UtraPrioInfos,  UtraFreqInfo)
  PB_REPEATED     (24, "gsm_prio_info",              gsmPrioInfo,            GsmPrioInfo,   gsmPrioInfos,   GsmPrioInfos,   GsmFreqInfo)
};

}  // namespace quorin

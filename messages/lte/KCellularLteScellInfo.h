#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Identity, frequencies and bandwidths of the LTE serving cell.
class KCellularLteScellInfo final : public Message<KCellularLteScellInfo> {
  PB_MESSAGE(KCellularLteScellInfo)
  PB_UINT64( 1, "timestamp",          timestamp,        Timestamp)
  PB_UINT32( 2, "phy_cell_id",        phyCellId,        PhyCellId)
  PB_UINT32( 3, "dl_freq",            dlFreq,           DlFreq)
  PB_UINT32( 4, "ul_freq",            ulFreq,           UlFreq)
  PB_UINT32( 5, "dl_bw",              dlBw,             DlBw)
  PB_UINT32( 6, "ul_bw",              ulBw,             UlBw)
  PB_UINT32( 7, "cell_id",            cellId,           CellId)
  PB_UINT32( 8, "freq_band_ind",      freqBandInd,      FreqBandInd)
  PB_UINT32( 9, "tracking_area_code", trackingAreaCode, TrackingAreaCode)
  PB_UINT32(10, "num_mnc_digits",     numMncDigits,     NumMncDigits)
  PB_UINT32(11, "sel_plmn_mcc",       selPlmnMcc,       SelPlmnMcc)
  PB_UINT32(12, "sel_plmn_mnc",       selPlmnMnc,       SelPlmnMnc)
  PB_UINT32(14, "tdd_sf_assignment",  tddSfAssignment,  TddSfAssignment)
  PB_UINT32(15, "tdd_ssf_patterns",   tddSsfPatterns,   TddSsfPatterns)
};

}  // namespace quorin

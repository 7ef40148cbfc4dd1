#pragma once

#include "messages/codec/fields.h"
#include "messages/gsm/names.h"
#include "messages/shared/names.h"

namespace quorin {

/// Identity, band and dedicated state of the GSM serving cell.
class KCellularGsmScellInfo final : public Message<KCellularGsmScellInfo> {
  PB_MESSAGE(KCellularGsmScellInfo)
  PB_UINT64( 1, "timestamp",      timestamp,    Timestamp)
  PB_UINT32( 4, "mcc",            mcc,          Mcc)
  PB_UINT32( 5, "mnc",            mnc,          Mnc)
  PB_UINT32( 6, "lac",            lac,          Lac)
  PB_UINT32( 7, "cell_id",        cellId,       CellId)
  PB_ENUM  ( 8, "gsm_band",       gsmBand,      GsmBand, names::SYS_BAND)
  PB_UINT32( 9, "arfcn",          arfcn,        Arfcn)
  PB_UINT32(10, "bsic",           bsic,         Bsic)
  PB_ENUM  (11, "state",          state,        State,   names::DEDICATED_STATE)
  PB_UINT32(13, "num_mnc_digits", numMncDigits, NumMncDigits)
};

}  // namespace quorin

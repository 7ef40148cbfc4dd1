#pragma once

#include "messages/codec/fields.h"
#include "messages/shared/names.h"
#include "messages/umts/names.h"

namespace quorin {

/// Identity and band of the UMTS serving cell.
class KCellularWcdmaCellInfo final : public Message<KCellularWcdmaCellInfo> {
  PB_MESSAGE(KCellularWcdmaCellInfo)
  PB_UINT64( 1, "timestamp",      timestamp,    Timestamp)
  PB_UINT32( 4, "mcc",            mcc,          Mcc)
  PB_UINT32( 5, "mnc",            mnc,          Mnc)
  PB_UINT32( 6, "lac",            lac,          Lac)
  PB_UINT32( 7, "cell_id",        cellId,       CellId)
  PB_ENUM  ( 8, "wcdma_band",     wcdmaBand,    WcdmaBand, names::SYS_BAND)
  PB_UINT32( 9, "dl_uarfcn",      dlUarfcn,     DlUarfcn)
  PB_UINT32(10, "psc",            psc,          Psc)
  PB_UINT32(13, "num_mnc_digits", numMncDigits, NumMncDigits)
  PB_ENUM  (14, "hspa",           hspa,         Hspa,      names::SYS_HS_IND)
};

}  // namespace quorin

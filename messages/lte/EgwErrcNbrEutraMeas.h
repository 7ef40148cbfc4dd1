#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One LTE neighbour measured from LTE.
class EgwErrcNbrEutraMeas final : public Message<EgwErrcNbrEutraMeas> {
  PB_MESSAGE(EgwErrcNbrEutraMeas)
  PB_UINT32(1, "nbr_earfcn",       nbrEarfcn,     NbrEarfcn)
  PB_UINT32(2, "nbr_phys_cell_id", nbrPhysCellId, NbrPhysCellId)
  PB_UINT32(3, "freq_band_ind",    freqBandInd,   FreqBandInd)
  PB_SINT32(4, "nbr_rsrp",         nbrRsrp,       NbrRsrp)
  PB_SINT32(5, "nbr_rsrq",         nbrRsrq,       NbrRsrq)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One LTE neighbour measured from UMTS.
class LteCellMeasResult final : public Message<LteCellMeasResult> {
  PB_MESSAGE(LteCellMeasResult)
  PB_UINT32(1, "earfcn",      earfcn,    Earfcn)
  PB_UINT32(2, "phy_cell_id", phyCellId, PhyCellId)
  PB_UINT32(3, "eutra_band",  eutraBand, EutraBand)
  PB_SINT32(4, "rsrp",        rsrp,      Rsrp)
  PB_SINT32(5, "rsrq",        rsrq,      Rsrq)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One UMTS neighbour measured from GSM.
class UmtsNcellMeas final : public Message<UmtsNcellMeas> {
  PB_MESSAGE(UmtsNcellMeas)
  PB_UINT32(1, "cell_type",  cellType,  CellType)
  PB_UINT32(2, "cpich_sc",   cpichSc,   CpichSc)
  PB_UINT32(3, "dl_uarfcn",  dlUarfcn,  DlUarfcn)
  PB_UINT32(4, "cpich_rscp", cpichRscp, CpichRscp)
  PB_UINT32(5, "cpich_ecn0", cpichEcn0, CpichEcn0)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One LTE neighbour measured from GSM.
class LteNcellMeas final : public Message<LteNcellMeas> {
  PB_MESSAGE(LteNcellMeas)
  PB_UINT32(1, "physical_cell_id", physicalCellId, PhysicalCellId)
  PB_UINT32(2, "bandwidth",        bandwidth,      Bandwidth)
  PB_UINT32(3, "rsrp",             rsrp,           Rsrp)
  PB_UINT32(4, "earfcn",           earfcn,         Earfcn)
  PB_UINT32(5, "rsrq",             rsrq,           Rsrq)
};

}  // namespace quorin

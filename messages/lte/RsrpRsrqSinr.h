#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Signal quality of one LTE cell on two antennas.
class RsrpRsrqSinr final : public Message<RsrpRsrqSinr> {
  PB_MESSAGE(RsrpRsrqSinr)
  PB_UINT32( 1, "phy_cell_id", phyCellId, PhyCellId)
  PB_SINT32( 4, "rsrp0",       rsrp0,     Rsrp0)
  PB_SINT32( 5, "rsrp1",       rsrp1,     Rsrp1)
  PB_SINT32( 7, "rsrq0",       rsrq0,     Rsrq0)
  PB_SINT32( 8, "rsrq1",       rsrq1,     Rsrq1)
  PB_SINT32(10, "sinr0",       sinr0,     Sinr0)
  PB_SINT32(11, "sinr1",       sinr1,     Sinr1)
};

}  // namespace quorin

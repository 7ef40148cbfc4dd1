#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// What the UMTS RRC connection is configured for: DRX cycle, MIMO, dual carrier.
class KCellularWcdmaRrcConfiguration final : public Message<KCellularWcdmaRrcConfiguration> {
  PB_MESSAGE(KCellularWcdmaRrcConfiguration)
  PB_UINT64(1, "timestamp",           timestamp,        Timestamp)
  PB_UINT32(2, "drx_cycle_length_ms", drxCycleLengthMs, DrxCycleLengthMs)
  PB_BOOL  (3, "is_mimo_configured",  isMimoConfigured, IsMimoConfigured)
  PB_BOOL  (4, "is_dc_configured",    isDcConfigured,   IsDcConfigured)
};

}  // namespace quorin

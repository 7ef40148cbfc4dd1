#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Transmit power of one subframe, used by LTE and UMTS.
class TxPowerInfo final : public Message<TxPowerInfo> {
  PB_MESSAGE(TxPowerInfo)
  PB_SINT32(1, "pucch_tx_power", pucchTxPower,  PucchTxPower)
  PB_SINT32(2, "pusch_tx_power", puschTxPower,  PuschTxPower)
  PB_UINT32(3, "subframe_index", subframeIndex, SubframeIndex)
};

}  // namespace quorin

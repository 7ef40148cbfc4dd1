#pragma once

#include "messages/codec/fields.h"
#include "messages/shared/TxPowerInfo.h"

namespace quorin {

/// LTE uplink transmit power, one entry per reported subframe.
class KCellularLteTxPower final : public Message<KCellularLteTxPower> {
  PB_MESSAGE(KCellularLteTxPower)
  PB_UINT64  (1, "timestamp",     timestamp,   Timestamp)
  PB_REPEATED(2, "tx_power_info", txPowerInfo, TxPowerInfo, txPowerInfos, TxPowerInfos, TxPowerInfo)
};

}  // namespace quorin

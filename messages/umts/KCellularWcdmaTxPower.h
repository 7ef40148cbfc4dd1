#pragma once

#include "messages/codec/fields.h"
#include "messages/shared/TxPowerInfo.h"

namespace quorin {

/// UMTS uplink transmit power, one entry per report.
class KCellularWcdmaTxPower final : public Message<KCellularWcdmaTxPower> {
  PB_MESSAGE(KCellularWcdmaTxPower)
  PB_UINT64  (1, "timestamp",     timestamp,   Timestamp)
  PB_REPEATED(2, "tx_power_info", txPowerInfo, TxPowerInfo, txPowerInfos, TxPowerInfos, TxPowerInfo)
};

}  // namespace quorin

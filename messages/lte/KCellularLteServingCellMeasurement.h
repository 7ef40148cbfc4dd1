#pragma once

#include "messages/codec/fields.h"
#include "messages/shared/RxInfo.h"

namespace quorin {

/// Receive levels of the LTE serving cell, one entry per antenna.
class KCellularLteServingCellMeasurement final : public Message<KCellularLteServingCellMeasurement> {
  PB_MESSAGE(KCellularLteServingCellMeasurement)
  PB_UINT64  (1, "timestamp",         timestamp,       Timestamp)
  PB_BOOL    (2, "is_connected_mode", isConnectedMode, IsConnectedMode)
  PB_REPEATED(3, "rx_info",           rxInfo,          RxInfo, rxInfos, RxInfos, RxInfo)
};

}  // namespace quorin

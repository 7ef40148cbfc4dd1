#pragma once

#include "messages/codec/fields.h"
#include "messages/shared/RxInfo.h"

namespace quorin {

/// Receive levels of the UMTS serving cell, one entry per antenna.
class KCellularWcdmaScellMeasurement final : public Message<KCellularWcdmaScellMeasurement> {
  PB_MESSAGE(KCellularWcdmaScellMeasurement)
  PB_UINT64  (1, "timestamp",      timestamp,     Timestamp)
  PB_BOOL    (2, "connected_mode", connectedMode, ConnectedMode)
  PB_REPEATED(3, "rx_info",        rxInfo,        RxInfo, rxInfos, RxInfos, RxInfo)
};

}  // namespace quorin

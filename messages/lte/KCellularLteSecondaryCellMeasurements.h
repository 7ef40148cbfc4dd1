#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/SccRxMeasurement.h"

namespace quorin {

/// Receive levels of the secondary component carriers.
class KCellularLteSecondaryCellMeasurements final : public Message<KCellularLteSecondaryCellMeasurements> {
  PB_MESSAGE(KCellularLteSecondaryCellMeasurements)
  PB_WHOLE_KEYS  // its reader neither cuts the field number to 16 bits nor asks the tag registry: meant
  PB_UINT64  (1, "timestamp",          timestamp,        Timestamp)
  PB_REPEATED(2, "scc_rx_measurement", sccRxMeasurement, SccRxMeasurement, sccRxMeasurements, SccRxMeasurements, SccRxMeasurement)
};

}  // namespace quorin

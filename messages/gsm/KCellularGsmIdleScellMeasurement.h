#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Receive level of the GSM serving cell in idle mode.
class KCellularGsmIdleScellMeasurement final : public Message<KCellularGsmIdleScellMeasurement> {
  PB_MESSAGE(KCellularGsmIdleScellMeasurement)
  PB_UINT64(1, "timestamp",           timestamp,         Timestamp)
  PB_UINT32(2, "scell_arfcn",         scellArfcn,        ScellArfcn)
  PB_UINT32(3, "simplified_l1_state", simplifiedL1State, SimplifiedL1State)
  PB_UINT32(4, "current_antenna",     currentAntenna,    CurrentAntenna)
  PB_SINT32(5, "idle_rxlev_dBm",      idleRxlevDBm,      IdleRxlevDBm)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// RF measurements during a circuit-switched GSM call.
class KCellularGsmCsRfMeasurement final : public Message<KCellularGsmCsRfMeasurement> {
  PB_MESSAGE(KCellularGsmCsRfMeasurement)
  PB_UINT64       (1, "timestamp",           timestamp,         Timestamp)
  PB_UINT32       (2, "scell_arfcn",         scellArfcn,        ScellArfcn)
  PB_UINT32       (3, "simplified_l1_state", simplifiedL1State, SimplifiedL1State)
  PB_UINT32       (4, "current_antenna",     currentAntenna,    CurrentAntenna)
  PB_PACKED_SINT32(5, "cs_tx_pwr",           csTxPwr,           CsTxPwr, csTxPwrs, CsTxPwrs)
  PB_UINT32       (6, "cs_rxlev_sub",        csRxlevSub,        CsRxlevSub)
  PB_UINT32       (7, "cs_rxqual_sub",       csRxqualSub,       CsRxqualSub)
  PB_UINT32       (8, "scell_band",          scellBand,         ScellBand)
};

}  // namespace quorin

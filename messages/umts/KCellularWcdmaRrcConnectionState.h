#pragma once

#include "messages/codec/fields.h"
#include "messages/umts/names.h"

namespace quorin {

/// The UMTS RRC connection state (3GPP TS 25.331) with its establishment and release causes.
class KCellularWcdmaRrcConnectionState final : public Message<KCellularWcdmaRrcConnectionState> {
  PB_MESSAGE(KCellularWcdmaRrcConnectionState)
  PB_UINT64(1, "timestamp",           timestamp,          Timestamp)
  PB_ENUM  (2, "state",               state,              State,              names::KWCDMA_RRC_CONN_STATE)
  PB_ENUM  (3, "establishment_cause", establishmentCause, EstablishmentCause, names::KRRC_EST)
  PB_ENUM  (4, "release_cause",       releaseCause,       ReleaseCause,       names::KRRC_REL)
};

}  // namespace quorin

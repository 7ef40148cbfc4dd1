#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// A tracking area identity; the PLMN bytes are kept as received.
class KCellularTrackingAreaId final : public Message<KCellularTrackingAreaId> {
  PB_MESSAGE(KCellularTrackingAreaId)
  PB_BYTES (1, "encoded_plmn", encodedPlmn, EncodedPlmn)
  PB_UINT32(2, "tac",          tac,         Tac)
};

}  // namespace quorin

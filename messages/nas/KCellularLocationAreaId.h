#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// A location area identity; the PLMN bytes are kept as received.
class KCellularLocationAreaId final : public Message<KCellularLocationAreaId> {
  PB_MESSAGE(KCellularLocationAreaId)
  PB_BYTES (1, "encoded_plmn", encodedPlmn, EncodedPlmn)
  PB_UINT32(2, "lac",          lac,         Lac)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// A routing area identity; the PLMN bytes are kept as received.
class RoutingAreaId final : public Message<RoutingAreaId> {
  PB_MESSAGE(RoutingAreaId)
  PB_BYTES (1, "encoded_plmn", encodedPlmn, EncodedPlmn)
  PB_UINT32(3, "lac",          lac,         Lac)
  PB_UINT32(4, "rac",          rac,         Rac)
};

}  // namespace quorin

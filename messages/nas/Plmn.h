#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One network identity, coded as in 3GPP TS 24.008, 10.5.1.3.
class Plmn final : public Message<Plmn> {
  PB_MESSAGE(Plmn)
  PB_BYTES(1, "encoded_plmn", encodedPlmn, EncodedPlmn)
};

}  // namespace quorin

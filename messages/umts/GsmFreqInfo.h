#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Priority of one GSM frequency, seen from UMTS.
class GsmFreqInfo final : public Message<GsmFreqInfo> {
  PB_MESSAGE(GsmFreqInfo)
  PB_UINT32(1, "arfcn", arfcn, Arfcn)
  PB_UINT32(2, "prio",  prio,  Prio)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Priority of one UMTS frequency, seen from UMTS.
class UtraFreqInfo final : public Message<UtraFreqInfo> {
  PB_MESSAGE(UtraFreqInfo)
  PB_UINT32(1, "uarfcn", uarfcn, Uarfcn)
  PB_UINT32(2, "prio",   prio,   Prio)
};

}  // namespace quorin

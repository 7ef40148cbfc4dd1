#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Priority of one LTE frequency, seen from UMTS.
class EutraFreqInfo final : public Message<EutraFreqInfo> {
  PB_MESSAGE(EutraFreqInfo)
  PB_UINT32(1, "earfcn", earfcn, Earfcn)
  PB_UINT32(2, "prio",   prio,   Prio)
};

}  // namespace quorin

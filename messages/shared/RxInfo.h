#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Receive levels of one antenna, used by LTE and UMTS.
class RxInfo final : public Message<RxInfo> {
  PB_MESSAGE(RxInfo)
  PB_SINT32(1, "rssi",       rssi,      Rssi)
  PB_UINT32(2, "rsrp_range", rsrpRange, RsrpRange)
  PB_UINT32(3, "rsrq_range", rsrqRange, RsrqRange)
  PB_SINT32(4, "snr",        snr,       Snr)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// Receive levels of one secondary component carrier.
class SccRxMeasurement final : public Message<SccRxMeasurement> {
  PB_MESSAGE(SccRxMeasurement)
  PB_WHOLE_KEYS  // its reader neither cuts the field number to 16 bits nor asks the tag registry: meant
  PB_UINT32(1, "index", index, Index)
  PB_SINT32(2, "rsrp",  rsrp,  Rsrp)
  PB_SINT32(3, "rsrq",  rsrq,  Rsrq)
  PB_SINT32(4, "snr",   snr,   Snr)
  PB_SINT32(5, "rssi",  rssi,  Rssi)
};

}  // namespace quorin

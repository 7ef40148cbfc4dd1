#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One GSM neighbour measured from UMTS.
class GsmCellMeasResult final : public Message<GsmCellMeasResult> {
  PB_MESSAGE(GsmCellMeasResult)
  PB_UINT32(1, "arfcn", arfcn, Arfcn)
  PB_UINT32(2, "bsic",  bsic,  Bsic)
  PB_UINT32(3, "rxlev", rxlev, Rxlev)
};

}  // namespace quorin

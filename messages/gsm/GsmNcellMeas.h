#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One GSM neighbour measured from GSM.
class GsmNcellMeas final : public Message<GsmNcellMeas> {
  PB_MESSAGE(GsmNcellMeas)
  PB_UINT32(1, "mcc",   mcc,   Mcc)
  PB_UINT32(2, "mnc",   mnc,   Mnc)
  PB_UINT32(3, "lac",   lac,   Lac)
  PB_UINT32(4, "ci",    ci,    Ci)
  PB_UINT32(5, "bsic",  bsic,  Bsic)
  PB_UINT32(6, "arfcn", arfcn, Arfcn)
  PB_UINT32(7, "rxlev", rxlev, Rxlev)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One GSM neighbour measured from LTE.
class EgwErrcNbrGeranMeas final : public Message<EgwErrcNbrGeranMeas> {
  PB_MESSAGE(EgwErrcNbrGeranMeas)
  PB_UINT32(1, "arfcn", arfcn, Arfcn)
  PB_UINT32(2, "bsic",  bsic,  Bsic)
  PB_UINT32(3, "rxlev", rxlev, Rxlev)
};

}  // namespace quorin

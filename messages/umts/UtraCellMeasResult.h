#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One UMTS neighbour measured from UMTS.
class UtraCellMeasResult final : public Message<UtraCellMeasResult> {
  PB_MESSAGE(UtraCellMeasResult)
  PB_UINT32(1, "uarfcn", uarfcn, Uarfcn)
  PB_UINT32(2, "band",   band,   Band)
  PB_UINT32(3, "psc",    psc,    Psc)
  PB_UINT32(4, "ecno",   ecno,   Ecno)
  PB_SINT32(5, "rscp",   rscp,   Rscp)
};

}  // namespace quorin

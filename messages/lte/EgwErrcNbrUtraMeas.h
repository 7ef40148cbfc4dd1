#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One UMTS neighbour measured from LTE.
class EgwErrcNbrUtraMeas final : public Message<EgwErrcNbrUtraMeas> {
  PB_MESSAGE(EgwErrcNbrUtraMeas)
  PB_UINT32(1, "uarfcn", uarfcn, Uarfcn)
  PB_UINT32(2, "psc",    psc,    Psc)
  PB_SINT32(3, "rscp",   rscp,   Rscp)
  PB_UINT32(4, "ecno",   ecno,   Ecno)
};

}  // namespace quorin

#pragma once

#include "messages/codec/fields.h"
#include "messages/nas/ElementaryFile.h"

namespace quorin {

/// Elementary files read from the SIM (3GPP TS 31.102).
class KCellularSimCardFiles final : public Message<KCellularSimCardFiles> {
  PB_MESSAGE(KCellularSimCardFiles)
  PB_UINT64  (1, "timestamp", timestamp, Timestamp)
  PB_REPEATED(2, "ef_list",   efList,    EfList, efLists, EfLists, ElementaryFile)
};

}  // namespace quorin

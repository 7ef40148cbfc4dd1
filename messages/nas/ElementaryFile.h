#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// One elementary file of the SIM and its content.
class ElementaryFile final : public Message<ElementaryFile> {
  PB_MESSAGE(ElementaryFile)
  PB_UINT32(1, "ef_id",   efId,    EfId)
  PB_BYTES (2, "content", content, Content)
};

}  // namespace quorin

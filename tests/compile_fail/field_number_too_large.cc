// number < kFieldNumberLimit|kFieldNumberLimit
#include "messages/codec/fields.h"

namespace quorin {

class Large final : public Message<Large> {
  PB_MESSAGE(Large)
#ifdef QUORIN_RIGHT
  PB_UINT32(63, "a", a, A)
#else
  PB_UINT32(64, "a", a, A)
#endif
};

}  // namespace quorin

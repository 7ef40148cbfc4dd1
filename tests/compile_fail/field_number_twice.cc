// overloaded|redeclared
#include "messages/codec/fields.h"

namespace quorin {

class Twice final : public Message<Twice> {
  PB_MESSAGE(Twice)
  PB_UINT32(1, "a", a, A)
#ifdef QUORIN_RIGHT
  PB_UINT32(2, "b", b, B)
#else
  PB_UINT32(1, "b", b, B)
#endif
};

}  // namespace quorin

#include "messages/codec/unrolled.h"
#include "messages/shared/RxInfo.h"
#include "messages/shared/TxPowerInfo.h"

namespace quorin {

template struct Unrolled<RxInfo>;
template struct Unrolled<TxPowerInfo>;

}  // namespace quorin

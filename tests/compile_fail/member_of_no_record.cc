// recordOf
#include "metrics/record_rows.h"

struct Stray {
  quorin::List list;
};

#ifdef QUORIN_RIGHT
constexpr auto kIn = quorin::in<&quorin::LTE::TxPower>;
#else
constexpr auto kIn = quorin::in<&Stray::list>;
#endif

// no such name
#include "messages/lte/names.h"

#ifdef QUORIN_RIGHT
constexpr auto kIdle = quorin::valueOf(quorin::names::KLTE_RRC_STATE, "KLTE_RRC_STATE_IDLE");
#else
constexpr auto kIdle = quorin::valueOf(quorin::names::KLTE_RRC_STATE, "KLTE_RRC_STATE_IDEL");
#endif

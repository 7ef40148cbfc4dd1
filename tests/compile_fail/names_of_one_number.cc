// must ascend
#include "messages/codec/enum_table.h"

#ifdef QUORIN_RIGHT
constexpr auto kNames = quorin::enumTable("T", {{0, "A"}, {1, "B"}});
#else
constexpr auto kNames = quorin::enumTable("T", {{1, "A"}, {1, "B"}});
#endif

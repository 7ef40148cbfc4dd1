#pragma once

#include "messages/codec/enum_table.h"

namespace quorin::names {

/// Whether a GSM call is up. There is no name for 0.
inline constexpr auto DEDICATED_STATE = enumTable("DEDICATED_STATE", {
    {1, "DEDICATED_STATE"},
    {2, "NON_DEDICATED_STATE"},
});

}  // namespace quorin::names

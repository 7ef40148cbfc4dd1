#pragma once

#include "platform/platform.h"

namespace quorin {

/// The interface description: the first page, and where the rows of each page lead.
[[nodiscard]] const UIStoryboard& interfaceDescription();

}  // namespace quorin

#pragma once

namespace quorin::bus {

/// Makes the service on the bus the way of the client library. Each manager has one thread of its
/// own for the bus; its handlers run on its queue.
void install();

}  // namespace quorin::bus

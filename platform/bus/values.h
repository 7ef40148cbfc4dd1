#pragma once

#include <systemd/sd-bus.h>

#include "platform/baseband/xpc.h"

namespace quorin::bus {

/// Inter-process dictionaries cross as a{sv}: integers as x, bytes as ay, texts as s, booleans as
/// b, real numbers as d, and the null object as an empty signature, g.

/// Appends the dictionary; anything but a dictionary as an empty one. Negative: the bus's error.
[[nodiscard]] int appendDictionary(sd_bus_message* message, xpc_object_t dictionary);

/// Reads one a{sv}. Values of other types are left out. Null when there is no dictionary to read.
[[nodiscard]] XpcRef readDictionary(sd_bus_message* message);

}  // namespace quorin::bus

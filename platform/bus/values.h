#pragma once

#include <systemd/sd-bus.h>

#include <string>

#include "platform/baseband/xpc.h"

namespace quorin::bus {

/// Inter-process dictionaries cross as a{sv}: integers as x, bytes as ay, texts as s, booleans as
/// b, real numbers as d, and the null object as an empty signature, g.

/// Appends the dictionary; anything but a dictionary as an empty one. Negative: the bus's error.
[[nodiscard]] int appendDictionary(sd_bus_message* message, xpc_object_t dictionary);

/// The most that a dictionary may hold, so that no message makes its reader work or hold more.
inline constexpr std::size_t kMostKeys = 64;
inline constexpr std::size_t kMostBytesEach = 1 << 20;  // in a key, a text or a byte string

/// Reads one a{sv}. Values of other types are left out. Null when there is no dictionary to read or
/// it holds too much; `reason` then says which.
[[nodiscard]] XpcRef readDictionary(sd_bus_message* message, std::string& reason);

}  // namespace quorin::bus

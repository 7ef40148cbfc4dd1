#pragma once

#include <systemd/sd-bus.h>

#include "basebandd/modem/Reading.h"

namespace quorin::modem {

/// Reads the next value of a message, of whatever type; beyond the message's end, or too deep,
/// nothing. Structures become lists, and keys that are numbers their digits.
[[nodiscard]] Reading readReading(sd_bus_message* message);

/// Reads the next value when it is a dictionary; else no readings.
[[nodiscard]] Readings readReadings(sd_bus_message* message);

}  // namespace quorin::modem

#pragma once

#include <cstdint>

// How levels are told, whichever source has them.

namespace quorin {

/// The nearest integer; halves away from zero.
[[nodiscard]] std::int32_t rounded(double x);

/// An unsigned report index: 0 up to `lowest`, then one step a `step` dB, at most `last`.
/// 3GPP TS 36.133 9.1.4 and 9.1.7, 25.133 9.1.1 and 9.1.2, 45.008 8.1.4.
[[nodiscard]] std::uint32_t reportIndex(double level, double lowest, double step,
                                        std::uint32_t last);

}  // namespace quorin

#pragma once

#include <vector>

#include "messages/catalogue.h"

namespace quorin::test {

/// One metric event of the corpus.
struct Payload {
  const CatalogueRow* row;
  std::vector<std::uint8_t> bytes;
};

/// So many payloads of each of the 30 handled metrics, in random order: each field is present with
/// probability 0.96, a repeated one has 1 to 8 elements, values are such as a modem reports. The
/// same on every machine.
[[nodiscard]] std::vector<Payload> corpus(std::size_t ofEachMetric);

}  // namespace quorin::test

#include <fstream>
#include <random>

#include "messages/catalogue.h"
#include "tests/support/rig.h"
#include "tests/support/tables.h"
#include "tests/support/wire_properties.h"

namespace quorin::test {
namespace {

/// Payloads of the recording that ships with the application: one of each metric and more.
std::vector<std::vector<std::uint8_t>> recordedPayloads() {
  constexpr std::string_view kBefore = "\"kKeyPayload\":\"";
  std::vector<std::vector<std::uint8_t>> payloads;
  std::ifstream file(QUORIN_SOURCE_DIR "/app/resources/drive.jsonl");
  for (std::string line; std::getline(file, line);) {
    const auto start = line.find(kBefore) + kBefore.size();
    payloads.push_back(bytes(line.substr(start, line.find('"', start) - start)));
  }
  return payloads;
}

/// One random change: a flipped bit, a cut, a doubled piece, a byte put in, or a huge varint.
void mutate(std::vector<std::uint8_t>& payload, std::mt19937& random) {
  const std::size_t at = payload.empty() ? 0 : random() % payload.size();
  const auto here = payload.begin() + static_cast<std::ptrdiff_t>(at);
  switch (random() % 5) {
    case 0:
      if (!payload.empty()) *here = static_cast<std::uint8_t>(*here ^ (1U << random() % 8));
      break;
    case 1: payload.resize(at); break;
    case 2: {
      const std::vector<std::uint8_t> tail(here, payload.end());
      payload.insert(payload.end(), tail.begin(), tail.end());
      break;
    }
    case 3: payload.insert(here, static_cast<std::uint8_t>(random())); break;
    default: payload.insert(here, random() % 12, 0xff); break;
  }
}

TEST(EveryByteString, IsReadWithoutACrashAndSurvivesWritingByEveryClass) {
  RecordedLog log;
  std::mt19937 random(7);
  auto payloads = recordedPayloads();
  ASSERT_GT(payloads.size(), 300U);
  for (int round = 0; round < 1000; ++round) {
    for (const CatalogueRow& row : catalogue()) {
      auto payload = payloads[random() % payloads.size()];
      for (std::size_t changes = random() % 6; changes > 0; --changes) mutate(payload, random);
      ASSERT_EQ(brokenWireProperty(*row.table, payload), "")
          << row.table->name << " " << hexText(payload);
    }
    (void)log.systemLines();
  }
}

TEST(EveryByteString, OfRandomBytesIsReadToo) {
  RecordedLog log;
  std::mt19937 random(8);
  for (const CatalogueRow& row : catalogue())
    for (int i = 0; i < 1000; ++i) {
      std::vector<std::uint8_t> payload(random() % 64);
      for (auto& byte : payload) byte = static_cast<std::uint8_t>(random());
      // Keys of small fields make the bytes reach further than noise would.
      for (std::size_t at = 0; at < payload.size(); at += 1 + random() % 7)
        payload[at] = static_cast<std::uint8_t>((random() % 16) << 3 | random() % 6);
      ASSERT_EQ(brokenWireProperty(*row.table, payload), "")
          << row.table->name << " " << hexText(payload);
    }
}

}  // namespace
}  // namespace quorin::test

#include <fstream>
#include <random>

#include "messages/catalogue.h"
#include "tests/support/corpus.h"
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

/// What a reader made of a payload: the message, and everything else that can be seen.
struct ReadResult {
  Ref<AnyMessage> message;
  bool ok;
  std::uint64_t position;
  bool error;
  std::vector<std::string> lines;
};

ReadResult readBy(PBDataReader reader, const MessageTable& table, RecordedLog& log) {
  auto message = table.make();
  const bool ok = message->readFrom(reader);
  return {message, ok, reader._pos, reader._error, log.systemLines()};
}

/// The unrolled reader helps only where bytes may be read behind the payload. Empty: both agree.
std::string differenceOfReaders(const MessageTable& table, Bytes payload, RecordedLog& log) {
  const Ref<Data> padded = make<Data>(payload);
  const ReadResult fast = readBy(PBDataReader(padded.get()), table, log);
  const std::vector<std::uint8_t> bare(payload.begin(), payload.end());
  const ReadResult exact = readBy(PBDataReader(Bytes(bare)), table, log);
  if (fast.ok != exact.ok) return "the results differ";
  if (fast.position != exact.position || fast.error != exact.error) return "the readers differ";
  if (fast.lines != exact.lines) return "the log lines differ";
  const std::string dictionary = printed(exact.message->dictionaryRepresentation());
  if (printed(fast.message->dictionaryRepresentation()) != dictionary)
    return "the dictionaries differ";
  if (!fast.message->isEqual(*exact.message)) return "the fields or their presence differ";
  if (printed(fast.message->dictionaryRepresentation()) != dictionary)
    return "the dictionaries differ once a field was asked for";
  Elements* const usual = table.read(padded->bytes());
  const Dictionary direct(Ref<Elements>::owning(usual));
  const auto lines = log.systemLines();
  if (!usual) return lines.empty() ? "" : "a refused payload wrote lines";
  if (!exact.ok) return "a malformed payload became a dictionary";
  if (lines != exact.lines) return "the log lines of the dictionary without a message differ";
  return printed(direct) == dictionary ? "" : "the dictionary without a message differs";
}

TEST(TheDictionaryWithoutAMessage, IsMadeOfEveryPayloadOfAscendingFields) {
  RecordedLog log;
  for (const auto& [row, payload] : corpus(67)) {
    Elements* const usual = row->table->read(make<Data>(Bytes(payload))->bytes());
    const Dictionary direct(Ref<Elements>::owning(usual));
    EXPECT_TRUE(usual) << row->table->name << " " << hexText(payload);
  }
}

TEST(TheUnrolledReader, AgreesWithTheExactOneOnPayloadsCutAnywhere) {
  RecordedLog log;
  const auto payloads = corpus(67);
  ASSERT_GE(payloads.size(), 2'000U);
  for (const auto& [row, payload] : payloads)
    for (std::size_t length = 0; length <= payload.size(); ++length)
      ASSERT_EQ(differenceOfReaders(*row->table, Bytes(payload).first(length), log), "")
          << row->table->name << " " << hexText(Bytes(payload).first(length));
}

TEST(TheUnrolledReader, AgreesWithTheExactOneOnRecordedPayloadsInEveryClass) {
  RecordedLog log;
  for (const auto& payload : recordedPayloads())
    for (const CatalogueRow& row : catalogue())
      ASSERT_EQ(differenceOfReaders(*row.table, payload, log), "")
          << row.table->name << " " << hexText(payload);
}

TEST(TheUnrolledReader, AgreesWithTheExactOneOnChangedPayloads) {
  RecordedLog log;
  std::mt19937 random(11);
  const auto payloads = corpus(67);
  for (int round = 0; round < 200'000; ++round) {
    auto [row, payload] = payloads[random() % payloads.size()];
    for (std::size_t changes = 1 + random() % 4; changes > 0; --changes) mutate(payload, random);
    ASSERT_EQ(differenceOfReaders(*row->table, payload, log), "")
        << row->table->name << " " << hexText(payload);
  }
}

/// With so many groups more than the number needs.
void appendVarint(std::vector<std::uint8_t>& bytes, std::uint64_t number, std::size_t more = 0) {
  for (; number >= 0x80; number >>= 7) bytes.push_back(static_cast<std::uint8_t>(number | 0x80));
  bytes.push_back(static_cast<std::uint8_t>(number | (more > 0 ? 0x80 : 0)));
  for (; more > 0; --more) bytes.push_back(more > 1 ? 0x80 : 0);
}

TEST(TheUnrolledReader, AgreesWithTheExactOneOnNumbersOfEveryLengthInEveryScalarField) {
  RecordedLog log;
  for (const CatalogueRow& row : catalogue()) {
    for (const Field& first : row.table->fields) {
      if (first.kind > Kind::boolean) continue;
      for (unsigned bits = 0; bits < 64; ++bits) {
        const std::uint64_t power = std::uint64_t{1} << bits;
        for (const std::uint64_t number : {power - 1, power, power + power / 3}) {
          for (const std::size_t more : {0U, 1U, 2U}) {
            std::vector<std::uint8_t> payload;
            for (const Field& field : row.table->fields) {
              if (field.kind > Kind::boolean || field.number < first.number) continue;
              appendVarint(payload, field.number << 3);
              if (&field == &first)
                appendVarint(payload, number, more);
              else
                appendVarint(payload, 1);
            }
            ASSERT_EQ(differenceOfReaders(*row.table, payload, log), "")
                << row.table->name << " " << hexText(payload);
          }
        }
      }
    }
  }
}

TEST(AMessageThatWasRead, TakesASecondPayloadAsItWouldTakeBothInOne) {
  RecordedLog log;
  const auto payloads = corpus(67);
  for (std::size_t i = 0; i < payloads.size(); ++i) {
    const MessageTable& table = *payloads[i].row->table;
    const auto& first = payloads[i].bytes;
    std::size_t next = i + 1;
    while (payloads[next % payloads.size()].row->table != &table) ++next;
    const auto& second = payloads[next % payloads.size()].bytes;
    const auto inTwo = table.make();
    ASSERT_TRUE(inTwo->initWithData(make<Data>(Bytes(first))));
    ASSERT_TRUE(inTwo->initWithData(make<Data>(Bytes(second))));
    auto both = first;
    both.insert(both.end(), second.begin(), second.end());
    const ReadResult inOne = readBy(PBDataReader(Bytes(both)), table, log);
    ASSERT_TRUE(inOne.ok);
    ASSERT_EQ(printed(inTwo->dictionaryRepresentation()),
              printed(inOne.message->dictionaryRepresentation()))
        << table.name;
    ASSERT_TRUE(inTwo->isEqual(*inOne.message)) << table.name;
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

#include <google/protobuf/wire_format_lite.h>

#include "fuzz/support/promise.h"
#include "fuzz/support/wire_rules.h"
#include "messages/catalogue.h"
#include "tests/differential/peer.h"

namespace {

using namespace quorin;
using google::protobuf::internal::WireFormatLite;
using test::Peer;

std::string written(const AnyMessage& message) {
  PBDataWriter writer;
  message.writeTo(writer);
  return {writer.bytes().begin(), writer.bytes().end()};
}

struct Comparison {
  const Peer& peer;
  const CatalogueRow& row;
  std::string payload;

  void promise(bool kept, std::string_view what, const Dictionary& ours,
               const Dictionary& theirs) const {
    fuzz::promise(kept, what, row.table->name, ours, theirs);
  }

  void run() const {
    const auto ours = row.table->make();
    const bool ok = ours->initWithData(
        make<Data>(Bytes(reinterpret_cast<const std::uint8_t*>(payload.data()), payload.size())));
    const Dictionary fields = ours->dictionaryRepresentation();

    // Text that is no UTF-8 stays as it is, and is shown as UTF-8.
    const std::string shown = printed(fields);
    promise(WireFormatLite::VerifyUtf8String(shown.data(), static_cast<int>(shown.size()),
                                             WireFormatLite::PARSE, nullptr),
            "what is shown is UTF-8", fields, fields);

    // By our rules, whether it succeeds or not, the standard reads the same from plain bytes.
    const auto byRules = peer.make(row.table->name);
    const fuzz::Understood understood = fuzz::understand(*byRules->GetDescriptor(), payload);
    const bool isPlain = byRules->ParseFromString(understood.standard);
    const Dictionary expected = Peer::dictionaryOf(*byRules, Peer::Nameless::shown);
    promise(isPlain, "the standard library reads what the rules give", fields, expected);
    promise(ok == understood.ok, "reading succeeds by the rules", fields, expected);
    promise(fields == expected, "the fields are those of the rules", fields, expected);
    promise(written(*ours) == understood.standard, "what is written are those fields", fields,
            expected);

    // Where no rule of our own is needed, it reads the same from the payload itself.
    if (understood.differences.any()) return;
    const auto theirs = peer.make(row.table->name);
    const bool theirsOk = theirs->ParseFromString(payload);
    const Dictionary theirFields = Peer::dictionaryOf(*theirs);
    promise(ok == theirsOk, "the standard library succeeds as well", fields, theirFields);
    if (!ok) return;
    promise(fields == theirFields, "the standard library reads the same", fields, theirFields);
    theirs->DiscardUnknownFields();
    promise(written(*ours) == theirs->SerializeAsString(), "both write the same", fields,
            theirFields);
  }
};

}  // namespace

// The first byte chooses the message class, the rest is its payload.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const LogSink before = setSystemLogSink([](std::string_view) {});
  static const Peer peer;
  google::protobuf::SetLogHandler(nullptr);  // it complains of text that is no UTF-8
  if (size == 0) return 0;
  const CatalogueRow& row = catalogue()[bytes[0] % catalogue().size()];
  Comparison{peer, row, std::string(bytes + 1, bytes + size)}.run();
  return 0;
}

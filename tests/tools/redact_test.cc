#include <random>
#include <set>
#include <sstream>

#include "messages/catalogue.h"
#include "messages/nas/ElementaryFile.h"
#include "tests/support/wire.h"
#include "tests/tools/import_rig.h"
#include "tools/metricctl/commands.h"
#include "tools/metricctl/redaction.h"

namespace quorin::test {
namespace {

using metricctl::Redactor;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string lineOf(std::string_view className, const std::string& hex) {
  return metricctl::textOf({.id = catalogueRow(className)->metricID, .payload = hex});
}

/// What a redactor makes of a payload, in hexadecimal, or why it makes nothing.
std::string redacted(Redactor& redactor, std::string_view className, const std::string& hex) {
  std::string reason;
  const auto line = redactor.redacted(lineOf(className, hex), reason);
  return line ? *line->line.payload : reason;
}

struct Checked {
  int exitCode;
  std::string complaints;
};

Checked check(const std::string& recording, const std::string& original = "") {
  writeFile("recording", recording);
  writeFile("original", original);
  std::vector<std::string> words = {"metricctl", "check-redacted", inFolder("recording")};
  if (!original.empty()) words.insert(words.end(), {"--against", inFolder("original")});
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  ::testing::internal::CaptureStderr();
  const int exitCode = metricctl::run(static_cast<int>(arguments.size()), arguments.data());
  return {exitCode, ::testing::internal::GetCapturedStderr()};
}

constexpr char kMm[] = "KCellularMmCommonInfo";
constexpr char kSim[] = "KCellularSimCardFiles";
constexpr char kBearers[] = "KCellularActivatedBearerContexts";
constexpr char kSinr[] = "KCellularLteRsrpRsrqSinr";

struct Case {
  const char* says;
  const char* className;
  const char* before;
  const char* after;
};

// clang-format off
const Case kCases[] = {
    {"an IMSI keeps network, length and parity", kMm, "1:7 2:<0910101032547698>",
     "1:7 2:<0910100000000010>"},
    {"an IMSI of an even count keeps its filler", kMm, "2:<01101010325476f8>",
     "2:<01101000000000f1>"},
    {"an IMSI of a country with three-digit networks keeps them", kMm, "2:<3901144123456789>",
     "2:<3901140100000010>"},
    {"a mobile identity of another type becomes a number", kMm, "2:<3a85739510325476>",
     "2:<0000000000000001>"},
    {"an IMSI without a subscriber becomes a number", kMm, "2:<091010>", "2:<000001>"},
    {"halves that are no digits become a number", kMm, "2:<09101010325476a8>",
     "2:<0000000000000001>"},
    {"an empty IMSI stays", kMm, "2:<>", "2:<>"},
    {"networks and areas stay", kMm, "3:{1:<00f110>} 4:{1:<00f110> 2:7} 6:{1:<130014> 2:8}",
     "3:{1:<00f110>} 4:{1:<00f110> 2:7} 6:{1:<130014> 2:8}"},
    {"a network of other than three bytes becomes a number", kMm,
     "3:{1:<0910101032547698>} 4:{1:<11>}", "3:{1:<0000000000000001>} 4:{1:<01>}"},

    {"EF IMSI keeps its card coding", kSim, "2:{1:28423 2:<080910101032547698>}",
     "2:{1:28423 2:<080910100000000010>}"},
    {"an EF IMSI that holds none becomes a number", kSim, "2:{1:28423 2:<070110103254f6ffff>}",
     "2:{1:28423 2:<000000000000000001>}"},
    {"a short EF IMSI stays filled up", kSim, "2:{1:28423 2:<050910103254ffffff>}",
     "2:{1:28423 2:<050910100010ffffff>}"},
    {"EF ICCID keeps 89, its length and a right check digit", kSim,
     "2:{1:12258 2:<98000101214365870951>} 2:{1:12258 2:<981032547698103254f6>}",
     "2:{1:12258 2:<98000000000000000021>} 2:{1:12258 2:<980000000000000010f1>}"},
    {"an ICCID that does not begin with 89 becomes a number", kSim,
     "2:{1:12258 2:<10325476981032547698>}", "2:{1:12258 2:<00000000000000000001>}"},
    {"other files become numbers of their length", kSim,
     "2:{1:28478 2:<01ffffff>} 2:{1:28479 2:<02ffffff>} 2:{1:28478 2:<01ffffff>} 2:{2:<aabb>}",
     "2:{1:28478 2:<00000001>} 2:{1:28479 2:<00000002>} 2:{1:28478 2:<00000001>} 2:{2:<0001>}"},
    {"an empty file stays", kSim, "2:{1:28423 2:<>} 2:{1:28423}", "2:{1:28423 2:<>} 2:{1:28423}"},
    {"the same IMSI in file and identity gets the same number", kSim,
     "2:{1:28423 2:<080910101032547698>} 2:{1:28423 2:<080910101032547699>} "
     "2:{1:28423 2:<080910101032547698>}",
     "2:{1:28423 2:<080910100000000010>} 2:{1:28423 2:<080910100000000020>} "
     "2:{1:28423 2:<080910100000000010>}"},

    {"a TMSI keeps the two bits that tell whose it is", "KCellularMmContext", "5:2271560481",
     "5:2147483649"},
    {"a P-TMSI, too", "KCellularGmmContext", "5:3735928559", "5:3221225473"},
    {"an M-TMSI keeps nothing", "KCellularEmmContext", "6:{1:32769 2:3 3:3735928559}",
     "6:{1:32769 2:3 3:1}"},
    {"no TMSI stays none", "KCellularMmContext", "5:4294967295", "5:4294967295"},

    {"addresses stay of their kind", kBearers,
     "3:{5:<c0a80117>} 3:{5:<20010db8000000000000000000000009>} "
     "3:{5:<c0a8011720010db8000000000000000000000009>}",
     "3:{5:<0a000001>} 3:{5:<20010db8000000000000000000000001>} "
     "3:{5:<0a00000120010db8000000000000000000000001>}"},
    {"the address that is none stays", kBearers, "3:{5:<00000000> 7:<>}", "3:{5:<00000000> 7:<>}"},
    {"name servers are addresses", kBearers, "3:{5:<c0a80117> 7:<08080808> 9:<08080404>}",
     "3:{5:<0a000001> 7:<0a000002> 9:<0a000003>}"},
    {"an address of another length becomes a number", kBearers, "3:{5:<fe80000000000001>}",
     "3:{5:<0000000000000001>}"},
    {"access points that many have stay, others are numbered", kBearers,
     "3:{1:1 3:'internet'} 3:{1:2 3:'ims'} 3:{1:3 3:'works.example'} 3:{1:4 3:'Internet'} 3:{3:''}",
     "3:{1:1 3:'internet'} 3:{1:2 3:'ims'} 3:{1:3 3:'apn-1.invalid'} 3:{1:4 3:'apn-2.invalid'} "
     "3:{3:''}"},
    {"a call's identifier is numbered", kSinr, "3:'anna@192.0.2.7' 6:5", "3:'call-1' 6:5"},

    {"what is no identity stays as it is", "KCellularLteScellInfo",
     "1:5 2:301 7:28434433 9:65 11:262 12:1", "1:5 2:301 7:28434433 9:65 11:262 12:1"},
};
// clang-format on

TEST(Redacting, ReplacesIdentitiesInTheirOwnCodings) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.says);
    Redactor redactor;
    EXPECT_EQ(redacted(redactor, row.className, wire(row.before)), wire(row.after));
    Redactor again;
    EXPECT_EQ(redacted(again, row.className, wire(row.after)), wire(row.after));
  }
}

TEST(Redacting, KeepsEqualEqualAndDifferentDifferentOverARecording) {
  Redactor redactor;
  const auto imsi = [&](const char* digits) {
    return redacted(redactor, kMm, wire("2:<" + std::string(digits) + ">"));
  };
  EXPECT_EQ(imsi("0910101032547698"), wire("2:<0910100000000010>"));
  EXPECT_EQ(imsi("0910101032547699"), wire("2:<0910100000000020>"));
  EXPECT_EQ(imsi("0910101032547698"), wire("2:<0910100000000010>"));
  EXPECT_EQ(imsi("2926101032547698"), wire("2:<2926100000000010>")) << "another network's first";
  EXPECT_EQ(redacted(redactor, kSim, wire("2:{1:28423 2:<080910101032547699>}")),
            wire("2:{1:28423 2:<080910100000000020>}"));
}

TEST(Redacting, LeavesOutWhatNoFieldHolds) {
  RecordedLog log;
  Redactor redactor;
  const std::string rrc = "KCellularLteRrcState";
  EXPECT_EQ(redacted(redactor, rrc, "0801" + wire("15:<0910101032547698>")), "0801") << "unknown";
  EXPECT_EQ(redacted(redactor, rrc, wire("19:310150123456789") + "0801"), "0801") << "a tag";
  EXPECT_EQ(redacted(redactor, rrc, "08010c0910101032547698"), "0801") << "behind a group's end";
  EXPECT_EQ(redacted(redactor, rrc, "08818000"), "0801") << "a long spelling";
  EXPECT_EQ(redacted(redactor, rrc, "08070801"), "0801") << "a value that a later one replaces";
  EXPECT_THAT(log.systemLines(), ::testing::IsEmpty()) << "decoders tell values of unknown tags";
}

TEST(Redacting, WritesNothingOfWhatItCannotKnow) {
  const std::pair<const char*, const char*> kRefused[] = {
      {R"({"kKeyMetricID":3952132,"kKeyPayload":"0880"})",
       "KCellularLteRrcState: the payload is malformed"},
      {R"({"kKeyMetricID":5,"kKeyPayload":"0801"})", "no class has the metric ID 5"},
      {R"({"kKeyPayload":"0801"})", "kKeyMetricID is no integer"},
      {R"({"kKeyMetricID":3952132.0})", "kKeyMetricID is no integer"},
      {R"({"kKeyMetricID":3952132,"kKeyPayload":5})", "kKeyPayload is not hexadecimal"},
      {R"({"kKeyMetricID":3952132,"kKeyPayload":"0"})", "\"kKeyPayload\" is not hexadecimal"},
      {R"({"kKeyMetricID":3952132,"kKeyProfileID":310150123456789})",
       "kKeyProfileID is not from 0 to 255"},
      {R"({"kKeyMetricID":3952132,"kKeyProfileID":"310150123456789"})",
       "kKeyProfileID is no integer"},
      {"310150123456789", "not a JSON object"},
      {"nonsense", "not JSON"},
  };
  for (const auto& [line, why] : kRefused) {
    std::string reason;
    EXPECT_FALSE(Redactor().redacted(std::string_view(line), reason)) << line;
    EXPECT_EQ(reason, why);
  }
}

TEST(Redacting, KeepsAnEventWithoutPayloadAndDropsForeignEntries) {
  std::string reason;
  const auto line = Redactor().redacted(
      std::string_view(R"({"t":5.7,"kKeyMetricID":3952132,"imsi":"310150123456789"})"), reason);
  ASSERT_TRUE(line) << reason;
  EXPECT_EQ(metricctl::textOf(line->line), R"({"kKeyMetricID":3952132,"t":5})");
}

TEST(CheckRedacted, RefusesWhateverIsHiddenBesideTheFields) {
  const std::string rrc = "KCellularLteRrcState";
  const auto lines = [](const std::string& text) { return text + "\n"; };
  const std::string good = lineOf(rrc, "0801");
  EXPECT_EQ(check(lines(good)).complaints, "");
  EXPECT_EQ(check(lines(good)).exitCode, 0);
  const std::pair<const char*, std::string> kHidden[] = {
      {"an unknown field", lineOf(rrc, "0801" + wire("15:<0910101032547698>"))},
      {"a registered tag", lineOf(rrc, wire("19:310150123456789") + "0801")},
      {"bytes behind a group's end", lineOf(rrc, "08010c0910101032547698")},
      {"a varint's long spelling", lineOf(rrc, "08818000")},
      {"a value that a later one replaces", lineOf(rrc, "08070801")},
      {"fields in another order", lineOf(rrc, "10030801")},
      {"an empty packed field", lineOf("KCellularLteSelReselCellInfo", "1200")},
      {"capitals", lineOf(rrc, "08AB01")},
      {"a malformed payload", lineOf(rrc, "080110")},
      {"a foreign entry", R"({"kKeyMetricID":3952132,"imsi":"310150123456789"})"},
      {"an entry given twice", R"({"kKeyMetricID":310150123456789,"kKeyMetricID":3952132})"},
      {"a part of a millisecond", R"({"kKeyMetricID":3952132,"t":5.310150123456789})"},
      {"blanks", R"({"kKeyMetricID": 3952132})"},
      {"a line of blanks", " \t "},
      {"a comment", "# 310150123456789"},
  };
  for (const auto& [says, line] : kHidden) {
    const Checked checked = check(lines(good) + lines(line) + lines(good));
    EXPECT_EQ(checked.exitCode, 1) << says;
    EXPECT_THAT(checked.complaints, StartsWith(inFolder("recording") + ":2: ")) << says;
    EXPECT_EQ(std::ranges::count(checked.complaints, '\n'), 1) << says << checked.complaints;
  }
}

TEST(CheckRedacted, NamesLineMetricAndField) {
  const Checked checked = check(lineOf("KCellularLteRrcState", "0801") + "\n" +
                                lineOf("KCellularEmmContext", wire("6:{3:3735928559}")) + "\n");
  EXPECT_EQ(checked.exitCode, 1);
  EXPECT_EQ(checked.complaints,
            inFolder("recording") + ":2: KCellularEmmContext guti.m_tmsi is not redacted\n");
}

TEST(CheckRedacted, SaysWhatItCannotRead) {
  writeFile("recording", "");
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"metricctl", "check-redacted", inFolder("missing")},
        {"metricctl", "check-redacted", inFolder(".")},
        {"metricctl", "check-redacted", inFolder("recording"), "--against", inFolder("missing")}}) {
    auto copies = words;
    std::vector<char*> arguments;
    for (std::string& word : copies) arguments.push_back(word.data());
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(metricctl::run(static_cast<int>(arguments.size()), arguments.data()), 2);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), StartsWith("metricctl: "));
  }
}

/// An original line, and a line that the checker alone takes but that still tells its identity.
struct Trace {
  const char* says;
  const char* originalClass;
  const char* original;
  const char* tracedClass;
  std::string traced;
};

TEST(CheckRedacted, AgainstTheOriginalFindsItsIdentitiesHoweverSpelt) {
  constexpr char kImsi[] = "2:<0910101032547698>";  // 001 01 0123456789
  constexpr char kTmsi[] = "5:2271560481";          // 87654321
  constexpr char kRrc[] = "KCellularLteRrcState";
  const Trace kTraces[] = {
      {"an IMSI as a time stamp", kMm, kImsi, kRrc, wire("1:1010123456789")},
      {"a subscriber as a time stamp", kMm, kImsi, kRrc, wire("1:123456789")},
      {"a TMSI as a cell identity", "KCellularMmContext", kTmsi, "KCellularLteScellInfo",
       wire("7:2271560481")},
      {"an IMSI of an M-TMSI's digits", "KCellularMmContext", kTmsi, kRrc, wire("1:2271560481")},
  };
  for (const Trace& trace : kTraces) {
    SCOPED_TRACE(trace.says);
    const std::string traced = lineOf(trace.tracedClass, trace.traced) + "\n";
    const std::string original = lineOf(trace.originalClass, wire(trace.original)) + "\n";
    EXPECT_EQ(check(traced).exitCode, 0) << "a number may be anything";
    const Checked checked = check(traced, original);
    EXPECT_EQ(checked.exitCode, 1);
    EXPECT_THAT(checked.complaints,
                StartsWith(inFolder("recording") + ":1: holds a " + trace.originalClass));
  }
}

TEST(CheckRedacted, AgainstTheOriginalKnowsEverySpellingInBytes) {
  constexpr char kMsin[] = "0123456789";
  struct Spelt {
    const char* says;
    const char* className;
    const char* identity;
    std::string bytes;
  };
  const Spelt kSpelt[] = {
      {"an IMSI's own coding", kMm, "2:<0910101032547698>", "0910101032547698"},
      {"in swapped halves, shifted by one", kMm, "2:<0910101032547698>", "1032547698"},
      {"in halves as read", kMm, "2:<0910101032547698>", kMsin},
      {"as text", kMm, "2:<0910101032547698>", hexText(bytes("30313233343536373839"))},
      {"in the other order", kMm, "2:<0910101032547698>", "9876543210101009"},
      {"an address as text", kBearers, "3:{5:<c0a80117>}", "3139322e3136382e312e3233"},
      {"an IPv6 address as text", kBearers, "3:{5:<20010db8000000000000000000000009>}",
       "323030313a6462383a3a39"},
      {"an access point in capitals", kBearers, "3:{3:'works.example'}",
       "574f524b532e4558414d504c45"},
      {"a TMSI's bytes", "KCellularMmContext", "5:2271560481", "87654321"},
      {"in the other order", "KCellularMmContext", "5:2271560481", "21436587"},
      {"a TMSI in hexadecimal text", "KCellularMmContext", "5:2271560481", "3837363534333231"},
      {"an ICCID's digits", kSim, "2:{1:12258 2:<98000101214365870951>}", "001010123456789015"},
  };
  for (const Spelt& row : kSpelt) {
    SCOPED_TRACE(std::string(row.className) + " " + row.says);
    const std::string hidden = lineOf("KCellularLteRrcState", "0801" + row.bytes) + "\n";
    const Checked checked = check(hidden, lineOf(row.className, wire(row.identity)) + "\n");
    EXPECT_EQ(checked.exitCode, 1);
    EXPECT_THAT(checked.complaints, HasSubstr(":1: holds a " + std::string(row.className)));
  }
}

TEST(CheckRedacted, AgainstTheOriginalSearchesForNothingThatWouldBeFoundByChance) {
  const struct {
    const char* says;
    const char* tmsi;
    const char* bytes;
    bool isFound;
  } kRows[] = {
      {"of three different halves", "5:305205809", "12311231", true},
      {"of two", "5:287445282", "11221122", false},
      {"half as long", "5:4660", "1234", false},
  };
  for (const auto& row : kRows) {
    const std::string hidden =
        lineOf("KCellularLteRrcState", std::string("0801") + row.bytes) + "\n";
    const Checked checked = check(hidden, lineOf("KCellularMmContext", wire(row.tmsi)) + "\n");
    EXPECT_EQ(checked.complaints.find("holds a KCellularMmContext") != std::string::npos,
              row.isFound)
        << row.says;
  }
}

// Which fields hold identities, said here once more and apart from the product's rows.
const std::set<std::pair<std::string_view, std::string_view>> kIdentities = {
    {kSinr, "call_id"},
    {kMm, "imsi"},
    {"KCellularMmContext", "tmsi"},
    {"KCellularGmmContext", "p_tmsi"},
    {"Guti", "m_tmsi"},
    {"BearerContext", "apn"},
    {"BearerContext", "pdp_addr"},
    {"BearerContext", "primary_dns_addr"},
    {"BearerContext", "secondary_dns_addr"},
    {"ElementaryFile", "content"},
};

TEST(IdentityRows, CoverEveryFieldThatCouldHoldAnything) {
  std::size_t rows = 0;
  for (const CatalogueRow& metric : catalogue())
    for (const Field& field : metric.table->fields) {
      const auto* row = metricctl::identityRow(metric.table->name, field.key);
      rows += row != nullptr;
      const bool isFree = field.kind == Kind::bytes || field.kind == Kind::string;
      const bool isKnown = kIdentities.contains({metric.table->name, field.key});
      EXPECT_TRUE(row || !(isFree || isKnown)) << metric.table->name << " " << field.key;
      EXPECT_TRUE(!row || isKnown || field.key == "encoded_plmn") << field.key;
    }
  EXPECT_EQ(rows, metricctl::identityRows().size()) << "each row names a field";
  for (const metricctl::PlaceRow& place : metricctl::placeRows())
    EXPECT_TRUE(std::ranges::any_of(catalogue(), [&](const CatalogueRow& metric) {
      return std::ranges::find(metric.table->fields, place.key, &Field::key) !=
             metric.table->fields.end();
    })) << place.key;
}

/// Messages of any class with every field filled now and then; identities come from few, so that
/// they come again, and in their codings as often as not.
class Generator {
 public:
  explicit Generator(unsigned seed) : _random(seed) {}

  Ref<AnyMessage> message(const MessageTable& table) {
    const auto made = table.make();
    for (const Field& field : table.fields)
      if (field.number != 19 && _random() % 4 != 0) fill(*made, field);
    return made;
  }

 private:
  std::vector<std::uint8_t> bytesFrom(std::string_view key) {
    static const char* const kImsis[] = {"0910101032547698", "0910101032547699",
                                         "3901144123456789", "01101010325476f8",
                                         "091010",           "3a85739510325476"};
    static const char* const kFiles[] = {
        "080910101032547698",   "080910101032547699", "98000101214365870951",
        "981032547698103254f6", "01ffffff",           "ffffffffff"};
    static const char* const kAddresses[] = {"c0a80117",
                                             "c0a80118",
                                             "08080808",
                                             "00000000",
                                             "fd123456789abcdef123456789abcdef",
                                             "c0a80117fd123456789abcdef123456789abcdef",
                                             "1234567890"};
    const auto one = [&](const auto& all) { return bytes(all[_random() % std::size(all)]); };
    if (_random() % 8 == 0) return noise();
    if (key == "imsi") return one(kImsis);
    if (key == "content") return one(kFiles);
    if (key.ends_with("addr")) return one(kAddresses);
    return bytes("00f110");
  }

  std::vector<std::uint8_t> noise() {
    std::vector<std::uint8_t> all(_random() % 12);
    for (auto& byte : all) byte = static_cast<std::uint8_t>(_random());
    return all;
  }

  void fill(AnyMessage& message, const Field& field) {
    const auto scalar = [&]<class T>(T value) {
      message.setHas(field.number, true);
      field.in<T>(message) = value;
    };
    static constexpr std::uint32_t kTmsis[] = {2271560481, 3735928559, 305419896, 4294967295};
    static const char* const kAccessPoints[] = {"internet", "works.example", "ims", "", "x"};
    static const char* const kCalls[] = {"anna@192.0.2.7", "call-7", "", "y"};
    const auto small = static_cast<std::int32_t>(_random() % 1000);
    switch (field.kind) {
      case Kind::uint64: return scalar(std::uint64_t{_random()});
      case Kind::uint32:
        if (field.key.find("tmsi") != std::string_view::npos)
          return scalar(_random() % 4 == 0 ? static_cast<std::uint32_t>(_random())
                                           : kTmsis[_random() % std::size(kTmsis)]);
        if (field.key == "ef_id") return scalar(_random() % 2 == 0 ? 0x6F07U : 0x2FE2U);
        return scalar(static_cast<std::uint32_t>(small));
      case Kind::enumeration: return scalar(small % 9);
      case Kind::sint32: return scalar(small - 500);
      case Kind::boolean: return scalar(small % 2 == 0);
      case Kind::bytes: field.in<Ref<Data>>(message) = make<Data>(bytesFrom(field.key)); return;
      case Kind::string:
        field.in<Ref<String>>(message) = make<String>(
            std::string(field.key == "apn" ? kAccessPoints[_random() % std::size(kAccessPoints)]
                                           : kCalls[_random() % std::size(kCalls)]));
        return;
      case Kind::message:
        field.in<Ref<AnyMessage>>(message) = this->message(*field.element);
        return;
      case Kind::repeated:
        for (std::size_t i = _random() % 4; i > 0; --i)
          appendElement(field.in<Ref<MessageArray>>(message), this->message(*field.element));
        return;
      case Kind::packedUint32:
        field.in<PBRepeatedUInt32>(message).values = {1, static_cast<std::uint32_t>(small)};
        return;
      case Kind::packedSint32: field.in<PBRepeatedInt32>(message).values = {-1, small}; return;
    }
  }

  std::mt19937 _random;
};

std::string hexOf(const AnyMessage& message) {
  PBDataWriter writer;
  message.writeTo(writer);
  return hexText(writer.bytes());
}

Ref<AnyMessage> read(const MessageTable& table, const std::string& hex) {
  const auto message = table.make();
  EXPECT_TRUE(message->initWithData(make<Data>(*bytesFromHex(hex))));
  return message;
}

/// One identity's field in a message.
struct Place {
  AnyMessage* message;
  const Field* field;

  [[nodiscard]] std::string value() const {
    if (field->kind == Kind::uint32) return std::to_string(field->in<std::uint32_t>(*message));
    if (field->kind == Kind::string)
      return "'" + std::string(field->in<Ref<String>>(*message)->text()) + "'";
    return "<" + hexText(field->in<Ref<Data>>(*message)->bytes()) + ">";
  }
  void set(const Place& from) const {
    if (field->kind == Kind::uint32)
      field->in<std::uint32_t>(*message) = field->in<std::uint32_t>(*from.message);
    else if (field->kind == Kind::string)
      field->in<Ref<String>>(*message) = field->in<Ref<String>>(*from.message);
    else
      field->in<Ref<Data>>(*message) = field->in<Ref<Data>>(*from.message);
  }
};

/// The identities that are present, in order.
void placesIn(AnyMessage& message, std::vector<Place>& places) {
  for (const Field& field : message.table().fields) {
    if (field.kind == Kind::message && field.in<Ref<AnyMessage>>(message))
      placesIn(*field.in<Ref<AnyMessage>>(message), places);
    if (field.kind == Kind::repeated && field.in<Ref<MessageArray>>(message))
      for (const auto& element : field.in<Ref<MessageArray>>(message)->elements)
        placesIn(*element, places);
    const bool isPresent = field.kind == Kind::uint32   ? message.has(field.number)
                           : field.kind == Kind::bytes  ? bool(field.in<Ref<Data>>(message))
                           : field.kind == Kind::string ? bool(field.in<Ref<String>>(message))
                                                        : false;
    const bool isIdentity =
        kIdentities.contains({message.table().name, field.key}) ||
        (field.key == "encoded_plmn" && isPresent && field.in<Ref<Data>>(message)->length() != 3);
    if (isIdentity && isPresent) places.push_back({&message, &field});
  }
}

std::vector<Place> placesOf(const Ref<AnyMessage>& message) {
  std::vector<Place> places;
  placesIn(*message, places);
  return places;
}

TEST(Redacting, OfAnyPayloadOfAnyMetricChangesIdentitiesOnlyAndIsTakenByTheChecker) {
  Generator generator(11);
  Redactor redactor;
  std::string originals;
  std::string all;
  std::map<std::string, std::map<std::string, std::string>> standIns;  // key -> value -> stand-in
  std::size_t metrics = 0;
  for (int round = 0; round < 40; ++round)
    for (const CatalogueRow& row : catalogue()) {
      if (row.metricID == 0) continue;
      metrics += round == 0;
      SCOPED_TRACE(row.table->name);
      const auto before = generator.message(*row.table);
      const std::string hex = hexOf(*before);
      const auto after = read(*row.table, redacted(redactor, row.table->name, hex));
      originals += lineOf(row.table->name, hex) + "\n";
      all += lineOf(row.table->name, hexOf(*after)) + "\n";

      const auto were = placesOf(before);
      const auto are = placesOf(after);
      ASSERT_EQ(were.size(), are.size()) << "presence stays";
      for (std::size_t i = 0; i < were.size(); ++i) {
        std::string kind(were[i].field->key.ends_with("addr") ? "addr" : were[i].field->key);
        if (const auto* file = dynamic_cast<const ElementaryFile*>(were[i].message))
          kind += std::to_string(file->efId());
        const std::string standIn = are[i].value();
        EXPECT_EQ(standIns[kind].try_emplace(were[i].value(), standIn).first->second, standIn);
        const bool mayGrow = were[i].field->kind != Kind::bytes;
        EXPECT_TRUE(mayGrow || standIn.size() == were[i].value().size()) << "lengths stay";
        are[i].set(were[i]);
      }
      EXPECT_TRUE(after->isEqual(*before)) << "the rest stays";
    }
  EXPECT_EQ(metrics, 31U);
  for (const auto& [kind, map] : standIns) {
    std::set<std::string> different;
    for (const auto& [value, standIn] : map) different.insert(standIn);
    EXPECT_EQ(different.size(), map.size()) << "different stays different: " << kind;
    EXPECT_GT(map.size(), 3U) << kind;
  }
  const Checked checked = check(all, originals);
  EXPECT_EQ(checked.complaints, "");
  EXPECT_EQ(checked.exitCode, 0);
  EXPECT_EQ(check(originals).exitCode, 1);
}

TEST(CheckRedacted, RefusesEveryRecordingWithOneIdentityLeft) {
  Generator generator(12);
  std::map<std::string, int> mutants;  // by field
  for (int round = 0; round < 25; ++round)
    for (const CatalogueRow& row : catalogue()) {
      if (row.metricID == 0) continue;
      const auto original = generator.message(*row.table);
      const auto were = placesOf(original);
      for (std::size_t left = 0; left < were.size(); ++left) {
        Redactor redactor;
        const auto mutant = read(*row.table, redacted(redactor, row.table->name, hexOf(*original)));
        const Place place = placesOf(mutant)[left];
        if (place.value() == were[left].value()) continue;  // none, or a common one
        place.set(were[left]);
        const Checked checked = check(lineOf("KCellularLteRrcState", "0801") + "\n" +
                                      lineOf(row.table->name, hexOf(*mutant)) + "\n");
        EXPECT_EQ(checked.exitCode, 1) << place.field->key;
        EXPECT_THAT(checked.complaints, HasSubstr(":2: " + std::string(row.table->name) + " "));
        EXPECT_THAT(checked.complaints, HasSubstr(std::string(place.field->key)));
        ++mutants[std::string(place.message->table().name) + " " + std::string(place.field->key)];
      }
    }
  for (const auto& [className, key] : kIdentities)
    EXPECT_GT((mutants[std::string(className) + " " + std::string(key)]), 5) << className << key;
}

}  // namespace
}  // namespace quorin::test

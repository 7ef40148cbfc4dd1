#include "platform/recording/RecordingPlayer.h"

#include <unistd.h>

#include <filesystem>
#include <future>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A recording in a file of its own, played to one client that notes the payloads.
class Played {
 public:
  explicit Played(const std::string& lines)
      : path(::testing::TempDir() + "recording_" + std::to_string(::getpid()) + ".jsonl") {
    std::ofstream(path) << lines;
    service.install();
    queue = dispatch_queue_create("test");
    manager = osmin::client::CreateManager("quorin", queue);
    osmin::client::RegisterEventHandler(
        manager, osmin::kEventMetric, [this](xpc_object_t event, const dispatch_group_t&) {
          payloads.push_back(
              hexText(xpc_data_get_bytes(xpc_dictionary_get_value(event, osmin::kKeyPayload))));
        });
    osmin::client::EventsOn(manager);
  }
  ~Played() { std::filesystem::remove(path); }

  std::vector<std::string> step(RecordingPlayer& player) {
    player.step();
    waitUntilDone(*queue);
    return std::exchange(payloads, {});
  }

  VirtualClock clock;
  Loopback service;
  std::string path;
  dispatch_queue_t queue;
  std::shared_ptr<osmin::client::Manager> manager;
  std::vector<std::string> payloads;
};

constexpr const char* kThree =
    "{\"kKeyMetricID\":1,\"kKeyPayload\":\"01\",\"t\":1000}\n"
    "\n"
    "{\"kKeyMetricID\":1,\"kKeyPayload\":\"02\",\"t\":1500}\n"
    "nonsense\n"
    "{\"kKeyMetricID\":1,\"kKeyPayload\":\"03\",\"t\":3000}\n";

TEST(RecordingPlayer, KeepsTheRecordingsPace) {
  Played played(kThree);
  RecordingPlayer player(played.path, 1.0, played.service);
  EXPECT_THAT(played.step(player), ElementsAre("01"));
  played.clock.advance(Milliseconds{499});
  EXPECT_THAT(played.step(player), IsEmpty());
  played.clock.advance(Milliseconds{1});
  EXPECT_THAT(played.step(player), ElementsAre("02"));
  EXPECT_FALSE(player.isOver());
  played.clock.advance(Milliseconds{1500});
  EXPECT_THAT(played.step(player), ElementsAre("03"));
  EXPECT_TRUE(player.isOver());
}

TEST(RecordingPlayer, PlaysFasterByTheSpeed) {
  Played played(kThree);
  RecordingPlayer player(played.path, 10.0, played.service);
  EXPECT_THAT(played.step(player), ElementsAre("01"));
  played.clock.advance(Milliseconds{200});
  EXPECT_THAT(played.step(player), ElementsAre("02", "03"));
}

TEST(RecordingPlayer, HandsOver256AtAStepAndNoneWhile1024Wait) {
  std::string lines;
  for (int i = 0; i < 1500; ++i) lines += "{\"kKeyMetricID\":1,\"kKeyPayload\":\"01\",\"t\":0}\n";
  Played played(lines);
  RecordingPlayer player(played.path, std::nullopt, played.service);
  std::promise<void> held;
  played.queue->post([&held] { held.get_future().wait(); });
  for (const std::size_t pending : {256U, 512U, 768U, 1024U, 1024U}) {
    player.step();
    EXPECT_EQ(played.service.pending(), pending);
  }
  held.set_value();
  waitUntilDone(*played.queue);
  EXPECT_EQ(played.service.pending(), 0U);
  EXPECT_THAT(played.step(player), ::testing::SizeIs(1024 + 256));
}

TEST(RecordingPlayer, PlaysAsFastAsItIsTakenAndNamesUnreadableLines) {
  Played played(kThree);
  RecordingPlayer player(played.path, std::nullopt, played.service);
  EXPECT_THAT(played.step(player), ElementsAre("01", "02", "03"));
  EXPECT_TRUE(player.isOver());
  EXPECT_THAT(player.recording().unreadableLines(), ElementsAre(played.path + ":4: not JSON"));
  EXPECT_THAT(player.recording().unreadableLines(), IsEmpty());
}

TEST(PacedRecording, StartsOverWhereItEnded) {
  Played played(kThree);
  PacedRecording recording(played.path, 1.0, /*loop=*/true, Milliseconds{100});
  std::vector<std::int64_t> due;
  for (int i = 0; i < 6; ++i) {
    due.push_back(recording.next()->count());
    (void)recording.take();
  }
  EXPECT_THAT(due, ElementsAre(100, 600, 2100, 2100, 2600, 4100));
}

TEST(PacedRecording, WithoutEventsIsOverEvenWhenItLoops) {
  Played played("nonsense\n");
  EXPECT_EQ(PacedRecording(played.path, 1.0, true, Milliseconds{0}).next(), std::nullopt);
}

TEST(Speed, IsANumberAboveZeroOrMax) {
  Speed speed;
  EXPECT_TRUE(readSpeed("max", speed));
  EXPECT_EQ(speed, std::nullopt);
  EXPECT_TRUE(readSpeed("2.5", speed));
  EXPECT_EQ(speed, 2.5);
  for (const char* text : {"", "0", "-1", "x", "1x", "1e7", "nan"})
    EXPECT_FALSE(readSpeed(text, speed)) << text;
}

TEST(RecordingPlayer, TellsWhyAFileCannotBePlayed) {
  Loopback service;
  RecordingPlayer player("/nonexistent", 1.0, service);
  EXPECT_EQ(player.recording().error(), "/nonexistent: No such file or directory");
  EXPECT_TRUE(player.isOver());
}

struct Line {
  const char* says;
  const char* line;
  const char* event;  // entries, or the reason in parentheses
};

constexpr Line kLines[] = {
    {"a whole line", R"({"kKeyMetricID":5,"kKeyPayload":"0aFF","kKeyProfileID":0,"t":7})",
     "kKeyMetricID=int64 5 kKeyPayload=data <0aff> kKeyProfileID=int64 0 "},
    {"an absent payload", R"({"kKeyMetricID":5})", "kKeyMetricID=int64 5 "},
    {"an empty payload", R"({"kKeyPayload":""})", "kKeyPayload=data <> "},
    {"a payload that is no text", R"({"kKeyPayload":5})", "kKeyPayload=int64 5 "},
    {"no metric ID", "{}", ""},
    {"a real metric ID", R"({"kKeyMetricID":5.0})", "kKeyMetricID=double 5.000000 "},
    {"a negative metric ID", R"({"kKeyMetricID":-5})", "kKeyMetricID=int64 -5 "},
    {"a metric ID of 64 bits", R"({"kKeyMetricID":9223372036854775808})",
     "kKeyMetricID=double 9223372036854775808.000000 "},
    {"other entries", R"({"a":"text","b":true,"c":null,"d":[1],"e":{"f":1}})",
     "a=string text b=true c=null d=null e=null "},
    {"a payload that is no hexadecimal", R"({"kKeyPayload":"0"})",
     "(\"kKeyPayload\" is not hexadecimal)"},
    {"a time that is none", R"({"t":"x"})", "(\"t\" is no time in milliseconds)"},
    {"a time beyond all time", R"({"t":1e300})", "(\"t\" is no time in milliseconds)"},
    {"no JSON", "{", "(not JSON)"},
    {"no object", "[]", "(not a JSON object)"},
};

TEST(RecordingLine, IsReadAsAnEvent) {
  for (const Line& row : kLines) {
    std::string reason;
    const auto recorded = readRecordingLine(row.line, reason);
    std::string event = "(" + reason + ")";
    if (recorded) {
      event.clear();
      xpc_dictionary_apply(recorded->event.get(), [&](const std::string& key, xpc_object_t value) {
        event += key + "=" + shown(value) + " ";
      });
    }
    EXPECT_EQ(event, row.event) << row.says;
  }
}

TEST(RecordingLine, CarriesItsTimeOfArrival) {
  std::string reason;
  EXPECT_EQ(readRecordingLine(R"({"t":1500.9})", reason)->arrival, Milliseconds{1500});
  EXPECT_EQ(readRecordingLine("{}", reason)->arrival, std::nullopt);
}

}  // namespace
}  // namespace quorin::test

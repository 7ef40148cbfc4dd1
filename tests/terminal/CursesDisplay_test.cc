#include "platform/terminal/CursesDisplay.h"

#include <termios.h>
#include <unistd.h>

#include <random>
#include <regex>

#include "app/interface.h"
#include "metrics/registry/metric_ids.h"
#include "platform/terminal/TerminalScreen.h"
#include "platform/terminal/capabilities.h"
#include "tests/support/rig.h"
#include "tests/terminal/locale.h"
#include "tests/terminal/pty.h"

namespace quorin::terminal::test {
namespace {

using namespace quorin::test;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// The environment of a terminal of this type.
struct Environment {
  Environment() {
    setenv("LC_ALL", "C.UTF-8", 1);
    unsetenv("NO_COLOR");
  }
};

std::string hex(unsigned value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  return {kDigits[(value >> 4) & 15], kDigits[value & 15]};
}

/// A field of the wire: tag and zigzag number.
std::string field(unsigned tag, int value) {
  const unsigned zigzag =
      value < 0 ? static_cast<unsigned>(-value) * 2 - 1 : static_cast<unsigned>(value) * 2;
  return zigzag < 0x80 ? hex(tag) + hex(zigzag) : hex(tag) + hex(zigzag | 0x80) + hex(zigzag >> 7);
}

/// The application on a display on a terminal.
struct Displayed : Environment {
  explicit Displayed(const std::string& type, int rows = 24, int columns = 80)
      : pty(rows, columns) {
    application.launch("AppDelegate");
    display.emplace(Terminal{pty.descriptor(), type});
    screen.emplace(application, strip,
                   ScreenRequests{[this] { stale = true; }, [] {}, [] {}, [](bool) {}});
    paint();
  }
  void press(std::u32string_view keys) {
    for (char32_t pressed : keys) screen->press(pressed);
    paint();
  }
  void paint() {
    stale = false;
    Canvas canvas(display->rows(), display->columns(), display->charset());
    screen->draw(canvas);
    display->show(canvas);
  }
  /// Five measurements, and a sixth that stays.
  void report(const std::array<int, 5>& values) {
    const std::string sample = field(0x20, values[0]) + field(0x28, values[1]) +
                               field(0x38, values[2]) + field(0x40, values[3]) +
                               field(0x50, values[4]) + field(0x58, 20);
    service.deliver(osmin::kEventMetric,
                    metricEvent(K_LTE_RSRP_RSRQ_SINR,
                                "7a" + hex(static_cast<unsigned>(sample.size() / 2)) + sample));
  }
  RecordedLog log;
  VirtualClock clock;
  ScriptedService service;
  UIApplication application{interfaceDescription()};
  LogStrip strip;
  Pty pty;
  bool stale = false;
  std::optional<CursesDisplay> display;
  std::optional<TerminalScreen> screen;
};

/// The most bytes of one reload, and of one reload and the seconds up to the next.
struct Most {
  std::size_t reload = 0;
  std::size_t interval = 0;
};

/// Lets five values change at each reload, by much, so that their trends change all over.
Most mostBytes(Displayed& app) {
  app.press(U"j\rjjj\r");
  app.clock.advance(Milliseconds(2500));
  app.report({-97, -98, -11, -12, 10});
  app.clock.advance(Milliseconds(2500));
  app.paint();
  (void)app.pty.written();
  std::minstd_rand random(7);
  const auto between = [&](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low));
  };
  Most most;
  for (int i = 0; i < 200; ++i) {
    app.report({between(-140, -44), between(-140, -44), between(-30, -3), between(-30, -3),
                between(-40, 80)});
    std::size_t interval = 0;
    for (int tenth = 0; tenth < 50; ++tenth) {
      app.clock.advance(Milliseconds(100));
      if (app.stale) app.paint();
      const std::size_t bytes = app.pty.written().size();
      most.reload = std::max(most.reload, bytes);
      interval += bytes;
    }
    most.interval = std::max(most.interval, interval);
  }
  return most;
}

struct Line {
  const char* type;
  int rows;
  int columns;
};

class SlowLine : public ::testing::TestWithParam<Line> {};

TEST_P(SlowLine, TakesFiveNewValuesInAMoment) {
  Displayed app(GetParam().type, GetParam().rows, GetParam().columns);
  const Most most = mostBytes(app);
  EXPECT_LT(most.reload, 300U);
  EXPECT_LT(most.interval, 350U) << "with the age of each second";
  EXPECT_GT(most.reload, 60U) << "something was painted";
  RecordProperty("reload", static_cast<int>(most.reload));
  RecordProperty("interval", static_cast<int>(most.interval));
}

INSTANTIATE_TEST_SUITE_P(, SlowLine,
                         ::testing::Values(Line{"xterm-256color", 24, 80}, Line{"vt220", 24, 80},
                                           Line{"linux", 25, 80}, Line{"screen", 24, 80},
                                           Line{"xterm-256color", 50, 120}));

TEST(CursesDisplay, LeavesTheTerminalAsItWas) {
  Pty pty(24, 80);
  termios before{};
  tcgetattr(pty.kept(), &before);
  {
    Environment environment;
    CursesDisplay display({pty.descriptor(), "xterm-256color"});
    Canvas canvas(24, 80, display.charset());
    canvas.put(3, 0, 80, "rsrp", Style::plain);
    display.show(canvas);
    EXPECT_THAT(pty.written(), AllOf(HasSubstr("\033[?1049h"), HasSubstr("\033[?25l"),
                                     HasSubstr("\033[?1006;1000h"), HasSubstr("rsrp")));
    termios meanwhile{};
    tcgetattr(pty.kept(), &meanwhile);
    EXPECT_EQ(meanwhile.c_lflag & (ECHO | ICANON), 0U);
  }
  EXPECT_THAT(pty.written(), AllOf(HasSubstr("\033[?1049l"), HasSubstr("\033[?25h"),
                                   HasSubstr("\033[?1006;1000l")));
  termios after{};
  tcgetattr(pty.kept(), &after);
  EXPECT_EQ(after.c_lflag, before.c_lflag);
  EXPECT_EQ(after.c_iflag, before.c_iflag);
  EXPECT_EQ(after.c_oflag, before.c_oflag);
}

TEST(CursesDisplay, ReadsKeysAndTheMouse) {
  Environment environment;
  Pty pty(24, 80);
  CursesDisplay display({pty.descriptor(), "xterm-256color"});
  EXPECT_EQ(display.next(), std::nullopt);
  std::vector<Input> inputs;
  for (const char* typed : {"k\033OA\033[5~\177\r", "\033[<0;5;3M", "\033[<65;5;3M\xc3\xa4"}) {
    pty.type(typed);
    while (const auto input = display.next()) inputs.push_back(*input);
  }
  ASSERT_EQ(inputs.size(), 8U);
  const char32_t keys[] = {'k', key::kUp, key::kPageUp, key::kBackspace, key::kEnter};
  for (std::size_t i = 0; i < std::size(keys); ++i) EXPECT_EQ(inputs[i].key, keys[i]);
  EXPECT_EQ(inputs[5].kind, Input::Kind::click);
  EXPECT_EQ(inputs[5].row, 2);
  EXPECT_EQ(inputs[5].column, 4);
  EXPECT_EQ(inputs[6].kind, Input::Kind::wheel);
  EXPECT_GT(inputs[6].rows, 0);
  EXPECT_EQ(inputs[7].key, U'ä');
}

TEST(CursesDisplay, KnowsTheKeysOfTheTerminal) {
  Environment environment;
  Pty pty(24, 80);
  CursesDisplay display({pty.descriptor(), "xterm-256color"});
  const std::pair<const char*, char32_t> rows[] = {
      {"\033OA", key::kUp},        {"\033OB", key::kDown},
      {"\033OD", key::kLeft},      {"\033OC", key::kRight},
      {"\033[5~", key::kPageUp},   {"\033[6~", key::kPageDown},
      {"\033OH", key::kHome},      {"\033OF", key::kEnd},
      {"\033[Z", key::kBackTab},   {"\033OM", key::kEnter},
      {"\033[3~", key::kBackspace}, {"\177", key::kBackspace},
      {"\b", key::kBackspace},     {"\t", key::kTab},
      {"\r", key::kEnter},         {"\033", key::kEscape},
  };
  for (const auto& [typed, pressed] : rows) {
    pty.type(typed);
    const auto input = display.next();
    ASSERT_TRUE(input) << typed + 1;
    EXPECT_EQ(input->kind, Input::Kind::key) << typed + 1;
    EXPECT_EQ(input->key, pressed) << typed + 1;
  }
  pty.type("\033[15~x");
  const auto next = display.next();
  ASSERT_TRUE(next);
  EXPECT_EQ(next->key, U'x') << "a key that has no meaning is passed over";
}

/// The looks that are switched on before a style's text.
std::string lookOf(const std::string& type, Style style) {
  Environment environment;
  Pty pty(24, 80);
  CursesDisplay display({pty.descriptor(), type});
  Canvas canvas(24, 80, display.charset());
  canvas.put(5, 0, 80, "rsrp", style);
  display.show(canvas);
  const std::string written = pty.written();
  const std::string before = written.substr(written.rfind('J', written.find("rsrp")));
  static const std::regex kLook("\033\\[([0-9;]*)m(?=[^]*rsrp)");
  std::string looks;
  for (std::sregex_iterator look(before.begin(), before.end(), kLook), end; look != end; ++look)
    looks += (looks.empty() ? "" : " ") + look->str(1);
  return looks;
}

TEST(CursesDisplay, GivesEachStyleItsLook) {
  struct {
    Style style;
    const char* plain;
    const char* few;
    const char* many;
  } const rows[] = {
      {Style::plain, "", "", ""},
      {Style::bar, "0;7", "0;7", "38;5;250 48;5;236"},
      {Style::barTitle, "0;1;7", "0;1;7", "0;1 38;5;255 48;5;236"},
      {Style::header, "0;1", "0;1 36", "0;1 38;5;31"},
      {Style::quiet, "0", "0;2", "38;5;244"},  // the first has no faint letters
      {Style::changed, "", "", ""},
      {Style::selected, "0;7", "0;7", "38;5;255 48;5;25"},
      {Style::open, "0;1", "0;1", "0;1"},
      {Style::prompt, "0;1", "0;1", "0;1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.style));
    EXPECT_EQ(lookOf("vt220", row.style), row.plain);
    EXPECT_EQ(lookOf("xterm", row.style), row.few);
    EXPECT_EQ(lookOf("xterm-256color", row.style), row.many);
  }
}

TEST(CursesDisplay, TakesOverTheSizeOfTheTerminal) {
  Environment environment;
  Pty pty(24, 80);
  CursesDisplay display({pty.descriptor(), "xterm-256color"});
  pty.resize(10, 40);
  EXPECT_EQ(display.rows(), 24);
  display.fit();
  EXPECT_EQ(display.rows(), 10);
  EXPECT_EQ(display.columns(), 40);
}

TEST(CursesDisplay, SendsNoColoursWhereNobodyWantsThem) {
  Environment environment;
  setenv("NO_COLOR", "1", 1);
  Pty pty(24, 80);
  CursesDisplay display({pty.descriptor(), "xterm-256color"});
  Canvas canvas(24, 80, display.charset());
  canvas.put(0, 0, 80, "LTE", Style::selected);
  display.show(canvas);
  const std::string written = pty.written();
  EXPECT_THAT(written, HasSubstr("LTE"));
  EXPECT_THAT(written, Not(HasSubstr("[38;5;"))) << "no ink";
  EXPECT_THAT(written, Not(HasSubstr("[48;5;"))) << "no paper";
}

TEST(CursesDisplay, TakesUtf8OfALocaleThatTheMachineDoesNotHave) {
  struct {
    const char* locale;
    Charset charset;
  } const rows[] = {{"C.UTF-8", Charset::unicode},
                    {"xx_XX.UTF-8", Charset::unicode},
                    {"xx_XX.utf8", Charset::unicode},
                    {"xx_XX.ISO-8859-1", Charset::ascii},
                    {"C", Charset::ascii}};
  for (const auto& row : rows) {
    Environment environment;
    setenv("LC_ALL", row.locale, 1);
    std::setlocale(LC_CTYPE, "C");
    EXPECT_EQ(takeLocale(), row.charset) << row.locale;
  }
}

TEST(Terminal, SaysWhyItCannotShowPages) {
  Pty pty(24, 80);
  EXPECT_EQ(unfitness("", pty.kept()), "TERM is not set");
  EXPECT_EQ(unfitness("nonsense", pty.kept()), "the terminal type \"nonsense\" is not known here");
  EXPECT_EQ(unfitness("dumb", pty.kept()), "a terminal of type \"dumb\" cannot place its cursor");
  EXPECT_EQ(unfitness("vt100", pty.kept()), "");
}

}  // namespace
}  // namespace quorin::terminal::test

#include "platform/terminal/TerminalScreen.h"

#include "app/interface.h"
#include "metrics/registry/metric_ids.h"
#include "tests/support/rig.h"
#include "tests/terminal/locale.h"

namespace quorin::terminal::test {
namespace {

using namespace quorin::test;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// The launched application on a screen of cells.
struct Shown {
  Shown() {
    application.launch("AppDelegate");
    screen.emplace(application, strip,
                   ScreenRequests{[this] { ++draws; }, [this] { quit = true; },
                                  [this] { ++repaints; }, [this](bool ours) { mouse = ours; }});
  }
  void press(std::u32string_view keys) {
    for (char32_t pressed : keys) screen->press(pressed);
  }
  std::string drawn(int rows = 24, int columns = 80, Charset charset = Charset::unicode) {
    Canvas canvas(rows, columns, charset);
    screen->draw(canvas);
    return canvas.text();
  }
  std::string row(int which, int rows = 24, int columns = 80) {
    Canvas canvas(rows, columns, Charset::unicode);
    screen->draw(canvas);
    return canvas.text(which < 0 ? rows + which : which);
  }
  Utf8Locale locale;
  RecordedLog log;
  VirtualClock clock;
  ScriptedService service;
  UIApplication application{interfaceDescription()};
  LogStrip strip;
  int draws = 0;
  int repaints = 0;
  bool quit = false;
  std::optional<bool> mouse;
  std::optional<TerminalScreen> screen;
};

TEST(TerminalScreen, StartsWithTheFirstPage) {
  Shown shown;
  EXPECT_EQ(shown.drawn(10, 40),
            " Quorin\n"
            " Device Info\n"
            " LTE\n"
            " UMTS\n"
            " GSM\n"
            "\n\n\n\n"
            "                           1/4   ? keys\n");
}

TEST(TerminalScreen, WalksDownAndUp) {
  Shown shown;
  shown.press(U"j\rj\r");
  EXPECT_EQ(shown.row(0), " Quorin › LTE › RRC State");
  EXPECT_EQ(shown.row(1), " No entries");
  EXPECT_THAT(shown.row(-1), StartsWith(" never received "));
  shown.press(U"q");
  EXPECT_EQ(shown.row(0), " Quorin › LTE");
  shown.press({&key::kBackspace, 1});
  EXPECT_EQ(shown.row(0), " Quorin");
  EXPECT_EQ(shown.application.navigation().viewControllers().size(), 1U);
  shown.press(U"\x1b");
  EXPECT_FALSE(shown.quit) << "only q ends";
  shown.press(U"q");
  EXPECT_TRUE(shown.quit);
}

TEST(TerminalScreen, LooksAtThePageBeforeWithoutClosingThisOne) {
  Shown shown;
  shown.press(U"j\rj\rh");
  EXPECT_EQ(shown.row(0), " Quorin › LTE");
  EXPECT_EQ(shown.row(2), "›RRC State");
  EXPECT_EQ(shown.application.navigation().viewControllers().size(), 3U);
  const Page open = shown.application.navigation().topViewController();
  shown.press(U"\r");
  EXPECT_EQ(shown.application.navigation().topViewController(), open) << "the very same page";
  shown.press(U"hj");
  EXPECT_EQ(shown.application.navigation().topViewController(), open) << "moving opens nothing";
  shown.press(U"\t");
  EXPECT_EQ(shown.row(0), " Quorin › LTE › RRC State");
}

TEST(TerminalScreen, StandsSideBySideFromAHundredColumnsOn) {
  Shown shown;
  shown.press(U"j\rj\r");
  EXPECT_EQ(shown.row(2, 24, 99), "") << "one page";
  EXPECT_EQ(shown.row(0, 24, 100), " Quorin › LTE › RRC State");
  EXPECT_EQ(shown.row(1, 24, 100), " Device Info    │ NAS                      │ No entries");
  EXPECT_EQ(shown.row(2, 24, 100), "›LTE            │›RRC State                │");
  EXPECT_THAT(shown.row(-1, 24, 100), StartsWith(" never received "));
  shown.press(U"hh");
  EXPECT_EQ(shown.row(0, 24, 100), " Quorin › LTE › RRC State") << "the focus alone moved";
  EXPECT_EQ(shown.row(2, 24, 99), "›LTE");
  shown.press(U"jj\r");
  EXPECT_EQ(shown.row(0, 24, 100), " Quorin › GSM");
}

TEST(TerminalScreen, TellsThePagesAgeEachSecond) {
  Shown shown;
  shown.press(U"j\rj\r");
  shown.drawn();
  shown.clock.advance(Milliseconds(4999));
  EXPECT_EQ(shown.screen->stack().top().age(), "never received");
  shown.service.deliver(osmin::kEventMetric, metricEvent(K_LTE_RRC_STATE, "10 03 20 e8 07"));
  shown.clock.advance(Milliseconds(1));
  EXPECT_EQ(shown.row(1), " state               KLTE_RRC_STATE_CONNECTED");
  EXPECT_THAT(shown.row(-1), StartsWith(" last report 0 s ago "));
  const int before = shown.draws;
  shown.clock.advance(Milliseconds(3000));
  EXPECT_EQ(shown.draws, before + 3);
  EXPECT_THAT(shown.row(-1), StartsWith(" last report 3 s ago "));
  shown.press(U"q");
  shown.drawn();
  const int closed = shown.draws;
  shown.clock.advance(Milliseconds(4000));
  EXPECT_EQ(shown.draws, closed) << "a page without an age needs no timer";
}

TEST(TerminalScreen, SaysWhatTheSelectedValueMeans) {
  Shown shown;
  shown.service.deliver(osmin::kEventMetric, metricEvent(K_LTE_RRC_STATE, "10 03 20 e8 07 28 11"));
  shown.press(U"j\rj\rG");
  const Annotation cause = shown.screen->stack().top().lines().back().annotation;
  ASSERT_NE(cause.clause, "");
  EXPECT_THAT(shown.row(-2), EndsWith(std::string(cause.clause)));
  const std::string narrow = shown.drawn(10, 40);
  EXPECT_THAT(narrow,
              HasSubstr("\n T310 expired: N310 out of sync, then\n no N311 in sync in time\n "))
      << "on as many lines as it needs";
  shown.press(U"g");
  EXPECT_EQ(shown.row(-2), "") << "the first row has none; its place stays";
}

TEST(TerminalScreen, FindsWhileOneTypes) {
  Shown shown;
  shown.press(U"j\r/meas");
  EXPECT_EQ(shown.row(-1), " /meas_");
  shown.press(U"\r");
  EXPECT_THAT(shown.row(-1), HasSubstr("4/14")) << "Serving Cell Meas";
  shown.press(U"n");
  EXPECT_THAT(shown.row(-1), HasSubstr("9/14"));
  shown.press(U"NN");
  EXPECT_THAT(shown.row(-1), HasSubstr("13/14")) << "round the start";
  shown.press(U"g/drx");
  shown.press({&key::kBackspace, 1});
  EXPECT_EQ(shown.row(-1), " /dr_");
  for (const char32_t* sign : {U"ä", U"å", U"漢"}) {
    shown.press(sign);
    shown.press({&key::kBackspace, 1});
    EXPECT_EQ(shown.row(-1), " /dr_") << "all bytes of a sign go together";
  }
  shown.press(U"\x1b");
  EXPECT_THAT(shown.row(-1), HasSubstr(" 1/14")) << "back where it began";
  shown.press(U"/nowhere");
  EXPECT_EQ(shown.row(-1), " /nowhere_   \"nowhere\" is not on this page");
  shown.press(U"\r");
  EXPECT_THAT(shown.row(-1), StartsWith(" \"nowhere\" is not on this page"));
  shown.press(U"j");
  EXPECT_THAT(shown.row(-1), Not(HasSubstr("nowhere")));
}

TEST(TerminalScreen, SaysInItsLastRowWhatCanBeDone) {
  Shown shown;
  EXPECT_THAT(shown.row(-1), EndsWith("  1/4   Enter open  q quit  / find  l log  ? keys"));
  shown.press(U"j\r");
  EXPECT_THAT(shown.row(-1), EndsWith("  1/14   Enter open  q back  / find  l log  ? keys"));
  EXPECT_THAT(shown.row(-1, 24, 60), EndsWith("  1/14   ? keys")) << "where there is less room";
}

TEST(TerminalScreen, ListsItsKeys) {
  Shown shown;
  shown.press(U"?");
  EXPECT_EQ(shown.drawn(),
            " Keys\n"
            " ↑ k                row before\n"
            " ↓ j                row after\n"
            " PgUp Ctrl-B        screen before\n"
            " PgDn Ctrl-F Space  screen after\n"
            " Home g             first row\n"
            " End G              last row\n"
            " Enter              open the row's page\n"
            " Esc Backspace      close the page\n"
            " q                  close the page; on the first one, quit\n"
            " ← h Shift-Tab      page before, which leaves this one open\n"
            " → Tab              open page behind\n"
            " /                  find in the page\n"
            " n                  find the next\n"
            " N                  find the one before\n"
            " l                  log lines: show or hide\n"
            " <                  older log lines\n"
            " >                  newer log lines\n"
            " m                  mouse: ours or the terminal's\n"
            " Ctrl-L             paint the screen anew\n"
            " ?                  this page; any other key leaves it\n"
            "\n\n"
            " any other key goes back\n");
  shown.press(U"x");
  EXPECT_EQ(shown.row(0), " Quorin");
  shown.press(U"?");
  EXPECT_THAT(shown.row(-1, 10, 40), HasSubstr("↓ more"));
  for (int i = 0; i < 30; ++i) shown.press(U"j");
  EXPECT_EQ(shown.row(-1, 10, 40), " any other key goes back");
  EXPECT_THAT(shown.drawn(10, 40), HasSubstr("leaves it"));
}

TEST(TerminalScreen, ShowsTheLogsLatestLines) {
  Shown shown;
  std::string unfinished;
  shown.strip.add(unfinished, "one\ntwo \x1b[31m\nthree\nunfinished");
  EXPECT_THAT(shown.drawn(), Not(HasSubstr("three")));
  shown.press(U"l");
  EXPECT_EQ(shown.drawn(10, 40),
            " Quorin\n"
            " Device Info\n"
            " LTE\n"
            " UMTS\n"
            " GSM\n"
            "\n"
            "─ log ──────────────────────────────────\n"
            " two \uFFFD[31m\n"
            " three\n"
            "                           1/4   ? keys\n");
  shown.press(U"l");
  EXPECT_THAT(shown.drawn(), Not(HasSubstr("three")));
}

TEST(TerminalScreen, LooksAtOlderLogLines) {
  Shown shown;
  std::string unfinished;
  for (int i = 1; i <= 1200; ++i) shown.strip.add(unfinished, "line " + std::to_string(i) + "\n");
  shown.press(U"<l");
  EXPECT_EQ(shown.row(-2), " line 1200") << "while it is closed, the keys do nothing";
  shown.press(U"<");
  EXPECT_EQ(shown.row(-2), " line 1193");
  shown.strip.add(unfinished, "line 1201\n");
  EXPECT_EQ(shown.row(-2), " line 1193") << "new lines do not move it";
  EXPECT_THAT(shown.row(15), StartsWith("─ log 1193/1201 ─"));
  shown.screen->wheel(20, 10, -3);
  EXPECT_EQ(shown.row(-2), " line 1190");
  shown.press(U">>");
  EXPECT_EQ(shown.row(-2), " line 1201");
  for (int i = 0; i < 300; ++i) shown.press(U"<");
  EXPECT_EQ(shown.row(-8), " line 202") << "those before are forgotten";
}

TEST(TerminalScreen, TakesTheMouse) {
  Shown shown;
  shown.drawn();
  shown.screen->click(2, 3);
  EXPECT_EQ(shown.row(0), " Quorin") << "a click selects";
  shown.screen->click(2, 3);
  EXPECT_EQ(shown.row(0), " Quorin › LTE") << "one on the selection opens";
  shown.screen->click(20, 3);
  EXPECT_EQ(shown.row(0), " Quorin › LTE");
  shown.row(0, 10, 40);
  shown.screen->wheel(3, 3, 3);
  EXPECT_EQ(shown.row(1, 10, 40), " Serving Cell Meas                     ↑");
  shown.press(U"m");
  EXPECT_EQ(shown.mouse, false);
}

TEST(TerminalScreen, SaysWhenItIsTooSmall) {
  Shown shown;
  EXPECT_EQ(shown.row(0, 9, 40), "quorin needs 40 × 10, this is 40 × 9");
  EXPECT_EQ(shown.drawn(1, 6), "quorin\n");
  EXPECT_EQ(shown.drawn(1, 1), "q\n");
}

TEST(TerminalScreen, IsPlainAsciiWhereTheTerminalIs) {
  Shown shown;
  shown.press(U"j\rj\rh");
  for (int columns : {40, 80, 100, 140})
    for (char c : shown.drawn(24, columns, Charset::ascii))
      EXPECT_TRUE(c == '\n' || (c >= ' ' && c < 0x7f));
  EXPECT_THAT(shown.drawn(24, 100, Charset::ascii), StartsWith(" Quorin > LTE > RRC State\n"));
}

TEST(TerminalScreen, DrawsAtAnySize) {
  Shown shown;
  shown.press(U"j\rj\r\rl");
  for (int rows = 1; rows < 30; ++rows)
    for (int columns = 1; columns < 160; columns += 3) shown.drawn(rows, columns);
}

TEST(Keys, MeanWhatTheHelpSays) {
  struct {
    Action action;
    std::u32string keys;
  } const rows[] = {
      {Action::up, {key::kUp, 'k'}},
      {Action::down, {key::kDown, 'j'}},
      {Action::pageUp, {key::kPageUp, 2}},
      {Action::pageDown, {key::kPageDown, 6, ' '}},
      {Action::first, {key::kHome, 'g'}},
      {Action::last, {key::kEnd, 'G'}},
      {Action::open, {key::kEnter, '\n'}},
      {Action::close, {key::kEscape, key::kBackspace}},
      {Action::quit, {'q'}},
      {Action::left, {key::kLeft, 'h', key::kBackTab}},
      {Action::right, {key::kRight, key::kTab}},
      {Action::find, {'/'}},
      {Action::findNext, {'n'}},
      {Action::findPrevious, {'N'}},
      {Action::log, {'l'}},
      {Action::logOlder, {'<'}},
      {Action::logNewer, {'>'}},
      {Action::mouse, {'m'}},
      {Action::repaint, {12}},
      {Action::help, {'?'}},
  };
  std::size_t keys = 0;
  for (const auto& row : rows)
    for (const char32_t pressed : row.keys) {
      ++keys;
      ASSERT_TRUE(keyRow(pressed)) << static_cast<unsigned>(pressed);
      EXPECT_EQ(keyRow(pressed)->action, row.action) << static_cast<unsigned>(pressed);
    }
  std::size_t known = 0;
  for (const KeyRow& row : keyRows())
    for (const char32_t pressed : row.keys) known += pressed != 0;
  EXPECT_EQ(keys, known);
}

TEST(Keys, HaveOneMeaningEach) {
  std::set<char32_t> keys;
  for (const KeyRow& row : keyRows())
    for (char32_t pressed : row.keys)
      if (pressed != 0) {
        EXPECT_TRUE(keys.insert(pressed).second);
        EXPECT_EQ(keyRow(pressed), &row);
      }
  EXPECT_EQ(keyRow(0), nullptr);
  EXPECT_EQ(keyRow('x'), nullptr);
}

}  // namespace
}  // namespace quorin::terminal::test

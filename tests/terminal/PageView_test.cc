#include "platform/terminal/PageView.h"

#include "tests/support/AnsweringPage.h"
#include "tests/support/rig.h"
#include "tests/terminal/locale.h"

namespace quorin::terminal::test {
namespace {

using quorin::test::AnsweringPage;
using quorin::test::Section;

/// A page that answers what a test says, as a part of a screen.
struct Viewed {
  explicit Viewed(std::vector<Section> sections) {
    answers->sections = std::move(sections);
    page.emplace(answers);
    view.emplace(*page, [this] { ++changes; });
  }
  void answer(std::vector<Section> sections) {
    answers->sections = std::move(sections);
    page->reload();
  }
  std::string drawn(int rows, int columns, Charset charset = Charset::unicode) {
    Canvas canvas(rows, columns, charset);
    view->draw(canvas, canvas.whole(), true);
    return canvas.text();
  }
  /// The texts of the rows in the look of the selection.
  std::string selected(int rows, int columns) {
    Canvas canvas(rows, columns, Charset::unicode);
    view->draw(canvas, canvas.whole(), true);
    std::string text;
    for (int row = 0; row < rows; ++row)
      if (canvas.at(row, 0).style == Style::selected) text += canvas.text(row) + '\n';
    return text;
  }

  Utf8Locale locale;
  std::shared_ptr<AnsweringPage> answers = std::make_shared<AnsweringPage>();
  std::optional<ScreenPage> page;
  std::optional<PageView> view;
  int changes = 0;
};

std::vector<Section> carriers(int count) {
  std::vector<Section> sections;
  for (int i = 0; i < count; ++i)
    sections.push_back(
        {"Carrier " + std::to_string(i),
         {{"index", std::to_string(i)}, {"pci", "7"}, {"rsrp", "-97", {"dBm", ""}}}});
  return sections;
}

TEST(PageView, DrawsRowsWithDetailsInOneColumn) {
  Viewed page({{std::nullopt, {{"state", "IDLE"}, {"prev_state_dur_ms", "44000"}, {"cause", ""}}}});
  EXPECT_EQ(page.drawn(4, 40),
            " state               IDLE\n"
            " prev_state_dur_ms   44000\n"
            " cause\n"
            "\n");
}

TEST(PageView, DrawsSectionsUnderTheirHeaders) {
  Viewed page(carriers(2));
  EXPECT_EQ(page.drawn(8, 40),
            " Carrier 0\n"
            "   index   0\n"
            "   pci     7\n"
            "   rsrp    -97 dBm\n"
            " Carrier 1\n"
            "   index   1\n"
            "   pci     7\n"
            "   rsrp    -97 dBm\n");
}

TEST(PageView, SaysThatThereAreNoEntries) {
  Viewed page({{std::nullopt, {}}});
  EXPECT_EQ(page.drawn(2, 40), " No entries\n\n");
  page.view->move(1);
  page.view->moveToEnd(true);
  EXPECT_EQ(page.view->selection(), 0U);
}

TEST(PageView, WrapsWhatIsTooLong) {
  Viewed page({{std::nullopt,
                {{"addr", "<20010db8002a00000000000000000017>"},
                 {"mo_signalling_ac_barring_for_special_ac", "1"},
                 {"x", "KREG_STATUS_NORMAL_SERVICE"}}}});
  EXPECT_EQ(page.drawn(8, 40),
            " addr   <20010db8002a000000000000000000\n"
            "        17>\n"
            " mo_signalling_ac_barring_for_special_\n"
            " ac\n"
            "        1\n"
            " x      KREG_STATUS_NORMAL_SERVICE\n"
            "\n\n");
}

TEST(PageView, KeepsTheHeaderOfTheFirstSectionInSight) {
  Viewed page(carriers(3));
  page.view->moveToEnd(true);
  EXPECT_EQ(page.drawn(3, 30),
            " Carrier 2                   ↑\n"
            "   pci     7\n"
            "   rsrp    -97 dBm\n");
  page.view->move(-1);
  page.view->move(-1);
  EXPECT_EQ(page.drawn(3, 30),
            " Carrier 2                   ↑\n"
            "   index   2\n"
            "   pci     7                 ↓\n");
  page.view->move(-1);
  EXPECT_EQ(page.drawn(3, 30),
            " Carrier 1                   ↑\n"
            "   rsrp    -97 dBm\n"
            " Carrier 2                   ↓\n");
}

TEST(PageView, SelectsRowsAndPassesOverHeaders) {
  Viewed page(carriers(2));
  EXPECT_EQ(page.selected(8, 40), "   index   0\n");
  page.view->move(3);
  EXPECT_EQ(page.selected(8, 40), "   index   1\n");
  page.view->move(-1);
  EXPECT_EQ(page.selected(8, 40), "   rsrp    -97 dBm\n");
  page.view->move(-100);
  EXPECT_EQ(page.selected(8, 40), "   index   0\n");
  page.view->moveToEnd(true);
  EXPECT_EQ(page.view->selection(), 7U);
  page.view->moveToEnd(false);
  EXPECT_EQ(page.view->selection(), 1U);
}

TEST(PageView, MovesByScreensOfWhichTwoLinesStayInSight) {
  std::vector<Section> rows(1);
  for (int i = 0; i < 40; ++i) rows[0].rows.push_back({"index", std::to_string(i)});
  Viewed page(rows);
  struct {
    int height;
    int screens;
    std::size_t selection;
  } const moves[] = {{10, 1, 8},  {10, 1, 16}, {7, 1, 21},  {7, -1, 16}, {10, 2, 32},
                     {10, 1, 39}, {3, -1, 38}, {2, -1, 37}, {1, -1, 36}, {1, 1, 37}};
  for (const auto& move : moves) {
    (void)page.drawn(move.height, 40);
    page.view->moveByScreens(move.screens);
    EXPECT_EQ(page.view->selection(), move.selection) << move.height << ", " << move.screens;
  }
}

TEST(PageView, KeepsItsSelectionWhenLinesComeAndGo) {
  Viewed page(carriers(3));
  page.view->select(6);
  EXPECT_EQ(page.selected(12, 40), "   pci     7\n");
  auto sections = carriers(3);
  sections[0].rows.insert(sections[0].rows.begin(), {"state", "ON"});
  page.answer(sections);
  EXPECT_EQ(page.view->selection(), 7U);
  page.answer(carriers(1));
  EXPECT_EQ(page.view->selection(), 1U) << "its carrier is gone: the row behind what went";
  page.answer({{std::nullopt, {}}});
  EXPECT_EQ(page.selected(3, 40), "");
  page.answer(carriers(1));
  EXPECT_EQ(page.selected(4, 40), "   index   0\n");
}

TEST(PageView, MarksValuesThatTheLatestReloadChanged) {
  Viewed page({{std::nullopt, {{"pci", "7"}, {"rsrp", "-97"}}}});
  EXPECT_EQ(page.drawn(2, 40), " pci    7\n rsrp   -97\n");
  page.answer({{std::nullopt, {{"pci", "7"}, {"rsrp", "-98"}}}});
  EXPECT_EQ(page.drawn(2, 40), " pci    7\n rsrp • -98\n");
  EXPECT_EQ(page.drawn(2, 40, Charset::ascii), " pci    7\n rsrp * -98\n");
  page.page->reload();
  EXPECT_EQ(page.drawn(2, 40), " pci    7\n rsrp   -98\n");
  EXPECT_EQ(page.changes, 2);
}

TEST(PageView, MarksTheValueOfATextThatTakesSeveralRows) {
  Viewed page({{std::nullopt, {{"mo_signalling_ac_barring_for_special_ac", "1"}, {"x", "1"}}}});
  page.answer({{std::nullopt, {{"mo_signalling_ac_barring_for_special_ac", "2"}, {"x", "1"}}}});
  EXPECT_EQ(page.drawn(4, 40),
            " mo_signalling_ac_barring_for_special_\n"
            " ac\n"
            "   • 2\n"
            " x   1\n");
}

TEST(PageView, DrawsTheTrendOfANumberWhereThereIsRoom) {
  Viewed page({{std::nullopt, {{"rsrp", "-97"}, {"pci", "7"}}}});
  std::int64_t at = 1;
  for (const char* value : {"-97", "-90", "-95"}) {
    page.answers->report = LastReport{Milliseconds(at++)};
    page.answer({{std::nullopt, {{"rsrp", value}, {"pci", "7"}}}});
  }
  page.page->reload();
  EXPECT_EQ(page.drawn(2, 40), " rsrp   -95               ▁█▃\n pci    7\n");
  EXPECT_EQ(page.drawn(2, 34), " rsrp   -95\n pci    7\n") << "a whole one has no room";
  EXPECT_EQ(page.drawn(2, 40, Charset::ascii), " rsrp   -95\n pci    7\n");
}

TEST(PageView, ScrollsAndFindsTheLineAtAPlace) {
  Viewed page(carriers(3));
  page.drawn(4, 30);
  page.view->scroll(3);
  EXPECT_EQ(page.drawn(4, 30),
            " Carrier 1                   ↑\n"
            "   index   1\n"
            "   pci     7\n"
            "   rsrp    -97 dBm           ↓\n")
      << "a header without its rows is passed over";
  EXPECT_EQ(page.view->selection(), 1U);
  EXPECT_EQ(page.view->lineAt(0, 5), 4U);
  EXPECT_EQ(page.view->lineAt(2, 5), 6U);
  EXPECT_EQ(page.view->lineAt(4, 5), std::nullopt);
  EXPECT_EQ(page.view->lineAt(2, 30), std::nullopt);
  page.view->scroll(100);
  page.drawn(4, 30);
  EXPECT_EQ(page.view->lineAt(3, 0), 11U);
  page.view->hide();
  EXPECT_EQ(page.view->lineAt(2, 5), std::nullopt);
}

TEST(PageView, DrawsAnyPageAtAnySize) {
  auto sections = carriers(4);
  sections[1].rows.push_back({"addr", std::string(300, 'f'), {"x/y", ""}});
  sections[2].rows.push_back({std::string(90, 'n'), "漢字漢字漢字漢字漢字漢字漢字漢字"});
  Viewed page(sections);
  for (int rows = 0; rows < 12; ++rows)
    for (int columns = 1; columns < 60; ++columns)
      for (std::size_t line = 0; line < page.page->lines().size(); ++line) {
        page.view->select(line);
        page.drawn(rows, columns);
      }
}

}  // namespace
}  // namespace quorin::terminal::test

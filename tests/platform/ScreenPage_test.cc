#include "platform/screen/ScreenPage.h"

#include "tests/support/AnsweringPage.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Notes each step, and that the lines fit it.
class Steps final : public ScreenPageObserver {
 public:
  explicit Steps(ScreenPage& page) : _page(page) { page.setObserver(this); }
  ~Steps() override { _page.setObserver(nullptr); }

  void willRemove(std::size_t first, std::size_t count) override { begin("remove", first, count); }
  void didRemove(std::size_t first, std::size_t count) override { end("remove", first, count, -1); }
  void willInsert(std::size_t first, std::size_t count) override { begin("insert", first, count); }
  void didInsert(std::size_t first, std::size_t count) override { end("insert", first, count, 1); }
  void didChange(std::size_t line) override { taken.push_back("change " + std::to_string(line)); }
  void didMark(std::size_t line) override { taken.push_back("mark " + std::to_string(line)); }
  void didReload() override { taken.emplace_back("reload"); }

  std::vector<std::string> taken;

 private:
  void begin(const std::string& what, std::size_t first, std::size_t count) {
    taken.push_back(what + " " + std::to_string(first) + " " + std::to_string(count));
    _before = _page.lines().size();
  }
  void end(const std::string& what, std::size_t first, std::size_t count, int sign) {
    EXPECT_EQ(taken.back(), what + " " + std::to_string(first) + " " + std::to_string(count));
    EXPECT_EQ(static_cast<int>(_page.lines().size()),
              static_cast<int>(_before) + sign * static_cast<int>(count));
  }

  ScreenPage& _page;
  std::size_t _before = 0;
};

std::string shown(const ScreenPage& page) {
  std::string text;
  for (const ScreenLine& line : page.lines())
    text += line.isHeader()
                ? "# " + line.text + "\n"
                : std::to_string(line.row->section) + "." + std::to_string(line.row->row) + " " +
                      line.text + "=" + line.detail + "\n";
  return text;
}

Section section(std::optional<std::string> header, std::vector<Section::Row> rows) {
  return {std::move(header), std::move(rows)};
}

struct Reload {
  const char* sentence;
  std::vector<Section> before;
  std::vector<Section> after;
  std::vector<std::string> steps;
};

TEST(ScreenPage, ChangesOnlyWhatTheControllerAnswersAnew) {
  const Section one = section("A 0", {{"pci", "1"}, {"rsrp", "-90"}});
  const Section two = section("A 1", {{"pci", "2"}, {"rsrp", "-95"}});
  const Section three = section("A 2", {{"pci", "3"}, {"rsrp", "-99"}});
  const Section changed = section("A 1", {{"pci", "2"}, {"rsrp", "-94"}});
  const Section noRsrp = section("A 0", {{"pci", "7"}});
  const Reload reloads[] = {
      {"nothing", {one, two}, {one, two}, {"reload"}},
      {"a detail", {one, two}, {one, changed}, {"change 5", "reload"}},
      {"a section more", {one}, {one, two}, {"insert 3 3", "reload"}},
      {"a section less", {one, two, three}, {one, two}, {"remove 6 3", "reload"}},
      {"a row gone above", {one, two}, {noRsrp, two}, {"remove 2 1", "change 1", "reload"}},
      {"a row come above", {noRsrp, two}, {one, two}, {"insert 2 1", "change 1", "reload"}},
      {"another section",
       {one},
       {three},
       {"remove 0 1", "insert 0 1", "change 1", "change 2", "reload"}},
      {"all gone", {one, two}, {}, {"remove 0 6", "reload"}},
      {"the first", {}, {one}, {"insert 0 3", "reload"}},
  };
  for (const Reload& reload : reloads) {
    const auto controller = std::make_shared<AnsweringPage>();
    controller->sections = reload.before;
    ScreenPage page(controller);
    Steps steps(page);
    controller->sections = reload.after;
    controller->tableView().reloadData();
    EXPECT_EQ(steps.taken, reload.steps) << reload.sentence;
    EXPECT_EQ(shown(page), shown(ScreenPage(controller))) << reload.sentence;
  }
}

TEST(ScreenPage, KeepsTheMarkOfItsOpenLineWhereTheLineGoes) {
  const auto controller = std::make_shared<AnsweringPage>();
  controller->sections = {section(std::nullopt, {{"a", ""}, {"b", ""}})};
  ScreenPage page(controller);
  Steps steps(page);
  page.setOpenLine(1);
  EXPECT_THAT(steps.taken, ElementsAre("mark 1"));
  controller->sections = {section(std::nullopt, {{"b", ""}})};
  page.reload();
  EXPECT_TRUE(page.lines()[0].open);
  page.setOpenLine(std::nullopt);
  EXPECT_FALSE(page.lines()[0].open);
}

TEST(ScreenPage, DrawsATrendOfReportsAndNotOfReloads) {
  const auto controller = std::make_shared<AnsweringPage>();
  ScreenPage page(controller);
  const auto report = [&](int second, const char* detail) {
    controller->report = LastReport{Milliseconds{second * 1000}};
    controller->sections = {section(std::nullopt, {{"rsrp", detail}, {"state", "IDLE"}})};
    page.reload();
  };
  report(1, "-90");
  page.reload();
  report(2, "-91.5");
  report(3, "Waiting for Update");
  report(4, "-93");
  std::vector<double> values;
  std::vector<Milliseconds::rep> times;
  for (const Trend::Point& point : page.lines()[0].trend.points()) {
    values.push_back(point.value);
    times.push_back(point.uptime.count());
  }
  EXPECT_THAT(values, ElementsAre(-90, -91.5, -93));
  EXPECT_THAT(times, ElementsAre(1000, 2000, 4000));
  EXPECT_THAT(page.lines()[1].trend.points(), IsEmpty());
  EXPECT_EQ(page.lines()[0].trend.range(), std::pair(-93.0, -90.0));
  for (int second = 5; second < 200; ++second) report(second, "-80");
  EXPECT_EQ(page.lines()[0].trend.points().size(), Trend::kCapacity);
}

TEST(ScreenPage, SaysHowOldItIs) {
  VirtualClock clock;
  const auto controller = std::make_shared<AnsweringPage>();
  ScreenPage page(controller);
  EXPECT_EQ(page.age(), "never received");
  controller->report = LastReport{Milliseconds{0}};
  clock.advance(Milliseconds{12'999});
  EXPECT_EQ(page.age(), "last report 12 s ago");
  controller->report = std::nullopt;
  EXPECT_EQ(page.age(), "");
}

TEST(ScreenPage, FindsTextsWhateverTheirCaseAndRoundTheEnd) {
  const auto controller = std::make_shared<AnsweringPage>();
  controller->sections = {section("Neighbor 0", {{"pci", "17"}, {"Earfcn", "6300"}}),
                          section("Neighbor 1", {{"pci", "18"}})};
  ScreenPage page(controller);
  EXPECT_EQ(page.find("PCI", 0), 1U);
  EXPECT_EQ(page.find("pci", 2), 4U);
  EXPECT_EQ(page.find("earf", 3), 2U);
  EXPECT_EQ(page.find("630", 0), 2U);
  EXPECT_EQ(page.find("rsrp", 0), std::nullopt);
  EXPECT_EQ(page.findBefore("pci", 4), 1U);
  EXPECT_EQ(page.findBefore("pci", 1), 4U);
  EXPECT_EQ(page.findBefore("630", 2), 2U) << "round the start, to where it began";
  EXPECT_EQ(page.findBefore("rsrp", 0), std::nullopt);
  controller->sections = {};
  page.reload();
  EXPECT_EQ(page.find("pci", 0), std::nullopt);
}

TEST(ScreenPage, IsCopiedAsTabbedLines) {
  const auto controller = std::make_shared<AnsweringPage>();
  controller->setTitle("CA Status");
  controller->sections = {section("Component Carrier 0", {{"pci", "17"}, {"Come back later", ""}})};
  const ScreenPage page(controller);
  EXPECT_EQ(copyText(page), "CA Status\nComponent Carrier 0\npci\t17\nCome back later\n");
}

TEST(ScreenPage, LeavesItsControllerAloneOnceItIsGone) {
  const auto controller = std::make_shared<AnsweringPage>();
  { const ScreenPage page(controller); }
  controller->tableView().reloadData();
  EXPECT_EQ(controller.use_count(), 1);
}

struct NumberCase {
  const char* text;
  std::optional<double> number;
};

TEST(Trend, TakesATextForANumberOnlyAsAWhole) {
  const NumberCase cases[] = {{"-90", -90},   {"-10.5", -10.5}, {"0", 0},     {"", {}},
                              {"12 dB", {}},  {" 1", {}},       {"<0a>", {}}, {"1e3", {}},
                              {"0x10", {}},   {"nan", {}},      {"inf", {}},  {"-", {}},
                              {"2026-05", {}}};
  for (const auto& [text, number] : cases) EXPECT_EQ(numberIn(text), number) << text;
}

}  // namespace
}  // namespace quorin::test

#include "platform/window/WindowScreen.h"

#include <QAccessible>
#include <QClipboard>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QQuickItem>

#include "app/interface.h"
#include "metrics/MetricValidator.h"
#include "platform/window/TrendItem.h"
#include "tests/support/intake.h"
#include "tests/support/rig.h"
#include "tests/support/sample_metrics.h"
#include "tests/window/offscreen.h"

namespace quorin::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

/// The launched application in a window that nobody sees, its clock the test's.
class Windowed {
 public:
  explicit Windowed(QSize size = {390, 844}, std::optional<double> textScale = {}) : _qt(qt()) {
    application.launch("AppDelegate");
    screen = std::make_unique<WindowScreen>(application, WindowLook{size, false, textScale});
    QAccessible::setActive(true);
    settle();
  }

  void key(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {}) {
    for (auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, modifiers, text);
      QCoreApplication::sendEvent(window(), &event);
    }
    settle();
  }
  void type(const char* text) {
    for (const char* c = text; *c; ++c) key(QChar(*c).toUpper().unicode(), QString(QChar(*c)));
  }
  void openRow(int row) {
    key(Qt::Key_Home);
    for (int i = 0; i < row; ++i) key(Qt::Key_Down);
    key(Qt::Key_Return);
  }

  /// In the middle of the row with this name.
  void click(const QString& row, Qt::MouseButton button) {
    QAccessibleInterface* line = find(QAccessible::ListItem, row);
    ASSERT_TRUE(line);
    const QPointF global = line->rect().center();
    const QPointF local = window()->mapFromGlobal(global);
    for (auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QMouseEvent event(type, local, global, button,
                        type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
      QCoreApplication::sendEvent(window(), &event);
    }
    settle();
  }

  /// The children of the list with this title: "# header" or "text=detail"; "none" without one.
  Lines page(const QString& title) {
    QAccessibleInterface* list = find(QAccessible::List, title);
    if (!list) return {"none"};
    Lines lines;
    for (int i = 0; i < list->childCount(); ++i) {
      QAccessibleInterface* child = list->child(i);
      const std::string name = child->text(QAccessible::Name).toStdString();
      lines.push_back(child->role() == QAccessible::Heading
                          ? "# " + name
                          : name + "=" + child->text(QAccessible::Description).toStdString());
    }
    return lines;
  }
  /// The same once it has so many lines: lines out of sight are made while the window is idle.
  Lines page(const QString& title, std::size_t lines) {
    for (int i = 0; i < 200 && page(title).size() != lines; ++i) settle();
    return page(title);
  }
  std::string focused() {
    QAccessibleInterface* line = find([](QAccessibleInterface& node) {
      return node.role() == QAccessible::ListItem && node.state().focused;
    });
    return line ? line->text(QAccessible::Name).toStdString() : "";
  }
  QAccessibleInterface* find(QAccessible::Role role, const QString& name) {
    return find([&](QAccessibleInterface& node) {
      return node.role() == role && node.text(QAccessible::Name) == name;
    });
  }
  QAccessibleInterface* find(const std::function<bool(QAccessibleInterface&)>& wanted) {
    return findBelow(QAccessible::queryAccessibleInterface(window()), wanted);
  }

  QQuickWindow* window() { return screen->window(); }
  /// Lets the window do what is pending, whatever it takes.
  void settle() {
    for (int i = 0; i < 3; ++i) {
      runMainQueue();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      QCoreApplication::processEvents();
      window()->grabWindow();
    }
  }

 private:
  static QAccessibleInterface* findBelow(QAccessibleInterface* node,
                                         const std::function<bool(QAccessibleInterface&)>& wanted) {
    if (!node || wanted(*node)) return node;
    for (int i = 0; i < node->childCount(); ++i)
      if (auto* found = findBelow(node->child(i), wanted)) return found;
    return nullptr;
  }

  QGuiApplication& _qt;

 public:
  RecordedLog log;
  ScriptedService service;
  VirtualClock clock;
  UIApplication application{interfaceDescription()};
  std::unique_ptr<WindowScreen> screen;
};

/// What the page on top of the navigation answers, as `Windowed::page` reads it.
Lines answered(UIApplication& application) {
  auto& page = dynamic_cast<UITableViewController&>(*application.navigation().topViewController());
  Lines lines;
  for (const SectionContents& section : contentsOf(page)) {
    if (section.header) lines.push_back("# " + *section.header);
    for (const auto& row : section.rows) lines.push_back(row.text + "=" + row.detail);
  }
  return lines;
}

TEST(WindowScreen, ShowsEveryPageAsItsControllerAnswers) {
  Windowed shown;
  handleSampleMetrics();
  int pages = 0;
  const int categories[] = {3, 14, 15, 11};
  for (int technology = 0; technology < 4; ++technology) {
    shown.openRow(technology);
    for (int category = 0; category < categories[technology]; ++category) {
      shown.openRow(category);
      const QString title =
          QString::fromStdString(shown.application.navigation().topViewController()->title());
      EXPECT_EQ(shown.page(title, answered(shown.application).size()), answered(shown.application))
          << title.toStdString();
      ++pages;
      shown.key(Qt::Key_Escape);
    }
    shown.key(Qt::Key_Backspace);
  }
  EXPECT_EQ(pages, 43);
}

TEST(WindowScreen, ShowsNewValuesAtTheFirstReloadAfterTheEvent) {
  Windowed shown;
  shown.openRow(1);
  shown.openRow(1);
  EXPECT_THAT(shown.page("RRC State"), IsEmpty());
  EXPECT_TRUE(shown.find(QAccessible::StaticText, "No entries"));
  EXPECT_TRUE(shown.find(QAccessible::StaticText, "never received"));
  shown.clock.advance(Milliseconds{1000});
  handleSampleMetrics();
  shown.clock.advance(Milliseconds{3999});
  shown.settle();
  EXPECT_THAT(shown.page("RRC State"), IsEmpty());
  shown.clock.advance(Milliseconds{1});
  shown.settle();
  EXPECT_EQ(shown.page("RRC State", answered(shown.application).size()),
            answered(shown.application));
  EXPECT_THAT(shown.page("RRC State"), ::testing::Not(IsEmpty()));
  EXPECT_FALSE(shown.find(QAccessible::StaticText, "No entries"));
  EXPECT_TRUE(shown.find(QAccessible::StaticText, "last report 4 s ago"));
}

TEST(WindowScreen, KeepsItsPlaceWhileRowsComeGoAndChange) {
  Windowed shown;
  handleSampleMetrics();
  shown.openRow(1);
  shown.openRow(1);
  shown.key(Qt::Key_Down);
  shown.key(Qt::Key_Down);
  const std::string before = shown.focused();
  EXPECT_EQ(before, "prev_state");
  handleSampleMetrics();
  shown.clock.advance(Milliseconds{5000});
  shown.settle();
  EXPECT_EQ(shown.focused(), before);
}

/// The texts of the lines that are marked as changed.
void collectMarked(QQuickItem& item, Lines& marked) {
  if (item.property("marked").toBool())
    marked.push_back(item.property("mainText").toString().toStdString());
  for (QQuickItem* child : item.childItems()) collectMarked(*child, marked);
}

TEST(WindowScreen, MarksWhatChangedAndNothingElse) {
  Windowed shown;
  const auto report = [&](const char* fields) {
    (void)MetricValidator::sharedInstance()->isMetricIDValidWithMetricdict(
        eventWith(3952132, fields));
  };
  report("1:1500 4:10");
  shown.openRow(1);
  shown.openRow(1);
  const auto markedAfterReload = [&] {
    shown.clock.advance(Milliseconds{5000});
    shown.settle();
    Lines marked;
    collectMarked(*shown.window()->contentItem(), marked);
    return marked;
  };
  EXPECT_THAT(markedAfterReload(), IsEmpty());
  report("1:1500 4:20");
  EXPECT_THAT(markedAfterReload(), ElementsAre("prev_state_dur_ms"));
}

TEST(WindowScreen, ShowsTechnologyAndCategoryBesideTheFieldsWhereThereIsRoom) {
  Windowed shown({900, 700});
  shown.openRow(1);
  shown.openRow(11);
  EXPECT_EQ(shown.page("Quorin").size(), 4U);
  EXPECT_EQ(shown.page("LTE").size(), 14U);
  EXPECT_EQ(shown.page("CA Status", answered(shown.application).size()),
            answered(shown.application));
  EXPECT_TRUE(shown.find(QAccessible::Button, "Back"));
  shown.window()->resize(899, 700);
  shown.settle();
  EXPECT_THAT(shown.page("LTE"), ElementsAre("none"));
  EXPECT_EQ(shown.page("CA Status", answered(shown.application).size()),
            answered(shown.application));
}

TEST(WindowScreen, FindsWhatIsTyped) {
  Windowed shown;
  shown.openRow(1);
  shown.type("tx");
  EXPECT_EQ(shown.focused(), "Tx Power");
  EXPECT_TRUE(shown.find(QAccessible::StaticText, "Find: tx"));
  shown.key(Qt::Key_Backspace);
  EXPECT_TRUE(shown.find(QAccessible::StaticText, "Find: t"));
  shown.key(Qt::Key_Escape);
  EXPECT_FALSE(shown.find(QAccessible::StaticText, "Find: t"));
  shown.key(Qt::Key_Return);
  EXPECT_THAT(shown.page("Tx Power"), ::testing::Not(ElementsAre("none")));
}

TEST(WindowScreen, CopiesARowAndAPage) {
  Windowed shown;
  handleSampleMetrics();
  shown.openRow(1);
  shown.openRow(1);
  shown.key(Qt::Key_C, "\x03", Qt::ControlModifier);
  const Lines lines = answered(shown.application);
  const auto tabbed = [](std::string line) { return line.replace(line.find('='), 1, "\t"); };
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), tabbed(lines[0]));
  shown.key(Qt::Key_C, "\x03", Qt::ControlModifier | Qt::ShiftModifier);
  std::string page = "RRC State\n";
  for (const std::string& line : lines) page += tabbed(line) + "\n";
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), page);
}

TEST(WindowScreen, OpensTheMenuOfTheRowThatIsClickedOnTheRight) {
  Windowed shown;
  shown.openRow(1);
  shown.click("Tx Power", Qt::RightButton);
  EXPECT_TRUE(shown.find(QAccessible::PopupMenu, "Menu"));
  EXPECT_THAT(shown.page("Tx Power"), ElementsAre("none")) << "it is not opened";
  shown.key(Qt::Key_Return);
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "Tx Power");
  EXPECT_EQ(shown.focused(), "Tx Power");
  shown.click("Tx Power", Qt::LeftButton);
  EXPECT_THAT(shown.page("Tx Power"), ::testing::Not(ElementsAre("none")));
}

TEST(WindowScreen, OpensATrendLarge) {
  Windowed shown;
  handleSampleMetrics();
  shown.openRow(1);
  shown.openRow(1);
  for (int i = 0; i < 3; ++i) shown.key(Qt::Key_Down);
  EXPECT_EQ(shown.focused(), "prev_state_dur_ms");
  shown.key(Qt::Key_T, "\x14", Qt::ControlModifier);
  EXPECT_FALSE(shown.find(QAccessible::Chart, "prev_state_dur_ms")) << "one point is no trend";
  shown.clock.advance(Milliseconds{3000});
  handleSampleMetrics();
  shown.clock.advance(Milliseconds{2000});
  shown.settle();
  shown.key(Qt::Key_T, "\x14", Qt::ControlModifier);
  QAccessibleInterface* chart = shown.find(QAccessible::Chart, "prev_state_dur_ms");
  ASSERT_TRUE(chart);
  const std::string value = answered(shown.application)[3].substr(18);
  EXPECT_EQ(chart->text(QAccessible::Description).toStdString(),
            "minimum " + value + " ms, maximum " + value + " ms, over 3 s");
  shown.key(Qt::Key_Escape);
  EXPECT_FALSE(shown.find(QAccessible::Chart, "prev_state_dur_ms"));
  EXPECT_EQ(shown.focused(), "prev_state_dur_ms");
}

/// The item, or the first within it, that is wanted.
QQuickItem* itemBelow(QQuickItem& item, const std::function<bool(QQuickItem&)>& wanted) {
  if (wanted(item)) return &item;
  for (QQuickItem* child : item.childItems())
    if (QQuickItem* found = itemBelow(*child, wanted)) return found;
  return nullptr;
}

TEST(WindowScreen, DrawsATrendFromItsLowestToItsHighestValue) {
  struct {
    const char* name;
    double along, down;
  } const places[] = {{"start low", 0, 1},    {"start middle", 0, 0.5},
                      {"start high", 0, 0},   {"quarter middle", .25, .5},
                      {"half low", 0.5, 1},   {"half middle", 0.5, 0.5},
                      {"half high", 0.5, 0},  {"end low", 1, 1},
                      {"end middle", 1, 0.5}, {"end high", 1, 0}};
  struct {
    std::vector<int> values;
    Lines drawn;
  } const rows[] = {
      {{1000, 3000, 2000}, {"start low", "quarter middle", "half high", "end middle"}},
      {{3000, 1000, 3000}, {"start high", "quarter middle", "half low", "end high"}},
      {{2000, 2000, 2000}, {"start middle", "quarter middle", "half middle", "end middle"}},
  };
  Windowed shown;
  shown.openRow(1);
  for (const auto& row : rows) {
    for (const int& value : row.values) {
      (void)MetricValidator::sharedInstance()->isMetricIDValidWithMetricdict(
          eventWith(3952132, "1:1500 4:" + std::to_string(value)));
      shown.clock.advance(Milliseconds{5000});
      if (&value == &row.values.front()) shown.openRow(1);
      shown.settle();
    }
    QQuickItem* line = itemBelow(*shown.window()->contentItem(), [](QQuickItem& item) {
      return item.property("mainText").toString() == "prev_state_dur_ms";
    });
    ASSERT_TRUE(line);
    auto* trend = dynamic_cast<TrendItem*>(
        itemBelow(*line, [](QQuickItem& item) { return dynamic_cast<TrendItem*>(&item); }));
    ASSERT_TRUE(trend);
    trend->setSize({104, 54});
    QImage image(104, 54, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    trend->paint(&painter);
    Lines drawn;
    for (const auto& place : places)
      if (image.pixelColor(qRound(2 + 99 * place.along), qRound(2 + 49 * place.down)).alpha() > 0)
        drawn.emplace_back(place.name);
    EXPECT_EQ(drawn, row.drawn);
    shown.key(Qt::Key_Escape);
  }
}

/// Every text that the item and those in it show is as wide and high as it needs.
void expectNothingCutOff(QQuickItem& item, Lines& cut) {
  if (!item.isVisible()) return;
  const QString text = item.property("text").toString();
  if (!text.isEmpty() && item.property("paintedWidth").isValid() &&
      (item.property("paintedWidth").toReal() > item.width() + 1 ||
       item.property("paintedHeight").toReal() > item.height() + 1 ||
       item.property("truncated").toBool()))
    cut.push_back(text.toStdString());
  for (QQuickItem* child : item.childItems()) expectNothingCutOff(*child, cut);
}

TEST(WindowScreen, CutsNoTextOffAtTwiceItsSize) {
  for (const QSize size : {QSize(360, 640), QSize(1100, 760)}) {
    Windowed shown(size, 2.0);
    handleSampleMetrics();
    for (int technology = 0; technology < 4; ++technology) {
      shown.openRow(technology);
      for (int category = 0; category < 3; ++category) {
        shown.openRow(category);
        Lines cut;
        expectNothingCutOff(*shown.window()->contentItem(), cut);
        EXPECT_THAT(cut, IsEmpty());
        shown.key(Qt::Key_Escape);
      }
      shown.key(Qt::Key_Escape);
    }
  }
}

TEST(WindowScreen, HoldsNothingForAPageThatIsNoLongerShown) {
  Windowed shown;
  shown.openRow(1);
  shown.openRow(1);
  const std::weak_ptr<UIViewController> page = shown.application.navigation().topViewController();
  const long held = page.use_count();
  shown.key(Qt::Key_Escape);
  EXPECT_THAT(shown.page("RRC State"), ElementsAre("none"));
  EXPECT_EQ(page.use_count(), 1) << "its timer only; it was " << held;
}

}  // namespace
}  // namespace quorin::test

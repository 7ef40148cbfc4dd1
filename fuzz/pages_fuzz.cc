#include "app/interface.h"
#include "fuzz/support/application.h"
#include "fuzz/support/promise.h"
#include "platform/screen/ScreenStack.h"
#include "viewer/SecondLevelViewController.h"

namespace {

using namespace quorin;
using fuzz::promise;

constexpr Milliseconds kReloadInterval{5000};

/// A page's lines as the pages' table has them for the store at this moment.
std::string linesOf(const std::string& key, MetricValidator& validator) {
  const PageRow* counts = pageRow(key, Question::counts);
  const PageRow* cells = pageRow(key, Question::cells);
  const bool hasSections = counts && std::holds_alternative<SectionPerEntryOf>(counts->shown);
  const auto sections = counts ? sectionsOf(*counts, validator) : std::vector<Dictionary>(1);
  std::string lines;
  for (std::size_t i = 0; i < sections.size(); ++i) {
    if (hasSections) lines += "# " + std::string(counts->header) + std::to_string(i) + "\n";
    for (const auto& [name, value] : sections[i])
      lines += cells ? std::string(name.text) + "=" + printed(value) + "\n" : "Come back later=\n";
    if (!counts) lines += "Come back later=\n";
  }
  return lines;
}

std::string linesOf(const ScreenPage& page) {
  std::string lines;
  for (const ScreenLine& line : page.lines())
    lines += line.isHeader() ? "# " + line.text + "\n" : line.text + "=" + line.detail + "\n";
  return lines;
}

std::string textOf(const UILabel* label) {
  return label && label->text() ? *label->text() : std::string();
}

/// What a page answers between two reloads is what it answered at the first, whatever the store
/// holds by now.
void checkSnapshot(const ScreenPage& page) {
  UITableViewController& controller = page.controller();
  UITableView& table = controller.tableView();
  std::map<std::ptrdiff_t, std::ptrdiff_t> rows;
  for (const ScreenLine& line : page.lines()) {
    if (line.isHeader()) continue;
    ++rows[line.row->section];
    const Cell cell = controller.cellForRowAtIndexPath(table, *line.row);
    promise(
        textOf(cell->textLabel()) == line.text && textOf(cell->detailTextLabel()) == line.detail,
        "a cell stays until the reload", line.text, line.detail);
    promise(controller.annotationForRowAtIndexPath(table, *line.row) == line.annotation,
            "an annotation stays until the reload", line.text);
    table.reuse(cell);
  }
  std::ptrdiff_t section = 0;
  for (const ScreenLine& line : page.lines())
    if (line.isHeader())
      promise(controller.titleForHeaderInSection(table, section++) == line.text,
              "a header stays until the reload", line.text);
  for (const auto& [number, count] : rows)
    promise(controller.numberOfRowsInSection(table, number) == count,
            "a row count stays until the reload", page.title());
}

/// The launched application, and its pages on a screen.
class Screen {
 public:
  Screen() {
    _application.launch("AppDelegate");
    _stack.emplace(_application);
  }

  void deliver(fuzz::Input& input) { (void)_events.deliver(eventFrom(input)); }

  void press(fuzz::Input& input) {
    const std::size_t level = input.choice(_stack->pages().size());
    const std::size_t lines = _stack->pages()[level]->lines().size();
    if (lines > 0) (void)_stack->press(level, input.choice(lines));
  }

  void back() { (void)_stack->back(); }

  /// Long enough that every page reloads.
  void wait(fuzz::Input& input) {
    _events.advance(kReloadInterval + Milliseconds(10 * input.byte()));
    for (const auto& page : _stack->pages()) {
      const auto* shown = dynamic_cast<SecondLevelViewController*>(&page->controller());
      if (!shown) continue;
      const std::string key = *shown->firstSelection() + " " + *shown->seguedThroughRow();
      const std::string expected = linesOf(key, _events.validator());
      const std::string lines = linesOf(*page);
      promise(lines == expected, "a page shows the store after five seconds", key, lines, expected);
      promise(
          page->age() == "" || page->age() == "never received" || page->age().ends_with(" s ago"),
          "a page tells its age", page->age());
    }
  }

  void pass(fuzz::Input& input) { _events.advance(Milliseconds(10 * input.byte())); }

  void find(fuzz::Input& input) {
    const ScreenPage& page = _stack->top();
    const std::string text = input.text();
    const std::size_t from = input.byte();
    const auto found = page.find(text, from);
    promise(found.has_value() == page.findBefore(text, from).has_value(),
            "what is found forwards is found backwards", text);
    promise(!found || *found < page.lines().size(), "what is found is a line", text);
    promise(copyText(page).starts_with(page.title()), "a page's copy begins with its title");
  }

  void check() const {
    for (const auto& page : _stack->pages()) checkSnapshot(*page);
    promise(_stack->pages().size() == _application.navigation().viewControllers().size(),
            "the screen has the navigation's pages");
  }

 private:
  fuzz::Application& _events = fuzz::Application::instance();
  UIApplication _application{interfaceDescription()};
  std::optional<ScreenStack> _stack;
};

}  // namespace

// Steps of a person, of the service and of time, a byte each and what it needs: events, rows that
// are tapped, ways back, time that passes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const bool noResources = (Bundle::mainBundle().setFolder("/nowhere"), true);
  (void)noResources;
  const fuzz::Application::Run run;
  Screen screen;
  fuzz::Input input(bytes, size);
  while (!input.empty()) {
    switch (input.choice(8)) {
      case 0:
      case 1: screen.deliver(input); break;
      case 2:
      case 3: screen.press(input); break;
      case 4: screen.back(); break;
      case 5: screen.wait(input); break;
      case 6: screen.pass(input); break;
      default: screen.find(input); break;
    }
    screen.check();
  }
  return 0;
}

#include "fuzz/support/Input.h"
#include "fuzz/support/promise.h"
#include "platform/screen/ScreenPage.h"
#include "tests/support/AnsweringPage.h"

namespace {

using namespace quorin;
using fuzz::promise;

/// Follows a page by its observer's steps alone, as a toolkit's list does.
class Follower final : public ScreenPageObserver {
 public:
  explicit Follower(ScreenPage& page) : _page(page), _lines(shown()) { page.setObserver(this); }
  ~Follower() override { _page.setObserver(nullptr); }
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;

  void willRemove(std::size_t first, std::size_t count) override { announce(first, count); }
  void didRemove(std::size_t first, std::size_t count) override {
    keep(first, count);
    promise(first + count <= _lines.size(), "only lines that there are go");
    _lines.erase(at(first), at(first + count));
  }
  void willInsert(std::size_t first, std::size_t count) override { announce(first, count); }
  void didInsert(std::size_t first, std::size_t count) override {
    keep(first, count);
    promise(first <= _lines.size(), "lines come between those that there are");
    const std::vector<std::string> now = shown();
    promise(first + count <= now.size(), "lines that came are there");
    _lines.insert(at(first), now.begin() + static_cast<std::ptrdiff_t>(first),
                  now.begin() + static_cast<std::ptrdiff_t>(first + count));
  }
  void didChange(std::size_t line) override {
    promise(line < _lines.size(), "a line that changes is there");
    _lines[line] = shown()[line];
  }
  void didMark(std::size_t line) override {
    promise(line < _lines.size(), "a marked line is there");
  }
  void didReload() override {
    promise(!_announced, "what is announced happens");
    promise(_lines == shown(), "the steps of a reload lead to what the page shows");
  }

 private:
  [[nodiscard]] std::vector<std::string> shown() const {
    std::vector<std::string> lines;
    for (const ScreenLine& line : _page.lines())
      lines.push_back((line.isHeader() ? "#" : "-") + line.text + "\t" + line.detail + "\t" +
                      line.annotation.unit + line.annotation.meaning);
    return lines;
  }
  [[nodiscard]] std::vector<std::string>::iterator at(std::size_t line) {
    return _lines.begin() + static_cast<std::ptrdiff_t>(line);
  }
  void announce(std::size_t first, std::size_t count) {
    promise(!_announced && count > 0, "one step after the other");
    _announced = {first, count};
  }
  void keep(std::size_t first, std::size_t count) {
    promise(_announced == std::pair(first, count), "what happens was announced");
    _announced.reset();
  }

  ScreenPage& _page;
  std::vector<std::string> _lines;
  std::optional<std::pair<std::size_t, std::size_t>> _announced;
};

// Few letters, so that lines of two reloads are often the same.
std::string shortText(fuzz::Input& input) {
  constexpr std::string_view kTexts[] = {"", "a", "b", "A 0", "A 1", "rsrp", "1", "-1.5", "1e3"};
  const std::uint8_t choice = input.byte();
  return choice == 0xff ? input.text() : std::string(kTexts[choice % std::size(kTexts)]);
}

std::vector<test::Section> sectionsFrom(fuzz::Input& input) {
  std::vector<test::Section> sections(input.choice(5));
  for (test::Section& section : sections) {
    const std::uint8_t shape = input.byte();
    if (shape & 1) section.header = shortText(input);
    section.rows.resize(shape >> 1 & 7);
    for (auto& row : section.rows) {
      row.text = shortText(input);
      row.detail = shortText(input);
      if (shape & 0x10) row.annotation = {shortText(input), shortText(input), "clause"};
    }
  }
  return sections;
}

/// The lines are exactly what the page answers.
void checkLines(const ScreenPage& page, const std::vector<test::Section>& sections) {
  std::size_t line = 0;
  const auto next = [&]() -> const ScreenLine& {
    promise(line < page.lines().size(), "every answer has its line");
    return page.lines()[line++];
  };
  for (std::ptrdiff_t section = 0; section < std::ssize(sections); ++section) {
    const auto& contents = sections[static_cast<std::size_t>(section)];
    if (contents.header) {
      const ScreenLine& header = next();
      promise(header.isHeader() && header.text == *contents.header, "a header is its line");
    }
    std::ptrdiff_t row = 0;
    for (const auto& answer : contents.rows) {
      const ScreenLine& shown = next();
      promise(shown.row == NSIndexPath{section, row++} && shown.text == answer.text &&
                  shown.detail == answer.detail && shown.annotation == answer.annotation,
              "a row is its line", shown.text, shown.detail);
      promise(shown.trend.points().size() <= Trend::kCapacity, "a trend forgets");
    }
  }
  promise(line == page.lines().size(), "no line is left over");
}

}  // namespace

// A page's answers, reload after reload.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz::Input input(bytes, size);
  const auto answers = std::make_shared<test::AnsweringPage>();
  answers->sections = sectionsFrom(input);
  ScreenPage page(answers);
  Follower follower(page);
  checkLines(page, answers->sections);
  std::int64_t uptime = 0;
  while (!input.empty()) {
    const std::uint8_t step = input.byte();
    if (step & 1) answers->report = LastReport{Milliseconds(uptime += step)};
    if (step & 2) answers->report = std::nullopt;
    if (step & 4) page.setOpenLine(input.byte());
    if (step & 8) (void)page.find(shortText(input), input.byte());
    answers->sections = sectionsFrom(input);
    answers->tableView().reloadData();
    checkLines(page, answers->sections);
  }
  return 0;
}

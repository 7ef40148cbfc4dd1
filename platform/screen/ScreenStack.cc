#include "platform/screen/ScreenStack.h"

#include "platform/foundation/fatal.h"

namespace quorin {

namespace {

std::unique_ptr<ScreenPage> screenPage(const Page& page) {
  auto table = std::dynamic_pointer_cast<UITableViewController>(page);
  if (!table) fatal();
  return std::make_unique<ScreenPage>(std::move(table));
}

}  // namespace

ScreenStack::ScreenStack(UIApplication& application) : _application(application) {
  for (const Page& page : application.navigation().viewControllers())
    _pages.push_back(screenPage(page));
}

std::string ScreenStack::path() const {
  std::string path;
  for (std::size_t i = 1; i < _pages.size(); ++i) path += (i > 1 ? " › " : "") + _pages[i]->title();
  return path;
}

bool ScreenStack::press(std::size_t level, std::size_t line) {
  if (level >= _pages.size() || line >= _pages[level]->lines().size()) return false;
  const ScreenLine& pressed = _pages[level]->lines()[line];
  const NSCoder* scene = _pages[level]->controller().scene();
  if (pressed.isHeader() || !scene || scene->segueTo.empty()) return false;
  if (pressed.open) return true;
  while (_pages.size() > level + 1) back();
  const Page page = selectRow(_application.storyboard(), _application.navigation(), *pressed.row);
  if (_observer) _observer->willPush();
  top().setOpenLine(line);
  _pages.push_back(screenPage(page));
  if (_observer) _observer->didPush();
  return true;
}

bool ScreenStack::back() {
  if (_pages.size() < 2) return false;
  _application.navigation().popViewController();
  if (_observer) _observer->willPop();
  const std::unique_ptr<ScreenPage> left = std::move(_pages.back());
  _pages.pop_back();
  top().setOpenLine(std::nullopt);
  if (_observer) _observer->didPop();
  return true;
}

}  // namespace quorin

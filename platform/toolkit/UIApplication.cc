#include "platform/toolkit/UIApplication.h"

#include <algorithm>

#include "platform/foundation/fatal.h"

namespace quorin {

void UIApplication::launch(std::string_view delegateClassName) {
  const auto found =
      std::ranges::find(_storyboard.delegates, delegateClassName, &UIDelegateClass::className);
  if (found == _storyboard.delegates.end()) fatal();
  _delegate = found->make();
  auto root = std::dynamic_pointer_cast<UINavigationController>(
      _storyboard.instantiate(_storyboard.rootClassName));
  if (!root) fatal();
  _delegate->setWindow(std::make_shared<UIWindow>(root));
  if (!_delegate->didFinishLaunchingWithOptions(*this, {})) return;
  root->loadViewIfNeeded();
  root->pushViewController(_storyboard.instantiate(_storyboard.firstClassName));
  _delegate->applicationDidBecomeActive(*this);
}

void UIApplication::terminate() {
  _delegate->applicationWillResignActive(*this);
  _delegate->applicationWillTerminate(*this);
}

}  // namespace quorin

#include "app/interface.h"

#include "app/AppDelegate.h"
#include "app/RootNavigationController.h"
#include "viewer/FirstLevelViewController.h"
#include "viewer/QuorinViewController.h"
#include "viewer/SecondLevelViewController.h"
#include "viewer/ThirdLevelViewController.h"

namespace quorin {

namespace {

template <class Controller>
Page page() {
  return std::make_shared<Controller>();
}

// clang-format off
constexpr UIScene kScenes[] = {
    {"RootNavigationController", page<RootNavigationController>},
    {"QuorinViewController", page<QuorinViewController>, {"LaunchView", CellStyle::basic}, "Quorin",
     "FirstLevelViewController"},
    {"FirstLevelViewController", page<FirstLevelViewController>,
     {"FirstClickView", CellStyle::basic}, "", "SecondLevelViewController"},
    {"SecondLevelViewController", page<SecondLevelViewController>,
     {"SecondClickView", CellStyle::detail}, "", "ThirdLevelViewController"},
    {"ThirdLevelViewController", page<ThirdLevelViewController>,
     {"ThirdClickView", CellStyle::basic, "Field"}, "Field", ""},
};
// clang-format on

constexpr UIDelegateClass kDelegates[] = {
    {"AppDelegate",
     []() -> std::shared_ptr<UIApplicationDelegate> { return std::make_shared<AppDelegate>(); }},
};

constexpr UIStoryboard kInterface{kDelegates, "RootNavigationController", "QuorinViewController",
                                  kScenes};

}  // namespace

const UIStoryboard& interfaceDescription() { return kInterface; }

}  // namespace quorin

#include "platform/toolkit/UIApplication.h"
namespace quorin { int UIApplicationMain(int, char**, std::optional<std::string>, std::string_view, const UIStoryboard&) { return 0; } }

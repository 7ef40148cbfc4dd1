#include "app/interface.h"

int main(int argc, char** argv) {
  return quorin::UIApplicationMain(argc, argv, std::nullopt, "AppDelegate",
                                   quorin::interfaceDescription());
}

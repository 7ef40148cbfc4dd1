#include "platform/baseband/osmin.h"

namespace osmin::client {

namespace {

ManagerFactory& factory() {
  static ManagerFactory factory;
  return factory;
}

}  // namespace

void setManagerFactory(ManagerFactory made) { factory() = std::move(made); }

std::shared_ptr<Manager> CreateManager(const std::string& clientName,
                                       quorin::dispatch_queue_t queue) {
  return factory() ? factory()(clientName, std::move(queue)) : nullptr;
}

// Without a manager there is no service to ask: the command is not carried out.
CommandResult PerformCommand(std::shared_ptr<Manager> manager, const std::string& command,
                             quorin::xpc_object_t input, quorin::xpc_object_t* output) {
  if (!manager) return {kStatusNotCarriedOut, "no baseband manager"};
  return manager->perform(command, input, output);
}

void RegisterEventHandler(std::shared_ptr<Manager> manager, const std::string& event,
                          EventHandler handler) {
  if (manager) manager->registerHandler(event, std::move(handler));
}

void EventsOff(std::shared_ptr<Manager> manager) {
  if (manager) manager->eventsOff();
}

void EventsOn(std::shared_ptr<Manager> manager) {
  if (manager) manager->eventsOn();
}

}  // namespace osmin::client

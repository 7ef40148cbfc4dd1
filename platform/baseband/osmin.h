#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/baseband/xpc.h"
#include "platform/dispatch/queue.h"

/// The baseband-manager service's client library.
namespace osmin {

inline constexpr char kCommandAddConfiguration[] = "kCommandAddConfiguration";
inline constexpr char kCommandClearConfiguration[] = "kCommandClearConfiguration";
inline constexpr char kCommandQueryMetric[] = "kCommandQueryMetric";

inline constexpr char kEventMetric[] = "kEventMetric";
inline constexpr char kEventTrigger[] = "kEventTrigger";

inline constexpr char kKeyAppID[] = "kKeyAppID";
inline constexpr char kKeyMetricID[] = "kKeyMetricID";
inline constexpr char kKeyPayload[] = "kKeyPayload";
inline constexpr char kKeyPayloadType[] = "kKeyPayloadType";
inline constexpr char kKeyProfileID[] = "kKeyProfileID";
inline constexpr char kKeyTriggerID[] = "kKeyTriggerID";
inline constexpr char kKeyTriggerRef[] = "kKeyTriggerRef";
inline constexpr char kKeyTriggerType[] = "kKeyTriggerType";

/// What a command came to: 0 is success.
struct CommandResult {
  std::int32_t status = 0;
  std::string message;
};

/// The status of a command that the library did not carry out.
inline constexpr std::int32_t kStatusNotCarriedOut = static_cast<std::int32_t>(0xE020E002);

/// Takes an event; runs on the manager's queue. The event is the handler's only while it runs.
using EventHandler =
    std::function<void(quorin::xpc_object_t event, const quorin::dispatch_group_t& group)>;

namespace client {

/// One client's connection to the service. Commands run on the caller's thread.
class Manager {
 public:
  virtual ~Manager() = default;
  virtual CommandResult perform(const std::string& command, quorin::xpc_object_t input,
                                quorin::xpc_object_t* output) = 0;
  /// A second handler for the same event replaces the first.
  virtual void registerHandler(const std::string& event, EventHandler handler) = 0;
  virtual void eventsOff() = 0;
  virtual void eventsOn() = 0;
};

/// Makes managers: the way to the service, chosen once when the program starts.
using ManagerFactory = std::function<std::shared_ptr<Manager>(const std::string& clientName,
                                                              quorin::dispatch_queue_t queue)>;
void setManagerFactory(ManagerFactory factory);

/// A manager registered under the name, whose handlers run on the queue.
[[nodiscard]] std::shared_ptr<Manager> CreateManager(const std::string& clientName,
                                                     quorin::dispatch_queue_t queue);

/// Carries out one command and waits for its result.
[[nodiscard]] CommandResult PerformCommand(std::shared_ptr<Manager> manager,
                                           const std::string& command, quorin::xpc_object_t input,
                                           quorin::xpc_object_t* output);
void RegisterEventHandler(std::shared_ptr<Manager> manager, const std::string& event,
                          EventHandler handler);
void EventsOff(std::shared_ptr<Manager> manager);
void EventsOn(std::shared_ptr<Manager> manager);

}  // namespace client
}  // namespace osmin

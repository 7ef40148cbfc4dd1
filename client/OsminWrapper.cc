#include "client/OsminWrapper.h"

#include "client/command_input.h"

namespace quorin {

namespace {

constexpr std::string_view kAppID = "quorin";
constexpr char kClientName[] = "quorin";
constexpr char kQueueLabel[] = "org.quorin.viewer.serialQ.queue";

// What commands send as the application's ID, whatever text was passed: meant.
constexpr std::int32_t kAppIDValue = 2;
constexpr std::int32_t kPayloadType = 0;

}  // namespace

/// One kind of event: how it is logged and where it is delivered.
struct EventKind {
  const char* event;
  std::string_view logText;
  void (OsminWrapperDelegate::*deliver)(const EventRecord*);
};

namespace {

constexpr EventKind kEventKinds[] = {
    {osmin::kEventTrigger, "EventTrigger dict=", &OsminWrapperDelegate::eventsDidUpdate},
    {osmin::kEventMetric, "MetricsTrigger dict=", &OsminWrapperDelegate::metricsDidUpdate},
};

}  // namespace

const std::shared_ptr<OsminWrapper>& OsminWrapper::sharedInstance() {
  // Never destroyed: its queue works until the process ends.
  static auto& shared = *new std::shared_ptr<OsminWrapper>;
  if (!shared) {
    shared = std::make_shared<OsminWrapper>();
    shared->init();
  }
  return shared;
}

void OsminWrapper::init() { _osminManager = osmin::client::CreateManager(kClientName, queue()); }

dispatch_queue_t OsminWrapper::queue() {
  static dispatch_once_t once;
  dispatch_once(once, [this] { _queue = dispatch_queue_create(kQueueLabel); });
  return _queue;
}

bool OsminWrapper::addVantorConfigForAppId(std::string_view appId,
                                           const std::string& andProtofFilePath) {
  if (appId != kAppID) return false;
  const Ref<Data> file = dataWithContentsOfFile(andProtofFilePath);
  const XpcRef payload = commandPayload(file ? file->bytes() : Bytes{});
  if (!payload) return false;
  return perform(osmin::kCommandAddConfiguration,
                 commandInput({{osmin::kKeyAppID, kAppIDValue},
                               {osmin::kKeyPayload, 0, payload.get()},
                               {osmin::kKeyPayloadType, kPayloadType}}),
                 "-[OsminWrapper addVantorConfigForAppId:andProtofFilePath:]");
}

bool OsminWrapper::removeVantorConfigForAppid(std::string_view appId) {
  if (appId != kAppID) return false;
  return perform(osmin::kCommandClearConfiguration, commandInput({{osmin::kKeyAppID, kAppIDValue}}),
                 "-[OsminWrapper removeVantorConfigForAppid:]");
}

bool OsminWrapper::querySpecificMetric(std::string_view appId, std::int32_t triggerRef,
                                       std::int32_t triggerType, std::int32_t triggerID,
                                       std::int32_t profileID, std::int32_t metricID) {
  if (appId != kAppID) return false;
  return perform(osmin::kCommandQueryMetric,
                 commandInput({{osmin::kKeyAppID, kAppIDValue},
                               {osmin::kKeyPayloadType, kPayloadType},
                               {osmin::kKeyTriggerRef, triggerRef},
                               {osmin::kKeyTriggerType, triggerType},
                               {osmin::kKeyTriggerID, triggerID},
                               {osmin::kKeyProfileID, profileID},
                               {osmin::kKeyMetricID, metricID}}),
                 "-[OsminWrapper "
                 "querySpecificMetric:triggerRef:triggerType:triggerID:profileID:metricID:]");
}

bool OsminWrapper::perform(const char* command, const XpcRef& input, const char* caller) {
  osmin::CommandResult result{osmin::kStatusNotCarriedOut, ""};
  xpc_object_t output = commandOutput();
  result = osmin::client::PerformCommand(_osminManager, command, input.get(), &output);
  xpc_release(output);
  systemLog(std::string(caller) + ": error=" + std::to_string(result.status) +
            " msg=" + result.message);
  return result.status == 0;
}

void OsminWrapper::listen() {
  for (const EventKind& kind : kEventKinds)
    osmin::client::RegisterEventHandler(_osminManager, kind.event, handlerOf(kind));
  osmin::client::EventsOff(_osminManager);
  osmin::client::EventsOn(_osminManager);
  systemLog("-[OsminWrapper listen]: listening for events");
}

osmin::EventHandler OsminWrapper::handlerOf(const EventKind& kind) {
  return [self = shared_from_this(), &kind](xpc_object_t event, const dispatch_group_t& /*group*/) {
    const EventRecord* record = _CFXPCCreateCFObjectFromXPCObject(event);
    if (record) record->retain();
    std::string line("-[OsminWrapper listen]_block_invoke: ");
    line += kind.logText;
    line += record ? printed(record->dictionary()) : "(null)";
    systemLog(line);
    if (self->delegate()) {
      dispatch_async(dispatch_get_main_queue(), [self, &kind, record] {
        if (const auto delegate = self->delegate()) (delegate.get()->*kind.deliver)(record);
      });
    }
    // The conversion's own reference is never given back, so that the record outlives its delayed
    // delivery, and the process: meant.
    if (record) record->release();
  };
}

}  // namespace quorin

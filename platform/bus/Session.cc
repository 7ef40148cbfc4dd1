#include "platform/bus/Session.h"

#include <fcntl.h>

#include "platform/bus/protocol.h"
#include "platform/bus/values.h"

namespace quorin::bus {

namespace {

/// Events read in a row, so that commands are answered in between.
constexpr int kMostAtOnce = 64;

struct PendingCommand {
  Session::Reply reply;
};

osmin::CommandResult resultOf(sd_bus_message* message) {
  if (const sd_bus_error* error = sd_bus_message_get_error(message))
    return {osmin::kStatusNotCarriedOut, error->message ? error->message : error->name};
  osmin::CommandResult result;
  const char* text = "";
  if (sd_bus_message_read(message, "is", &result.status, &text) < 0)
    return {osmin::kStatusNotCarriedOut, "the service's answer cannot be read"};
  result.message = text;
  return result;
}

}  // namespace

bool Session::connect(std::string& reason) {
  if (_control && sd_bus_is_open(_control.get()) > 0) return true;
  _control = openBus(reason);
  if (!_control) return false;
  sd_bus_slot* match = nullptr;
  const int result =
      std::min(sd_bus_attach_event(_control.get(), _loop, SD_EVENT_PRIORITY_NORMAL),
               sd_bus_match_signal_async(_control.get(), &match, "org.freedesktop.DBus",
                                         "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                         "NameOwnerChanged", onOwnerChanged, nullptr, this));
  _ownerMatch.reset(match);
  if (result >= 0) return true;
  reason = "the bus refuses to be listened to";
  return false;
}

void Session::perform(const std::string& command, const XpcRef& input, Reply reply) {
  std::string reason;
  if (!connect(reason)) return reply({osmin::kStatusNotCarriedOut, reason});
  sd_bus_message* call = nullptr;
  int result =
      sd_bus_message_new_method_call(_control.get(), &call, kName, kPath, kInterface, kPerform);
  const Message owned(call);
  if (result >= 0) result = sd_bus_message_append(call, "s", command.c_str());
  if (result >= 0) result = appendDictionary(call, input.get());
  auto remembering = [this, command, input,
                      reply = std::move(reply)](const osmin::CommandResult& r) {
    if (r.status == 0 && command == osmin::kCommandAddConfiguration) _configuration = input;
    if (r.status == 0 && command == osmin::kCommandClearConfiguration) _configuration = {};
    reply(r);
  };
  auto pending = std::make_unique<PendingCommand>(PendingCommand{std::move(remembering)});
  if (result >= 0)
    result = sd_bus_call_async(_control.get(), nullptr, call, onReply, pending.get(),
                               kCommandMicroseconds);
  if (result >= 0)
    (void)pending.release();  // the reply's callback owns it now
  else
    pending->reply({osmin::kStatusNotCarriedOut, "the command cannot be sent"});
}

int Session::onReply(sd_bus_message* message, void* pending, sd_bus_error* /*error*/) {
  const std::unique_ptr<PendingCommand> command(static_cast<PendingCommand*>(pending));
  command->reply(resultOf(message));
  return 1;
}

void Session::eventsOn() {
  _wantsEvents = true;
  std::string reason;
  if (!connect(reason)) return;
  sd_bus_slot* call = nullptr;
  (void)sd_bus_call_method_async(_control.get(), &call, kName, kPath, kInterface, kEventsOn,
                                 onEventsReply, this, nullptr);
  _eventsCall.reset(call);
}

void Session::eventsOff() {
  _wantsEvents = false;
  _eventsCall = nullptr;
  _peer = nullptr;
  if (_control)
    (void)sd_bus_call_method_async(_control.get(), nullptr, kName, kPath, kInterface, kEventsOff,
                                   nullptr, nullptr, nullptr);
}

int Session::onEventsReply(sd_bus_message* message, void* session, sd_bus_error* /*error*/) {
  auto& self = *static_cast<Session*>(session);
  int fd = -1;
  if (sd_bus_message_is_method_error(message, nullptr) ||
      sd_bus_message_read(message, "h", &fd) < 0)
    return 1;
  // The message closes its own descriptor.
  self._peer = openPeer(Descriptor(fcntl(fd, F_DUPFD_CLOEXEC, 3)), /*server=*/false);
  self._lastSequence = 0;
  if (!self._peer) return 1;
  (void)sd_bus_add_filter(self._peer.get(), nullptr, onEvent, session);
  sd_event_source* after = nullptr;
  (void)sd_event_add_post(self._loop, &after, afterEach, session);
  self._afterEach.reset(after);
  if (self._reading)
    (void)sd_bus_attach_event(self._peer.get(), self._loop, SD_EVENT_PRIORITY_NORMAL);
  return 1;
}

int Session::onOwnerChanged(sd_bus_message* message, void* session, sd_bus_error* /*error*/) {
  auto& self = *static_cast<Session*>(session);
  const char* name = nullptr;
  const char* before = nullptr;
  const char* after = nullptr;
  if (sd_bus_message_read(message, "sss", &name, &before, &after) < 0) return 0;
  if (std::string_view(name) != kName || std::string_view(after).empty()) return 0;
  self.configureAgain();
  return 0;
}

void Session::configureAgain() {
  if (_configuration)
    perform(osmin::kCommandAddConfiguration, _configuration, [](const osmin::CommandResult&) {});
  if (_wantsEvents) eventsOn();
}

int Session::onEvent(sd_bus_message* message, void* session, sd_bus_error* /*error*/) {
  auto& self = *static_cast<Session*>(session);
  if (!sd_bus_message_is_signal(message, kEventsInterface, kEventSignal)) return 0;
  std::uint64_t sequence = 0;
  const char* kind = nullptr;
  if (sd_bus_message_read(message, "ts", &sequence, &kind) < 0) return 1;
  std::string reason;
  const XpcRef event = readDictionary(message, reason);
  if (!event) return 1;
  if (sequence > self._lastSequence + 1) self._missed += sequence - self._lastSequence - 1;
  self._lastSequence = sequence;
  self._sink(sequence, kind, event);
  return 1;
}

// What has come is read without waiting for each event anew.
int Session::afterEach(sd_event_source* /*source*/, void* session) {
  auto& self = *static_cast<Session*>(session);
  int exitCode = 0;
  for (int i = 0; i < kMostAtOnce && self._peer && self._reading &&
                  sd_event_get_exit_code(self._loop, &exitCode) < 0;
       ++i)
    if (sd_bus_process(self._peer.get(), nullptr) <= 0) break;
  return 0;
}

void Session::setReading(bool reading) {
  if (_reading == reading) return;
  _reading = reading;
  if (!_peer) return;
  if (reading)
    (void)sd_bus_attach_event(_peer.get(), _loop, SD_EVENT_PRIORITY_NORMAL);
  else
    (void)sd_bus_detach_event(_peer.get());
}

}  // namespace quorin::bus

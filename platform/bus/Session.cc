#include "platform/bus/Session.h"

#include <fcntl.h>

#include <algorithm>
#include <ctime>

#include "platform/bus/protocol.h"
#include "platform/bus/values.h"

namespace quorin::bus {

namespace {

constexpr std::uint64_t kBetweenTries = 1'000'000;  // microseconds

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
  sd_bus_slot* ownerSlot = nullptr;
  sd_bus_slot* lossSlot = nullptr;
  const int result =
      std::min({sd_bus_attach_event(_control.get(), _loop, SD_EVENT_PRIORITY_NORMAL),
                sd_bus_match_signal_async(_control.get(), &ownerSlot, "org.freedesktop.DBus",
                                          "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                          "NameOwnerChanged", onOwnerChanged, nullptr, this),
                sd_bus_match_signal_async(
                    _control.get(), &lossSlot, nullptr, "/org/freedesktop/DBus/Local",
                    "org.freedesktop.DBus.Local", "Disconnected", onDisconnected, nullptr, this)});
  _ownerMatch.reset(ownerSlot);
  _lossMatch.reset(lossSlot);
  if (result >= 0) return true;
  reason = "the bus refuses to be listened to";
  return false;
}

void Session::perform(const std::string& command, const XpcRef& input, Reply reply) {
  auto asked = std::make_unique<Command>(Command{*this, command, input, std::move(reply)});
  std::string reason;
  if (!connect(reason)) {
    conclude(*asked, {osmin::kStatusNotCarriedOut, reason}, /*isRefused=*/false);
    return tryAgainSoon();
  }
  sd_bus_message* call = nullptr;
  int result =
      sd_bus_message_new_method_call(_control.get(), &call, kName, kPath, kInterface, kPerform);
  const Message owned(call);
  if (result >= 0) result = sd_bus_message_append(call, "s", command.c_str());
  if (result >= 0) result = appendDictionary(call, input.get());
  if (result >= 0)
    result = sd_bus_call_async(_control.get(), nullptr, call, onReply, asked.get(),
                               kCommandMicroseconds);
  if (result >= 0)
    (void)asked.release();  // the reply's callback owns it now
  else
    conclude(*asked, {osmin::kStatusNotCarriedOut, "the command cannot be sent"},
             /*isRefused=*/false);
}

int Session::onReply(sd_bus_message* message, void* command, sd_bus_error* /*error*/) {
  const std::unique_ptr<Command> asked(static_cast<Command*>(command));
  const osmin::CommandResult result = resultOf(message);
  asked->session.conclude(*asked, result, result.status != 0 && !sd_bus_message_get_error(message));
  return 1;
}

void Session::conclude(const Command& command, const osmin::CommandResult& result, bool isRefused) {
  if (!isRefused && command.name == osmin::kCommandAddConfiguration) _configuration = command.input;
  if (!isRefused && command.name == osmin::kCommandClearConfiguration) _configuration = {};
  command.reply(result);
}

void Session::eventsOn() {
  _wantsEvents = true;
  std::string reason;
  if (!connect(reason)) return tryAgainSoon();
  sd_bus_slot* call = nullptr;
  (void)sd_bus_call_method_async(_control.get(), &call, kName, kPath, kInterface, kEventsOn,
                                 onEventsReply, this, nullptr);
  _eventsCall.reset(call);
}

void Session::eventsOff() {
  _wantsEvents = false;
  _eventsCall = nullptr;
  _reading = nullptr;
  _stream = nullptr;
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
  const auto stream = std::make_shared<EventStream>(
      openPeer(Descriptor(fcntl(fd, F_DUPFD_CLOEXEC, 3)), /*server=*/false), self._sink);
  if (!stream->connection()) return 1;
  if (self._queue)
    self._reading = dispatch_source_create(*self._queue, sd_bus_get_fd(stream->connection()),
                                           [stream] { return stream->read(); });
  else
    (void)sd_bus_attach_event(stream->connection(), self._loop, SD_EVENT_PRIORITY_NORMAL);
  self._stream = stream;
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

// The connection itself is replaced later: its callbacks still run.
int Session::onDisconnected(sd_bus_message* /*message*/, void* session, sd_bus_error* /*error*/) {
  static_cast<Session*>(session)->tryAgainSoon();
  return 0;
}

void Session::tryAgainSoon() {
  sd_event_source* timer = nullptr;
  (void)sd_event_add_time_relative(_loop, &timer, CLOCK_MONOTONIC, kBetweenTries, 0, onTryAgain,
                                   this);
  _trying.reset(timer);
}

int Session::onTryAgain(sd_event_source* /*source*/, std::uint64_t /*time*/, void* session) {
  static_cast<Session*>(session)->configureAgain();
  return 0;
}

void Session::configureAgain() {
  if (_configuration)
    perform(osmin::kCommandAddConfiguration, _configuration, [](const osmin::CommandResult&) {});
  if (_wantsEvents) eventsOn();
}

}  // namespace quorin::bus

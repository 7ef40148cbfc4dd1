#include "fuzz/support/StandInBus.h"

#include <poll.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "fuzz/support/promise.h"
#include "platform/bus/protocol.h"

namespace quorin::fuzz {

namespace {

constexpr std::string_view kBusName = "org.freedesktop.DBus";
constexpr std::string_view kServiceName = ":1.0";
constexpr auto kLongestAnswer = std::chrono::seconds(20);

std::string text(std::string_view value) {
  const auto length = static_cast<std::uint32_t>(value.size());
  return std::string(reinterpret_cast<const char*>(&length), 4).append(value) + '\0';
}

std::string number(std::uint32_t value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

/// What the bus answers to a call of its own members.
struct BusMember {
  std::string_view member;
  std::string_view signature;
  std::string (*body)();
};
const BusMember kBusMembers[] = {
    {"Hello", "s", [] { return text(kServiceName); }},
    {"RequestName", "u", [] { return number(1); }},
    {"AddMatch", "", [] { return std::string(); }},
    {"RemoveMatch", "", [] { return std::string(); }},
    {"GetNameOwner", "s", [] { return text(":1.1"); }},
};

template <class T>
T at(std::string_view bytes, std::size_t offset) {
  T value{};
  if (offset + sizeof value <= bytes.size())
    std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

std::size_t padded(std::size_t offset, std::size_t alignment) {
  return (offset + alignment - 1) / alignment * alignment;
}

}  // namespace

struct StandInBus::Received {
  std::uint8_t type = 0;
  std::uint32_t serial = 0;
  std::uint32_t answers = 0;
  std::string member;
  std::string destination;
  std::string body;
  bus::Descriptor descriptor;
};

StandInBus::StandInBus() : _listening(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string name = "quorin-fuzz-" + std::to_string(getpid());
  std::memcpy(address.sun_path + 1, name.data(), name.size());
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  promise(bind(_listening.get(), reinterpret_cast<const sockaddr*>(&address), length) == 0 &&
              listen(_listening.get(), 4) == 0,
          "there is a bus", std::strerror(errno));
  setenv(bus::kAddressVariable, ("unix:abstract=" + name).c_str(), 1);
  _thread = std::thread([this] { run(); });
  _thread.detach();
}

void StandInBus::startAnew() {
  std::unique_lock lock(_mutex);
  _changed.wait(lock, [this] { return _socket < 0; });
  _calls.clear();
  _answers.clear();
  _stray = 0;
}

std::uint32_t StandInBus::send(const MessageHeader& header, std::string_view body) {
  const std::lock_guard lock(_mutex);
  const std::uint32_t serial = ++_serial;
  if (header.type == SD_BUS_MESSAGE_METHOD_CALL) _calls[serial] = false;
  (void)writeAll(_socket, wireMessage(header, serial, body));
  return serial;
}

void StandInBus::sendRaw(std::string_view bytes) {
  const std::lock_guard lock(_mutex);
  (void)writeAll(_socket, bytes);
}

void StandInBus::leave(std::string_view name) {
  std::string body = text(name);
  body.resize(padded(body.size(), 4));
  body += text(name);
  body.resize(padded(body.size(), 4));
  body += text("");
  (void)send({SD_BUS_MESSAGE_SIGNAL,
              "/org/freedesktop/DBus",
              kBusName,
              "NameOwnerChanged",
              {},
              kBusName,
              "sss"},
             body);
}

std::optional<StandInBus::Answer> StandInBus::answer(std::uint32_t serial) {
  std::unique_lock lock(_mutex);
  const bool came = _changed.wait_for(lock, kLongestAnswer,
                                      [&] { return _socket < 0 || _answers.contains(serial); });
  promise(came, "every call is answered");
  const auto found = _answers.find(serial);
  if (found == _answers.end()) return std::nullopt;
  Answer answer = std::move(found->second);
  _answers.erase(found);
  return answer;
}

std::size_t StandInBus::strayAnswers() {
  const std::lock_guard lock(_mutex);
  return _stray;
}

void StandInBus::run() {
  while (true) {
    const bus::Descriptor socket(accept4(_listening.get(), nullptr, nullptr, SOCK_CLOEXEC));
    {
      const std::lock_guard lock(_mutex);
      _socket = socket.get();
    }
    serve(socket.get());
    const std::lock_guard lock(_mutex);
    _socket = -1;
    _changed.notify_all();
  }
}

void StandInBus::serve(int socket) {
  std::string read;
  bool isGreeted = false;
  bus::Descriptor passed;
  while (true) {
    char buffer[1 << 16];
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
    iovec part{buffer, sizeof buffer};
    msghdr header{};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof control;
    const ssize_t count = recvmsg(socket, &header, MSG_CMSG_CLOEXEC);
    if (count <= 0) return;
    read.append(buffer, static_cast<std::size_t>(count));
    if (const cmsghdr* rights = CMSG_FIRSTHDR(&header)) {
      int descriptor = -1;
      std::memcpy(&descriptor, CMSG_DATA(rights), sizeof descriptor);
      passed = bus::Descriptor(descriptor);
    }
    if (!isGreeted) {
      constexpr std::string_view kLast = "BEGIN\r\n";
      const auto end = read.find(kLast);
      if (end == std::string::npos) continue;
      read.erase(0, end + kLast.size());
      isGreeted = true;
      const std::lock_guard lock(_mutex);
      (void)writeAll(socket, "DATA\r\n");  // to EXTERNAL
      (void)writeAll(socket, kWelcome);
    }
    while (read.size() >= 16) {
      const std::size_t fields = 16 + at<std::uint32_t>(read, 12);
      const std::size_t bodyAt = padded(fields, 8);
      const std::size_t end = bodyAt + at<std::uint32_t>(read, 4);
      if (read.size() < end) break;
      Received message;
      message.type = at<std::uint8_t>(read, 1);
      message.serial = at<std::uint32_t>(read, 8);
      for (std::size_t i = 16; i < fields;) {
        i = padded(i, 8);
        const char field = read[i];
        const char type = read[i + 2];
        i = type == 'g' ? i + 4 : padded(i + 4, 4);
        if (type == 'g') {
          i += 2U + at<std::uint8_t>(read, i);
          continue;
        }
        const auto value = at<std::uint32_t>(read, i);
        i += 4;
        if (type == 'u') {
          if (field == 5) message.answers = value;
          continue;
        }
        if (field == 3) message.member = read.substr(i, value);
        if (field == 6) message.destination = read.substr(i, value);
        i += value + 1;
      }
      message.body = read.substr(bodyAt, end - bodyAt);
      message.descriptor = std::move(passed);
      read.erase(0, end);
      take(std::move(message));
    }
  }
}

void StandInBus::take(Received message) {
  const std::lock_guard lock(_mutex);
  if (message.type == SD_BUS_MESSAGE_METHOD_CALL) {
    const auto* row = std::ranges::find(kBusMembers, message.member, &BusMember::member);
    promise(row != std::end(kBusMembers), "the service asks the bus what is known", message.member);
    (void)writeAll(_socket, wireMessage({SD_BUS_MESSAGE_METHOD_RETURN,
                                         {},
                                         {},
                                         {},
                                         kServiceName,
                                         kBusName,
                                         row->signature,
                                         message.serial},
                                        ++_serial, row->body()));
    return;
  }
  if (message.answers == 0) return;  // a signal
  const auto call = _calls.find(message.answers);
  if (call == _calls.end() || std::exchange(call->second, true)) ++_stray;
  _answers[message.answers] = {message.type, std::move(message.body),
                               std::move(message.descriptor)};
  _changed.notify_all();
}

}  // namespace quorin::fuzz

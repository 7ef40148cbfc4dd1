#pragma once

#include <sys/socket.h>

#include <string>
#include <string_view>

#include "platform/bus/handles.h"

namespace quorin::fuzz {

/// The header fields of a message on the bus. Empty: left out.
struct MessageHeader {
  std::uint8_t type;  // SD_BUS_MESSAGE_...
  std::string_view path{};
  std::string_view interface {};
  std::string_view member{};
  std::string_view destination{};
  std::string_view sender{};
  std::string_view signature{};
  std::uint32_t answers = 0;  // the serial number of a call
  std::uint32_t descriptors = 0;
};

/// A message as it stands on the wire: a proper header before any body.
[[nodiscard]] std::string wireMessage(const MessageHeader& header, std::uint32_t serial,
                                      std::string_view body);

/// Both ends of a socket that is connected with itself; nothing waits.
struct SocketPair {
  SocketPair();
  bus::Descriptor ours;
  bus::Descriptor theirs;
};

/// Writes all of it, or as much as the socket takes. False when the other end is gone.
bool writeAll(int socket, std::string_view bytes);

/// What a client of a private connection says first.
inline constexpr std::string_view kGreeting{"\0AUTH ANONYMOUS\r\nNEGOTIATE_UNIX_FD\r\nBEGIN\r\n",
                                            42};
/// What a server of one answers.
inline constexpr std::string_view kWelcome =
    "OK 00000000000000000000000000000001\r\nAGREE_UNIX_FD\r\n";

}  // namespace quorin::fuzz

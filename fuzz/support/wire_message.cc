#include "fuzz/support/wire_message.h"

#include <bit>
#include <cerrno>

#include "fuzz/support/promise.h"

namespace quorin::fuzz {

namespace {

static_assert(std::endian::native == std::endian::little);

void pad(std::string& out, std::size_t alignment) {
  out.resize((out.size() + alignment - 1) / alignment * alignment);
}

void append(std::string& out, std::uint32_t number) {
  pad(out, 4);
  out.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void appendText(std::string& out, std::string_view text) {
  append(out, static_cast<std::uint32_t>(text.size()));
  out.append(text).push_back('\0');
}

void appendSignature(std::string& out, std::string_view signature) {
  out += static_cast<char>(signature.size());
  out.append(signature).push_back('\0');
}

void beginField(std::string& out, char field, std::string_view type) {
  pad(out, 8);
  out += field;
  appendSignature(out, type);
}

}  // namespace

std::string wireMessage(const MessageHeader& header, std::uint32_t serial, std::string_view body) {
  std::string out = {'l', static_cast<char>(header.type), 0, 1};
  append(out, static_cast<std::uint32_t>(body.size()));
  append(out, serial);
  const std::size_t lengthAt = out.size();
  append(out, 0);
  const auto text = [&](char field, std::string_view type, std::string_view value) {
    if (value.empty()) return;
    beginField(out, field, type);
    appendText(out, value);
  };
  const auto number = [&](char field, std::uint32_t value) {
    if (value == 0) return;
    beginField(out, field, "u");
    append(out, value);
  };
  text(1, "o", header.path);
  text(2, "s", header.interface);
  text(3, "s", header.member);
  number(5, header.answers);
  text(6, "s", header.destination);
  text(7, "s", header.sender);
  if (!header.signature.empty()) {
    beginField(out, 8, "g");
    appendSignature(out, header.signature);
  }
  number(9, header.descriptors);
  const auto length = static_cast<std::uint32_t>(out.size() - lengthAt - 4);
  out.replace(lengthAt, 4, reinterpret_cast<const char*>(&length), 4);
  pad(out, 8);
  return out.append(body);
}

SocketPair::SocketPair() {
  int ends[2];
  promise(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0,
          "there is a pair of sockets");
  ours = bus::Descriptor(ends[0]);
  theirs = bus::Descriptor(ends[1]);
}

bool writeAll(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0) return errno == EAGAIN;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

}  // namespace quorin::fuzz

#pragma once

#include <google/protobuf/dynamic_message.h>

#include <memory>
#include <random>
#include <string>

#include "platform/platform.h"

namespace quorin::test {

/// The standard Protocol Buffers library, reading the .proto that we export.
class Peer {
 public:
  Peer();

  [[nodiscard]] std::unique_ptr<google::protobuf::Message> make(std::string_view className) const;

  /// The message in our dictionary form: present fields by number, enumerations by name. The
  /// standard takes an enumeration value without a name for an unknown field; it can be shown as
  /// ours is.
  enum class Nameless : std::uint8_t { dropped, shown };
  [[nodiscard]] static Dictionary dictionaryOf(const google::protobuf::Message& message,
                                               Nameless nameless = Nameless::dropped);

  /// Fills the message with what both sides must treat alike.
  static void fill(google::protobuf::Message& message, std::mt19937& random);

 private:
  std::unique_ptr<google::protobuf::DescriptorPool> _pool;
  std::unique_ptr<google::protobuf::DynamicMessageFactory> _factory;
};

}  // namespace quorin::test

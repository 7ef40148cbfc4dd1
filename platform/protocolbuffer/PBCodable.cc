#include "platform/protocolbuffer/PBCodable.h"

#include <cstdio>

namespace quorin {

std::string PBCodable::description() const {
  char address[24];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
  std::string text("<");
  text.append(className()).append(": ").append(address).append(">");
  return text;
}

}  // namespace quorin

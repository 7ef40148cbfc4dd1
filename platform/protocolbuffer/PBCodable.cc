#include "platform/protocolbuffer/PBCodable.h"

#include <cstdio>

namespace quorin {

std::string PBCodable::description() const {
  char address[24];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
  return "<" + std::string(className()) + ": " + address + ">";
}

}  // namespace quorin

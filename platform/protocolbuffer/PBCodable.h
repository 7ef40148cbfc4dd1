#pragma once

#include "platform/foundation/Dictionary.h"
#include "platform/protocolbuffer/PBDataReader.h"
#include "platform/protocolbuffer/PBDataWriter.h"

namespace quorin {

/// Base of everything that reads itself from wire bytes.
class PBCodable : public Object {
 public:
  /// Runs `readFrom` over the bytes; null bytes are no bytes. False: they make no object.
  [[nodiscard]] bool initWithData(const Ref<Data>& data) {
    PBDataReader reader(data.get());
    return readFrom(reader);
  }

  [[nodiscard]] virtual bool readFrom(PBDataReader& reader) = 0;
  virtual void writeTo(PBDataWriter& writer) const = 0;
  [[nodiscard]] virtual Dictionary dictionaryRepresentation() const = 0;
  [[nodiscard]] virtual std::string_view className() const = 0;
  /// "<Class: 0xaddress>"
  [[nodiscard]] virtual std::string description() const;
};

}  // namespace quorin

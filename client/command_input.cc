#include "client/command_input.h"

namespace quorin {

XpcRef commandInput(std::initializer_list<CommandKey> keys) noexcept {
  XpcRef input(xpc_dictionary_create(nullptr, nullptr, 0));
  if (!input || xpc_get_type(input.get()) != xpc_type_t::dictionary)
    input = XpcRef(xpc_null_create());
  for (const CommandKey& key : keys) {
    XpcRef value(key.object ? xpc_retain(key.object) : xpc_int64_create(key.integer));
    if (!value) value = XpcRef(xpc_null_create());
    if (input) xpc_dictionary_set_value(input.get(), key.key, value.get());
  }
  return input;
}

XpcRef commandPayload(Bytes bytes) noexcept {
  XpcRef payload(xpc_data_create(bytes.data(), bytes.size()));
  return payload && xpc_get_type(payload.get()) != xpc_type_t::null ? payload : XpcRef();
}

xpc_object_t commandOutput() noexcept { return xpc_null_create(); }

}  // namespace quorin

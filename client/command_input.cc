#include "client/command_input.h"

namespace quorin {

XpcRef commandInput(std::initializer_list<CommandKey> keys) {
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

}  // namespace quorin

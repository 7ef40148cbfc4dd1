# The standard library, reading the .proto that we export, as the peer of our own codec.
include_guard(GLOBAL)
find_package(Protobuf REQUIRED)
set(exported ${CMAKE_CURRENT_BINARY_DIR}/quorin)
add_custom_command(OUTPUT ${exported}.descriptors
  COMMAND metricctl schema --format proto > ${exported}.proto
  COMMAND protobuf::protoc --descriptor_set_out=${exported}.descriptors
          --proto_path=${CMAKE_CURRENT_BINARY_DIR} ${exported}.proto
  DEPENDS metricctl VERBATIM)
add_custom_target(exported_proto_descriptors DEPENDS ${exported}.descriptors)

# What differential/peer.cc needs.
add_library(exported_proto INTERFACE)
target_link_libraries(exported_proto INTERFACE protobuf::libprotobuf)
target_include_directories(exported_proto SYSTEM INTERFACE ${Protobuf_INCLUDE_DIRS})
target_compile_definitions(exported_proto INTERFACE
  QUORIN_PROTO_DESCRIPTORS="${exported}.descriptors")
add_dependencies(exported_proto exported_proto_descriptors)

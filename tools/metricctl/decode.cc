#include <iostream>

#include "tools/metricctl/json.h"
#include "tools/metricctl/lines.h"
#include "tools/metricctl/message_class.h"

namespace quorin::metricctl {

namespace {

Json decoded(const MessageTable& table, Bytes payload) {
  Json log = Json::array();
  const LogSink before =
      setSystemLogSink([&log](std::string_view line) { log.push_back(std::string(line)); });
  const auto message = table.make();
  PBDataReader reader(payload);
  const bool ok = message->readFrom(reader);
  setSystemLogSink(before);
  PBDataWriter writer;
  message->writeTo(writer);
  return {{"ok", ok},
          {"dict", jsonOf(message->dictionaryRepresentation())},
          {"reencoded", hexText(writer.bytes())},
          {"log", log}};
}

int decodeLines(const MessageTable& table) {
  Lines lines("standard input", std::cin);
  for (std::string line; lines.next(line);) {
    if (const auto payload = bytesFromHex(line))
      std::cout << decoded(table, *payload).dump() << '\n';
    else
      lines.unreadable("not hexadecimal");
  }
  return lines.exitCode();
}

}  // namespace

Action decodeCommand(CLI::App& arguments) {
  auto choice = std::make_shared<MessageClass>();
  choice->addTo(arguments);
  return [choice]() -> int {
    const MessageTable* table = choice->table();
    return table ? decodeLines(*table) : wrongUse;
  };
}

}  // namespace quorin::metricctl

#include <cstring>
#include <fstream>
#include <iostream>

#include "platform/recording/recording.h"
#include "tools/metricctl/lines.h"
#include "tools/metricctl/redaction.h"
#include "tools/metricctl/spellings.h"

namespace quorin::metricctl {

namespace {

int fail(const std::string& reason) {
  std::cerr << "metricctl: " << reason << '\n';
  return wrongUse;
}

int redact() {
  Lines lines("standard input", std::cin);
  Redactor redactor;
  for (std::string line, reason; lines.next(line);) {
    if (isBlank(line)) continue;
    if (const auto redacted = redactor.redacted(line, reason))
      std::cout << textOf(redacted->line) << '\n';
    else
      lines.unreadable(reason + "; left out");
  }
  return lines.exitCode();
}

/// What the line holds that redacting would change, or empty. `before` and `after`: its text.
std::string leftIn(const RedactedLine& redacted, std::string_view before, std::string_view after) {
  if (before == after) return {};
  const std::string name(redacted.messageClass);
  if (!redacted.replaced.empty())
    return name + " " + redacted.replaced.front().field + " is not redacted";
  const bool sameBytes = !redacted.line.payload ||
                         before.find('"' + *redacted.line.payload + '"') != std::string_view::npos;
  return name + (sameBytes ? ": the line holds more than an event, or is spelt otherwise"
                           : ": the payload holds more than its fields, or is spelt otherwise");
}

/// Everything that the recording's identities could be found by. False: it cannot be read.
bool collect(const std::string& path, Spellings& spellings) {
  std::ifstream file(path);
  Redactor redactor;
  std::string reason;
  for (std::string line; std::getline(file, line);)
    if (const auto redacted = redactor.redacted(line, reason))
      for (const Replaced& identity : redacted->replaced)
        spellings.add(std::string(redacted->messageClass) + " " + identity.field, identity);
  return file.eof();
}

int checkRedacted(const std::string& path, const std::string& original) {
  std::ifstream file(path);
  if (!file) return fail(path + ": " + std::strerror(errno));
  Spellings spellings;
  if (!original.empty() && !collect(original, spellings)) return fail("cannot read " + original);
  Lines lines(path, file);
  Redactor redactor;
  for (std::string line, reason; lines.next(line);) {
    const auto redacted = redactor.redacted(line, reason);
    if (!redacted)
      lines.unreadable(reason);
    else if (const auto left = leftIn(*redacted, line, textOf(redacted->line)); !left.empty())
      lines.unreadable(left);
    if (const auto found = spellings.findIn(line); !found.empty())
      lines.unreadable("holds a " + found + " of " + original);
  }
  return file.eof() ? lines.exitCode() : fail("cannot read " + path);
}

}  // namespace

Action redactCommand(CLI::App& arguments) {
  arguments.footer(
      "Reads a recording from standard input and writes it to standard output. IMSI, TMSIs, SIM\n"
      "files, addresses, access points and call identifiers become numbers, counted from 1 as "
      "they\n"
      "come: equal ones stay equal, and nothing leads back. Places and times stay: networks, "
      "areas,\n"
      "cells. What has no field, and lines whose identities cannot be known, are left out.");
  return [] { return redact(); };
}

Action checkRedactedCommand(CLI::App& arguments) {
  struct Options {
    std::string path;
    std::string original;
  };
  auto options = std::make_shared<Options>();
  arguments.add_option("FILE", options->path, "Recording that redact or record --redact wrote")
      ->required();
  arguments.add_option("--against", options->original,
                       "The recording that it was made of: none of its identities of four bytes or "
                       "more may occur, however spelt");
  arguments.footer(
      "Exits with 0 when redacting the recording once more would change nothing, else with 1, and\n"
      "names each line, metric and field. A piece of a redacted recording has to be redacted "
      "anew.");
  return [options] { return checkRedacted(options->path, options->original); };
}

}  // namespace quorin::metricctl

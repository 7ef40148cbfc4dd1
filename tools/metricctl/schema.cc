#include "tools/metricctl/schema.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "messages/catalogue.h"
#include "tools/metricctl/commands.h"
#include "tools/metricctl/identities.h"
#include "viewer/annotations.h"
#include "viewer/page_tree.h"

namespace quorin::metricctl {

namespace {

/// How a kind of field is written on the reference page and in a .proto file.
struct KindRow {
  Kind kind;
  const char* page;
  const char* protoLabel;
  const char* protoType;  // null: the field's table or class
  const char* protoOption;
};

constexpr KindRow kKinds[] = {
    {Kind::uint64, "uint64", "optional", "uint64", ""},
    {Kind::uint32, "uint32", "optional", "uint32", ""},
    {Kind::enumeration, "int32", "optional", nullptr, ""},
    {Kind::sint32, "sint32", "optional", "sint32", ""},
    {Kind::boolean, "bool", "optional", "bool", ""},
    {Kind::bytes, "bytes", "optional", "bytes", ""},
    {Kind::string, "string", "optional", "string", ""},
    {Kind::message, "message", "optional", nullptr, ""},
    {Kind::repeated, "repeated message", "repeated", nullptr, ""},
    {Kind::packedUint32, "packed uint32", "repeated", "uint32", " [packed = true]"},
    {Kind::packedSint32, "packed sint32", "repeated", "sint32", " [packed = true]"},
};

const KindRow& kindRow(Kind kind) { return *std::ranges::find(kKinds, kind, &KindRow::kind); }

/// All enumerations, in the order in which the catalogue uses them.
std::vector<EnumTable> enumerations() {
  std::vector<EnumTable> tables;
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields)
      if (!field.names.title.empty() &&
          std::ranges::find(tables, field.names.title, &EnumTable::title) == tables.end())
        tables.push_back(field.names);
  return tables;
}

std::string hexID(std::int64_t id) {
  std::ostringstream text;
  text << "0x" << std::uppercase << std::hex << id;
  return text.str();
}

/// The classes that hold this one.
std::string usersOf(const MessageTable& table) {
  std::string users;
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields)
      if (field.element == &table)
        users += (users.empty() ? "" : ", ") + std::string("`") + std::string(row.table->name) +
                 "`." + std::string(field.property);
  return users;
}

}  // namespace

void printPage(std::ostream& out) {
  out << "# Messages\n\nPrinted by `metricctl schema`. Keys are those of the dictionaries that the "
         "pages show.\n";
  for (const CatalogueRow& row : catalogue()) {
    out << "\n## " << row.table->name << "\n\n";
    if (row.metricID != 0)
      out << "Metric " << hexID(row.metricID) << ".\n";
    else
      out << "Nested in " << usersOf(*row.table) << ".\n";
    if (row.table->keyRule == KeyRule::whole)
      out << "Its reader keeps whole field numbers and does not ask the tag registry.\n";
    out << "\n| No. | Key | Property | Type | Names |\n|---:|---|---|---|---|\n";
    for (const Field& field : row.table->fields) {
      out << "| " << field.number << " | " << field.key << " | " << field.property << " | "
          << kindRow(field.kind).page;
      if (field.element) out << " `" << field.element->name << '`';
      out << " | " << field.names.title << " |\n";
    }
  }
  out << "\n# Names\n\nA value without a name is shown as \"(unknown: 7)\".\n";
  for (const EnumTable& table : enumerations()) {
    out << "\n## " << table.title << "\n\n| Value | Name |\n|---:|---|\n";
    for (const EnumName& name : table.names)
      out << "| " << name.value << " | " << name.name << " |\n";
  }
}

namespace {

/// The pages of the tree that the row stands for.
std::string pagesOf(const AnnotationRow& row) {
  std::string pages;
  const PageTree tree = buildPageTree();
  for (const std::string& technology : tree.technologies)
    for (const std::string& category : tree.categories.at(technology)) {
      const std::string page = technology + " " + category;
      if (covers(row, page)) pages += (pages.empty() ? "" : ", ") + page;
    }
  return pages;
}

void printReading(std::ostream& out, const Reading& reading) {
  out << "\n## " << reading.title << "\n\n"
      << reading.clause << ".\n\n| Value | Meaning |\n|---:|---|\n";
  for (const std::string& value : samplesOf(reading)) {
    const auto meaning = meaningOf(reading, value);
    out << "| " << value << " | " << meaning->text;
    if (meaning->clause != reading.clause) out << " (" << meaning->clause << ')';
    out << " |\n";
  }
}

}  // namespace

void printAnnotations(std::ostream& out) {
  out << "# Annotations\n\nPrinted by `metricctl schema --format annotations`. What the toolkits "
         "show beside a row of a page, never\ninside its texts. A row with a reading has it, and "
         "its unit, only beside the values that the reading\nknows; a row without one has its unit "
         "beside every number.\n";
  std::vector<const Reading*> readings;
  std::string_view page;
  for (const AnnotationRow& row : annotationRows()) {
    if (row.page != page)
      out << "\n## " << pagesOf(row)
          << "\n\n| Key | Unit | Reads as | Clause |\n|---|---|---|---|\n";
    page = row.page;
    out << "| " << row.key << " | " << row.unit << " | " << (row.reading ? row.reading->title : "")
        << " | " << (row.reading ? row.reading->clause : row.clause) << " |\n";
    if (row.reading && std::ranges::find(readings, row.reading) == readings.end())
      readings.push_back(row.reading);
  }
  out << "\n# Readings\n\nNamed values stand here all, ranges with their ends.\n";
  for (const Reading* reading : readings) printReading(out, *reading);
}

void printIdentities(std::ostream& out) {
  out << "# Identities\n\nPrinted by `metricctl schema --format identities`: what `metricctl "
         "redact` "
         "and `record --redact` replace, of\nall "
      << catalogue().size()
      << " message classes. Numbers count from 1 as different values come.\n\n"
         "| Class | Key | In its place |\n|---|---|---|\n";
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields)
      if (const IdentityRow* identity = identityRow(row.table->name, field.key))
        out << "| " << row.table->name << " | " << field.key << " | " << identity->coding->standIn
            << " |\n";
  out << "\n# Places\n\nThese stay: a recording is of little use without them. They tell where the "
         "phone was, as do channels\nand physical cell identities with their levels.\n\n"
         "| Class | Key | What it tells |\n|---|---|---|\n";
  for (const CatalogueRow& row : catalogue())
    for (const Field& field : row.table->fields)
      for (const PlaceRow& place : placeRows())
        if (place.key == field.key)
          out << "| " << row.table->name << " | " << field.key << " | " << place.what << " |\n";
  out << "\n# Everything else\n\nLevels, channels, codes, settings, states, causes, counts, timers "
         "and times of all classes stay. No\nclass has a field of its own for an IMEI, a telephone "
         "number or a position.\n";
}

// Enumerations stand in messages of their own, since several share a name such as FDD; and these
// are called otherwise than any name in them, which C++ would not have.
void printProto(std::ostream& out) {
  out << "// Printed by metricctl schema --format proto.\nsyntax = \"proto2\";\n\n"
         "package quorin.metrics;\n";
  for (const EnumTable& table : enumerations()) {
    out << "\nmessage " << table.title << "_NAMES {\n  enum Value {\n";
    for (const EnumName& name : table.names)
      out << "    " << name.name << " = " << name.value << ";\n";
    out << "  }\n}\n";
  }
  for (const CatalogueRow& row : catalogue()) {
    out << '\n';
    if (row.metricID != 0) out << "// Metric " << hexID(row.metricID) << '\n';
    out << "message " << row.table->name << " {\n";
    for (const Field& field : row.table->fields) {
      const KindRow& kind = kindRow(field.kind);
      out << "  " << kind.protoLabel << ' ';
      if (kind.protoType)
        out << kind.protoType;
      else if (field.element)
        out << field.element->name;
      else
        out << field.names.title << "_NAMES.Value";
      out << ' ' << field.key << " = " << field.number << kind.protoOption << ";\n";
    }
    out << "}\n";
  }
}

namespace {

struct Format {
  std::string_view name;
  void (*print)(std::ostream&);
};

constexpr Format kFormats[] = {
    {"page", printPage},
    {"proto", printProto},
    {"annotations", printAnnotations},
    {"identities", printIdentities},
};

}  // namespace

Action schemaCommand(CLI::App& arguments) {
  auto format = std::make_shared<std::string>("page");
  arguments
      .add_option(
          "--format", *format,
          "page: a reference in Markdown; proto: a .proto file; annotations: what stands "
          "beside the rows of the pages, in Markdown; identities: what redacting replaces, in "
          "Markdown")
      ->check(CLI::IsMember({"page", "proto", "annotations", "identities"}))
      ->capture_default_str();
  return [format]() -> int {
    std::ranges::find(kFormats, std::string_view(*format), &Format::name)->print(std::cout);
    return done;
  };
}

}  // namespace quorin::metricctl

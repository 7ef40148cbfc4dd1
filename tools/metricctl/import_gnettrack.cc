#include <algorithm>
#include <map>

#include "platform/recording/recording.h"
#include "tools/metricctl/import_logs.h"

namespace quorin::metricctl {

namespace {

constexpr std::string_view kTime = "Timestamp";
constexpr std::string_view kTechnology = "NetworkTech";
constexpr std::string_view kTimePattern = "YYYY.MM.DD_hh.mm.ss";
constexpr std::string_view kTechnologies[] = {"2G", "3G", "4G"};
constexpr std::string_view kNotImported[] = {"5G"};

/// A column whose reading never changes within a technology is a filler once the log has this many
/// rows of it. An identity may stay the same; a reading does not.
struct ReadingColumn {
  std::string_view name;
  std::size_t fewestRows;
  bool zeroIsFiller;  // unchanged at zero is a filler in a log of any length
};
constexpr ReadingColumn kReadings[] = {
    {"Level", 60, false}, {"Qual", 60, false}, {"SNR", 60, true}};

std::vector<std::string> split(std::string_view text, std::string_view separators) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(separators, begin), text.size());
    parts.emplace_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::vector<std::string> columnsOf(std::string_view header) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (header.starts_with(kByteOrderMark)) header.remove_prefix(kByteOrderMark.size());
  return split(header, "\t");
}

/// The columns' names, and the rows as objects of texts.
class Table {
 public:
  explicit Table(std::string_view header) : _columns(columnsOf(header)) {}

  [[nodiscard]] bool read(std::string_view line, Record& row, std::string& reason) const {
    const std::vector<std::string> cells = split(line, "\t");
    if (cells.size() < _columns.size())
      return reason = "fewer columns than the header names", false;
    row = Record::object();
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i < _columns.size())
        row.emplace(_columns[i], cells[i]);
      else if (!cells[i].empty())
        return reason = "more columns than the header names", false;
    }
    return true;
  }

 private:
  std::vector<std::string> _columns;
};

bool readHeader(Lines& lines, std::string& line) {
  while (lines.next(line))
    if (isGnettrackHeader(line)) return true;
  return false;
}

/// Which readings of the log are fillers throughout.
class Fillers {
 public:
  explicit Fillers(std::istream& stream) {
    rewind(stream);
    Lines lines("", stream);
    std::string line;
    if (!readHeader(lines, line)) return;
    const Table table(line);
    std::string reason;
    for (Record row; lines.next(line);)
      if (table.read(line, row, reason)) note(row);
  }

  void removeFrom(Record& row) const {
    for (const ReadingColumn& column : kReadings) {
      const auto seen = _seen.find({std::string(textIn(row, kTechnology)), column.name});
      if (seen == _seen.end() || seen->second.changes) continue;
      const bool isZero = column.zeroIsFiller && numberIn(row, column.name, kZero).isValue();
      if (isZero || seen->second.rows >= column.fewestRows) row.erase(std::string(column.name));
    }
  }

 private:
  struct Seen {
    std::string text;
    std::size_t rows = 0;
    bool changes = false;
  };
  static constexpr Quantity kZero{};

  void note(const Record& row) {
    for (const ReadingColumn& column : kReadings) {
      const std::string_view text = textIn(row, column.name);
      if (isFiller(text)) continue;
      Seen& seen = _seen[{std::string(textIn(row, kTechnology)), column.name}];
      if (seen.rows++ == 0) seen.text = text;
      seen.changes = seen.changes || seen.text != text;
    }
  }

  std::map<std::pair<std::string, std::string_view>, Seen> _seen;
};

/// An event's details name cells as MCC-MNC-LAC-Node-CellID and perhaps -ARFCN-PSC, the new one
/// last. A log without these columns has them there, as long as the cell is the row's own.
void addEventCell(Record& row) {
  std::vector<std::string> cell;
  for (const std::string& word : split(textIn(row, "EventDetails"), ": "))
    if (auto parts = split(word, "-"); parts.size() == 5 || parts.size() == 7)
      cell = std::move(parts);
  if (cell.empty()) return;
  if (cell[2] != textIn(row, "LAC") || cell[3] != textIn(row, "Node") ||
      cell[4] != textIn(row, "CellID"))
    return;
  row.emplace("Operator", cell[0] + cell[1]);
  if (cell.size() == 5) return;
  row.emplace("ARFCN", cell[5]);
  row.emplace("PSC", cell[6]);
}

template <std::size_t count>
bool isOneOf(std::string_view text, const std::string_view (&texts)[count]) {
  return std::ranges::find(texts, text) != std::end(texts);
}

/// The metrics of one row. False when it cannot be read.
bool importRow(Record& row, const Fillers& fillers, const Sink& sink, std::string& reason) {
  const auto time = timeOf(textIn(row, kTime), kTimePattern);
  if (!time) return reason = "\"Timestamp\" is no time", false;
  const std::string technology(textIn(row, kTechnology));
  if (isFiller(technology) || isOneOf(technology, kNotImported)) return true;
  if (!isOneOf(technology, kTechnologies))
    return reason = "\"NetworkTech\" is no technology", false;
  fillers.removeFrom(row);
  addEventCell(row);
  std::vector<ImportedMetric> metrics;
  if (!importRecord(gnettrackSources(), technology, row, *time, metrics, reason)) return false;
  sink(*time, metrics);
  return true;
}

}  // namespace

bool isGnettrackHeader(std::string_view line) {
  const std::vector<std::string> columns = columnsOf(line);
  return std::ranges::find(columns, kTime) != columns.end() &&
         std::ranges::find(columns, kTechnology) != columns.end();
}

void importGnettrack(std::istream& stream, Lines& lines, const Sink& sink) {
  const Fillers fillers(stream);
  rewind(stream);
  std::string line;
  if (!readHeader(lines, line)) return;
  const Table table(line);
  for (Record row; lines.next(line);) {
    std::string reason;
    if (isBlank(line)) continue;
    if (!table.read(line, row, reason) || !importRow(row, fillers, sink, reason))
      lines.unreadable(reason);
  }
}

}  // namespace quorin::metricctl

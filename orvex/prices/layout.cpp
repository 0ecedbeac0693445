#include "orvex/prices/layout.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <utility>

#include "orvex/data/text.h"
#include "orvex/prices/number_cell.h"
#include "orvex/prices/read_error.h"
#include "orvex/prices/text_encoding.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

constexpr std::size_t sampleLines = 100;

const Fault unsettled = Database::loadFault(faults::TypeMismatch.description);

struct SampleLine {
  std::size_t number;
  std::string_view text;
  std::vector<CellText> cells;
};

bool isNumber(std::string_view cell) {
  return readNumberCell(cell, '.').kind == CellKind::Number || readNumberCell(cell, ',').kind == CellKind::Number;
}

bool isMissing(std::string_view cell) {
  return readNumberCell(cell, '.').kind == CellKind::Missing;
}

bool isDate(std::string_view cell) {
  return readDateCell(cell).has_value() || readTimeCell(cell).has_value();
}

/// "sep=;" as spreadsheets write it in front: the delimiter, or nothing.
std::string declaredDelimiter(std::string_view line) {
  constexpr std::size_t length = 4;
  if (line.size() <= length || !equalNames(line.substr(0, length), "sep=")) return {};
  const std::string_view rest = line.substr(length);
  return firstCharacterLength(rest) == rest.size() ? std::string(rest) : std::string();
}

/// The delimiter that makes most cells of the lines dates, numbers and known words; of equal ones the first, so that a
/// comma that may be a decimal sign comes late.
std::string findDelimiter(const std::vector<SampleLine>& lines) {
  constexpr std::size_t enough = 20;
  std::string best = ",";
  double bestShare = 0.0;
  std::vector<CellText> cells;
  for (const char* const candidate : {"\t", ";", "|", ",", " "}) {
    const Splitter splitter{candidate};
    std::size_t total = 0;
    std::size_t understood = 0;
    std::size_t split = 0;
    for (std::size_t i = 0; i < std::min(lines.size(), enough); ++i) {
      const bool whole = splitter.split(lines[i].text, cells);
      total += cells.size();
      if (!whole || cells.size() < 2) continue;
      ++split;
      understood += static_cast<std::size_t>(std::count_if(cells.begin(), cells.end(), [&](const CellText& cell) {
        if (i == 0 && meaningOf(cell.text).role != Role::Other) return true;  // only a header line has words
        return isMissing(cell.text) || isNumber(cell.text) || isDate(cell.text);
      }));
    }
    if (split == 0) continue;
    // Every delimiter that splits at all is better than one that does not.
    const double share = (static_cast<double>(understood) + 0.5) / static_cast<double>(total + 1);
    if (share > bestShare) {
      bestShare = share;
      best = candidate;
    }
  }
  return best;
}

/// Tells whether a first line is one of names: some mean a column, or none is a number or a date and the first does not
/// look like one.
bool isHeader(const std::vector<CellText>& cells) {
  std::size_t letters = 0;
  for (const CellText& cell : cells) {
    if (meaningOf(cell.text).role == Role::Other) continue;
    if (cell.text.size() > 1) return true;
    ++letters;
  }
  if (letters > 1) return true;
  const auto isBlank = [](const CellText& cell) { return trimmed(cell.text).empty(); };
  if (std::all_of(cells.begin(), cells.end(), isBlank)) return false;
  const bool values = std::any_of(cells.begin(), cells.end(),
                                  [](const CellText& cell) { return isNumber(cell.text) || isDate(cell.text); });
  const std::string_view first = cells.front().text;
  return !values && (first.empty() || first.front() < '0' || first.front() > '9');
}

std::string listOf(const std::vector<ColumnLayout>& columns) {
  constexpr std::size_t most = 20;
  std::string text;
  for (std::size_t i = 0; i < std::min(columns.size(), most); ++i) {
    text += (i == 0 ? "" : ", ") + shown(columns[i].heading.empty() ? columns[i].name : columns[i].heading);
  }
  return columns.size() > most ? text + ", ..." : text;
}

void nameColumns(Layout& layout, const std::vector<CellText>& cells, const std::vector<Role>& roles) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const Role role = i < roles.size() ? roles[i] : Role::Other;
    const std::string heading = layout.headerLine == 0 ? "" : cells[i].text;
    const std::string own = layout.headerLine == 0 ? "Column " + std::to_string(i + 1) : heading;
    layout.columns.push_back({role == Role::Other ? own : std::string(roleName(role)), heading, role});
  }
}

/// The names that more than one further column bears are told: the first of them is found by it.
void remarkOnDoubledNames(Layout& layout) {
  std::unordered_map<std::string_view, int, decltype(&hashOfName), decltype(&equalNames)> seen(
      layout.columns.size(), &hashOfName, &equalNames);
  for (const ColumnLayout& column : layout.columns) {
    const int before = seen[column.name]++;
    if (column.role == Role::Other && !column.name.empty() && before == 1) {
      layout.remarks.push_back("More than one column is called " + shown(column.name) + "; the first one is taken.");
    }
  }
}

/// The roles by place, where there is no header line.
std::vector<Role> usualRoles(const std::vector<SampleLine>& lines, std::size_t count, Layout& layout) {
  const bool timeBeside =
      count > 2 && std::all_of(lines.begin(), lines.end(), [](const SampleLine& line) {
        return line.cells.size() > 1 && readTimeCell(line.cells[1].text) && !isNumber(line.cells[1].text);
      });
  std::vector<Role> roles = {Role::Date};
  if (timeBeside) roles.push_back(Role::Clock);
  const std::size_t prices = count - roles.size();
  if (prices == 1 && !timeBeside) {
    layout.remarks.emplace_back("It has no header line and two columns, which are taken for Date and Close.");
    return {Role::Date, Role::Close};
  }
  if (prices != 4 && prices != 5) return {};
  roles.insert(roles.end(), PriceRoles.begin(), PriceRoles.begin() + static_cast<std::ptrdiff_t>(prices));
  if (prices == 4) {
    layout.remarks.emplace_back(
        "It has no header line and no volume; its prices are taken for Open, High, Low, Close.");
  }
  return roles;
}

/// The place of the column that a choice names.
std::size_t chosenColumn(const Layout& layout, const ColumnChoice& choice) {
  const auto& columns = layout.columns;
  const auto named = std::find_if(columns.begin(), columns.end(), [&](const ColumnLayout& column) {
    return equalNames(column.heading.empty() ? column.name : column.heading, choice.column);
  });
  if (named != columns.end()) return static_cast<std::size_t>(named - columns.begin());
  std::size_t number = 0;
  const char* const end = choice.column.data() + choice.column.size();
  const auto read = std::from_chars(choice.column.data(), end, number);
  if (read.ec == std::errc() && read.ptr == end && number >= 1 && number <= columns.size()) return number - 1;
  throw ReadError(unsettled,
                  "There is no column " + shown(choice.column) + " to be " + std::string(roleName(choice.role)) +
                      ". A column is named by its heading or by its number from 1; there are " + listOf(columns) + ".");
}

void choose(Layout& layout, const std::vector<ColumnChoice>& choices) {
  std::vector<std::size_t> taken;
  for (const ColumnChoice& choice : choices) {
    const std::size_t chosen = chosenColumn(layout, choice);
    if (std::count(taken.begin(), taken.end(), chosen) != 0) {
      throw ReadError(unsettled, "The column " + shown(choice.column) + " is chosen twice.");
    }
    if (std::count_if(choices.begin(), choices.end(),
                      [&](const ColumnChoice& other) { return other.role == choice.role; }) > 1) {
      throw ReadError(unsettled, "Two columns are chosen to be " + std::string(roleName(choice.role)) + '.');
    }
    taken.push_back(chosen);
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
      ColumnLayout& column = layout.columns[i];
      if (i == chosen) {
        column.role = choice.role;
        column.name = roleName(choice.role);
      } else if (column.role == choice.role) {
        column.role = Role::Other;
        // A heading that says what the chosen column now is would name two columns alike.
        const bool free = !column.heading.empty() && !equalNames(column.heading, roleName(choice.role));
        column.name = free ? column.heading : "Column " + std::to_string(i + 1);
      }
    }
  }
}

/// Collects what cells tell of the decimal sign. Prices decide; other columns where no price does.
class DecimalSearch {
 public:
  explicit DecimalSearch(const Layout& layout) : layout_(layout) {}

  void see(const std::vector<CellText>& cells) {
    for (std::size_t i = 0; i < std::min(cells.size(), layout_.columns.size()); ++i) {
      const Role role = layout_.columns[i].role;
      if (role == Role::Date || role == Role::Clock) continue;
      const DecimalEvidence evidence = decimalEvidence(cells[i].text);
      Seen& seen = role == Role::Other ? others_ : prices_;
      seen.point |= evidence == DecimalEvidence::Point;
      seen.comma |= evidence == DecimalEvidence::Comma;
      either_ |= evidence == DecimalEvidence::Either;
    }
  }

  bool settled() const { return prices_.point || prices_.comma; }
  bool sawEither() const { return either_; }

  void tell(Layout& layout) const {
    const Seen& seen = settled() ? prices_ : others_;
    // Where both signs were seen, the cells of one of them will be told as errors.
    layout.decimalProven = seen.point || seen.comma;
    layout.decimal = seen.comma && !seen.point ? ',' : '.';
  }

 private:
  struct Seen {
    bool point = false;
    bool comma = false;
  };

  const Layout& layout_;
  Seen prices_;
  Seen others_;
  bool either_ = false;
};

void findDecimal(Layout& layout, const Options& options, const std::vector<SampleLine>& sample, Lines rest) {
  if (options.decimal) {
    layout.decimal = *options.decimal;
    layout.decimalProven = true;
    return;
  }
  DecimalSearch search(layout);
  for (const SampleLine& line : sample) search.see(line.cells);
  if (layout.splitter.delimiter() != ",") {
    // Nothing but numbers that could be either so far: another line may tell.
    std::string_view line;
    std::vector<CellText> cells;
    while (!search.settled() && search.sawEither() && rest.next(line)) {
      if (layout.splitter.split(line, cells)) search.see(cells);
    }
  }
  search.tell(layout);
}

void findDates(Layout& layout, const std::vector<SampleLine>& sample) {
  const std::size_t place = layout.find(Role::Date);
  if (place == layout.columns.size()) {
    layout.remarks.emplace_back(
        "It has no column of dates, so the order of its records is unchecked: the oldest is taken to come first.");
    return;
  }
  std::vector<std::pair<DateShape, std::string>> found;
  for (const SampleLine& line : sample) {
    if (place >= line.cells.size()) continue;
    if (const auto date = readDateCell(line.cells[place].text)) found.emplace_back(date->shape, line.cells[place].text);
  }
  if (found.empty()) {
    const SampleLine& line = sample.front();
    const std::string text = place < line.cells.size() ? line.cells[place].text : "";
    layout.remarks.push_back("The dates are kept as texts: " + shown(text) + " in line " + std::to_string(line.number) +
                             " is no date of a known kind. So the order of the records is unchecked: the oldest is "
                             "taken to come first.");
    return;
  }
  const auto times = [&](DateShape shape) {
    return std::count_if(found.begin(), found.end(), [&](const auto& one) { return one.first == shape; });
  };
  const auto most = std::max_element(found.begin(), found.end(),
                                     [&](const auto& a, const auto& b) { return times(a.first) < times(b.first); });
  layout.hasDates = true;
  layout.dates = most->first;
  layout.dateSample = most->second;
}

}  // namespace

Lines::Lines(std::string_view text)
    : rest_(text),
      end_(text.find('\n') == std::string_view::npos && text.find('\r') != std::string_view::npos ? '\r' : '\n') {}

bool Lines::next(std::string_view& line) noexcept {
  if (rest_.empty()) return false;
  const std::size_t end = std::min(rest_.find(end_), rest_.size());
  line = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  ++number_;
  return true;
}

bool Splitter::split(std::string_view line, std::vector<CellText>& cells) const {
  cells.clear();
  if (byBlanks()) line = trimmed(line);
  for (;;) {
    CellText cell;
    const std::size_t start = std::min(line.find_first_not_of(delimiter_ == "\t" ? " " : " \t"), line.size());
    if (start < line.size() && line[start] == '"') {
      cell.quoted = true;
      line.remove_prefix(start + 1);
      for (;;) {
        const std::size_t mark = line.find('"');
        if (mark == std::string_view::npos) return false;
        cell.text += line.substr(0, mark);
        line.remove_prefix(mark + 1);
        if (!line.starts_with('"')) break;
        cell.text += '"';
        line.remove_prefix(1);
      }
      const std::size_t behind = std::min(line.find(delimiter_), line.size());
      if (!trimmed(line.substr(0, behind)).empty()) return false;
      line.remove_prefix(behind);
    } else {
      const std::size_t end = std::min(line.find(delimiter_), line.size());
      cell.text = trimmed(line.substr(0, end));
      line.remove_prefix(end);
    }
    cells.push_back(std::move(cell));
    if (line.empty()) return true;
    line.remove_prefix(delimiter_.size());
    if (byBlanks()) line = trimmed(line);
  }
}

std::size_t Layout::find(Role role) const noexcept {
  const auto found =
      std::find_if(columns.begin(), columns.end(), [&](const ColumnLayout& column) { return column.role == role; });
  return static_cast<std::size_t>(found - columns.begin());
}

Layout findLayout(std::string_view text, const Options& options) {
  Layout layout;
  std::vector<SampleLine> sample;
  Lines lines(text);
  std::string delimiter;
  std::string_view line;
  while (sample.size() < sampleLines && lines.next(line)) {
    if (trimmed(line).empty()) continue;
    if (sample.empty() && delimiter.empty()) {
      delimiter = declaredDelimiter(line);
      if (!delimiter.empty()) continue;
    }
    sample.push_back({lines.number(), line, {}});
  }
  if (sample.empty())
    throw ReadError(Database::loadFault(faults::SubscriptOutOfRange.description), "It has no records.");
  if (options.delimiter && options.delimiter->empty()) {
    throw ReadError(unsettled, "The delimiter is empty: it is one character, such as a semicolon.");
  }
  layout.splitter = Splitter(options.delimiter    ? *options.delimiter
                             : !delimiter.empty() ? delimiter
                                                  : findDelimiter(sample));
  if (!layout.splitter.split(sample.front().text, sample.front().cells)) {
    throw ReadError(unsettled, std::string(UnclosedQuote), sample.front().number);
  }
  for (SampleLine& one : sample) layout.splitter.split(one.text, one.cells);

  const std::vector<CellText> first = sample.front().cells;
  layout.firstRecordLine = sample.front().number;
  if (!first.empty() && isHeader(first)) {
    layout.headerLine = sample.front().number;
    layout.firstRecordLine = layout.headerLine + 1;
    std::vector<std::string> names;
    names.reserve(first.size());
    for (const CellText& cell : first) names.push_back(cell.text);
    Meanings meanings = meaningsOf(names);
    nameColumns(layout, first, meanings.roles);
    if (options.columns.empty()) {
      layout.remarks = std::move(meanings.remarks);
    }
    sample.erase(sample.begin());
  } else if (options.columns.empty()) {
    const std::vector<Role> roles = usualRoles(sample, first.size(), layout);
    if (roles.empty()) {
      throw ReadError(unsettled,
                      "Line " + std::to_string(sample.front().number) + " is no header line and has " +
                          std::to_string(first.size()) + " values, split at " + shown(layout.splitter.delimiter()) +
                          ". Without a header line a record is date, open, high, low, close and volume; "
                          "--columns Date=1,Close=2 tells where they stand, --delimiter what is between them.",
                      sample.front().number);
    }
    nameColumns(layout, first, roles);
  } else {
    nameColumns(layout, first, {});
  }
  choose(layout, options.columns);
  remarkOnDoubledNames(layout);
  if (sample.empty())
    throw ReadError(Database::loadFault(faults::SubscriptOutOfRange.description),
                    "It has a header line and no records.");
  findDates(layout, sample);
  findDecimal(layout, options, sample, lines);
  return layout;
}

}  // namespace orvex::inline ORVEX_COUNTS::prices

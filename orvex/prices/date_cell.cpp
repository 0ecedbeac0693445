#include "orvex/prices/date_cell.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "orvex/data/number_text.h"
#include "orvex/data/text.h"
#include "orvex/prices/number_cell.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

constexpr Time minuteLength = 60 * secondLength;
constexpr Time hourLength = 60 * minuteLength;

/// Days since 1970-01-01 in the Gregorian calendar, counted in eras of 400 years that begin in March.
std::int64_t daysOf(int year, int month, int day) {
  const int y = month <= 2 ? year - 1 : year;
  const int era = y / 400;
  const int yearOfEra = y - era * 400;
  const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return std::int64_t{era} * 146'097 + dayOfEra - 719'468;
}

std::optional<Time> dayTime(int year, int month, int day) {
  constexpr std::array lengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (year < 1 || month < 1 || month > 12 || day < 1) return {};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  const int length = lengths[static_cast<std::size_t>(month - 1)] + (month == 2 && leap ? 1 : 0);
  if (day > length) return {};
  return daysOf(year, month, day) * dayLength;
}

/// Reads a text from its beginning; what cannot be taken leaves it as it was.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : rest_(text) {}

  bool done() const { return rest_.empty(); }
  char next() const { return rest_.empty() ? '\0' : rest_.front(); }
  std::string_view rest() const { return rest_; }

  bool take(char c) {
    if (next() != c || rest_.empty()) return false;
    rest_.remove_prefix(1);
    return true;
  }
  /// One of the characters, or 0.
  char takeAny(std::string_view characters) {
    if (rest_.empty() || characters.find(rest_.front()) == std::string_view::npos) return '\0';
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }
  bool takeBlanks() {
    bool any = false;
    while (take(' ')) any = true;
    return any;
  }
  /// A word of letters, whole, without regard to case.
  bool takeWord(std::string_view word) {
    if (wordLength() != word.size() || !equalNames(rest_.substr(0, word.size()), word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }
  std::string_view takeLetters() {
    const std::string_view word = rest_.substr(0, wordLength());
    rest_.remove_prefix(word.size());
    return word;
  }
  /// How many digits there are, as many as `most` at once.
  std::size_t digits() const {
    std::size_t count = 0;
    while (count < rest_.size() && isDigit(rest_[count])) ++count;
    return count;
  }
  /// The number of the next `count` digits. REQUIRES: there are as many, at most 18.
  std::int64_t number(std::size_t count) {
    std::int64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) value = value * 10 + (rest_[i] - '0');
    rest_.remove_prefix(count);
    return value;
  }
  /// A number of `least` to `most` digits, with no further digit behind it; -1 where there is none.
  int number(std::size_t least, std::size_t most) {
    const std::size_t count = digits();
    return count < least || count > most ? -1 : static_cast<int>(number(count));
  }

 private:
  std::size_t wordLength() const {
    std::size_t length = 0;
    while (length < rest_.size() &&
           ((rest_[length] >= 'a' && rest_[length] <= 'z') || (rest_[length] >= 'A' && rest_[length] <= 'Z')))
      ++length;
    return length;
  }

  std::string_view rest_;
};

/// Hours, minutes and seconds of a day, which may end it: 24:00.
std::optional<Time> clock(std::int64_t hours, std::int64_t minutes, std::int64_t seconds) {
  if (hours < 0 || minutes < 0 || seconds < 0 || minutes > 59 || seconds > 60) return {};
  if (hours > 24 || (hours == 24 && minutes + seconds > 0)) return {};
  return hours * hourLength + minutes * minuteLength + seconds * secondLength;
}

/// The fraction of a second behind a point, to the microsecond.
Time takeFraction(Cursor& cursor) {
  if (!cursor.take('.') && !cursor.take(',')) return 0;
  Time fraction = 0;
  Time weight = secondLength / 10;
  while (isDigit(cursor.next())) {
    fraction += weight * cursor.number(std::size_t{1});
    weight /= 10;
  }
  return fraction;
}

/// 9:30, 09:30:00.000, with AM or PM.
std::optional<Time> takeClock(Cursor& cursor) {
  const int hours = cursor.number(1, 2);
  if (hours < 0) return {};
  int seconds = 0;
  Time fraction = 0;
  if (!cursor.take(':')) return {};
  const int minutes = cursor.number(2, 2);
  if (cursor.take(':')) {
    seconds = cursor.number(2, 2);
    fraction = takeFraction(cursor);
  }
  const Cursor before = cursor;
  cursor.takeBlanks();
  const bool am = cursor.takeWord("AM");
  const bool pm = !am && cursor.takeWord("PM");
  if (!am && !pm) cursor = before;
  if ((am || pm) && (hours < 1 || hours > 12)) return {};
  const int hour = am || pm ? hours % 12 + (pm ? 12 : 0) : hours;
  const auto time = clock(hour, minutes, seconds);
  if (!time) return {};
  return *time + fraction;
}

/// The zone's distance from UTC: Z, UTC, GMT, +01:00, -0500, +01; 0 where none is told.
std::optional<Time> takeZone(Cursor& cursor) {
  cursor.takeBlanks();
  if (cursor.takeWord("Z") || cursor.takeWord("UTC") || cursor.takeWord("GMT")) {
    if (cursor.done()) return 0;
  }
  const char sign = cursor.takeAny("+-");
  if (sign == '\0') return 0;
  const std::size_t digits = cursor.digits();
  if (digits != 2 && digits != 4) return {};
  const auto hours = cursor.number(std::size_t{2});
  std::int64_t minutes = 0;
  if (digits == 4) {
    minutes = cursor.number(std::size_t{2});
  } else if (cursor.take(':')) {
    minutes = cursor.number(2, 2);
  }
  if (hours > 18 || minutes < 0 || minutes > 59) return {};
  const Time offset = hours * hourLength + minutes * minuteLength;
  return sign == '-' ? -offset : offset;
}

/// What follows a date: nothing, or a time and its zone, to be added to the day.
std::optional<Time> takeTimeOfDay(Cursor& cursor) {
  if (cursor.done()) return 0;
  if (!cursor.take('T') && !cursor.takeBlanks() && !cursor.take(':') && !cursor.take('-')) return {};
  std::optional<Time> time;
  const std::size_t digits = cursor.digits();
  if (digits == 4 || digits == 6) {
    const auto hours = cursor.number(std::size_t{2});
    const auto minutes = cursor.number(std::size_t{2});
    time = clock(hours, minutes, digits == 6 ? cursor.number(std::size_t{2}) : 0);
    if (time) *time += takeFraction(cursor);
  } else {
    time = takeClock(cursor);
  }
  if (!time) return {};
  const auto zone = takeZone(cursor);
  cursor.takeBlanks();
  if (!zone || !cursor.done()) return {};
  return *time - *zone;
}

/// Two digits stand for 1970 to 2069.
int fullYear(int year, std::size_t digits) {
  return digits == 4 ? year : year < 70 ? 2000 + year : 1900 + year;
}

int monthOf(std::string_view word) {
  constexpr std::array names = {"January", "February", "March",     "April",   "May",      "June",
                                "July",    "August",   "September", "October", "November", "December"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string_view name = names[i];
    if (equalNames(word, name) || equalNames(word, name.substr(0, 3)) || (i == 8 && equalNames(word, "Sept"))) {
      return static_cast<int>(i) + 1;
    }
  }
  return 0;
}

std::optional<DateCell> finish(DateShape shape, std::optional<Time> day, Cursor& cursor) {
  if (!day) return {};
  const auto time = takeTimeOfDay(cursor);
  if (!time) return {};
  return DateCell{shape, *day + *time, {}, true};
}

/// "Jan 31, 2020" and, with the day read already, "31 Jan 2020" and "31-Jan-20".
std::optional<DateCell> readMonthName(Cursor cursor, std::optional<int> dayBefore) {
  const char between = cursor.takeAny("-/ .");
  cursor.takeBlanks();
  const int month = monthOf(cursor.takeLetters());
  if (month == 0) return {};
  cursor.take('.');
  if (!dayBefore) cursor.takeBlanks();
  const int day = dayBefore ? *dayBefore : cursor.number(1, 2);
  if (!dayBefore) cursor.take(',');
  if (cursor.takeAny("-/, ") == '\0' && between != '\0') return {};
  cursor.takeBlanks();
  const std::size_t digits = cursor.digits();
  if (digits != 2 && digits != 4) return {};
  const int year = fullYear(cursor.number(2, 4), digits);
  return finish(DateShape::MonthName, dayTime(year, month, day), cursor);
}

std::optional<DateCell> readDayAndMonth(Cursor cursor) {
  const int first = cursor.number(1, 2);
  const char between = cursor.takeAny("/.-");
  if (between == '\0') return readMonthName(cursor, first);
  if (!isDigit(cursor.next())) return readMonthName(cursor, first);
  const int second = cursor.number(1, 2);
  if (second < 0 || !cursor.take(between)) return {};
  const std::size_t digits = cursor.digits();
  if (digits != 2 && digits != 4) return {};
  const int year = fullYear(cursor.number(2, 4), digits);
  const auto dayFirst = dayTime(year, second, first);
  if (between == '.') return finish(DateShape::DayFirst, dayFirst, cursor);
  const auto monthFirst = dayTime(year, first, second);
  if (!dayFirst && !monthFirst) return {};
  auto date = finish(DateShape::DayOrMonth, dayFirst ? dayFirst : monthFirst, cursor);
  if (!date) return {};
  date->dayFirstHolds = dayFirst.has_value();
  if (monthFirst) date->monthFirst = date->time - (dayFirst ? *dayFirst : *monthFirst) + *monthFirst;
  return date;
}

std::optional<DateCell> readDigits(Cursor cursor, std::size_t digits) {
  if (digits == 8 || digits == 12 || digits == 14) {
    Cursor compact = cursor;
    const auto year = static_cast<int>(compact.number(std::size_t{4}));
    const auto month = static_cast<int>(compact.number(std::size_t{2}));
    const auto dayOfMonth = static_cast<int>(compact.number(std::size_t{2}));
    auto day = year >= 1800 && year < 2200 ? dayTime(year, month, dayOfMonth) : std::nullopt;
    if (day && digits > 8) {
      const auto hours = compact.number(std::size_t{2});
      const auto minutes = compact.number(std::size_t{2});
      const auto time = clock(hours, minutes, digits == 14 ? compact.number(std::size_t{2}) : 0);
      day = time ? std::optional(*day + *time) : std::nullopt;
    }
    if (day) return finish(DateShape::Compact, day, compact);
  }
  if (digits < 9 || digits > 16) return {};
  const Time number = cursor.number(digits);
  const DateShape shape = digits <= 10   ? DateShape::EpochSeconds
                          : digits <= 13 ? DateShape::EpochMillis
                                         : DateShape::EpochMicros;
  const Time unit = digits <= 10 ? secondLength : digits <= 13 ? 1000 : 1;
  if (digits == 11 || digits == 14) return {};
  const Time fraction = unit == secondLength ? takeFraction(cursor) : 0;
  if (!cursor.done()) return {};
  return DateCell{shape, number * unit + fraction, {}, true};
}

/// The digit at a place of a text; -1 where there is none.
int digitAt(std::string_view text, std::size_t at) {
  return isDigit(text[at]) ? text[at] - '0' : -1;
}

/// The two digits at a place of a text; -1 where one is no digit.
int twoDigits(std::string_view text, std::size_t at) {
  const int tens = digitAt(text, at);
  const int ones = digitAt(text, at + 1);
  return tens < 0 || ones < 0 ? -1 : tens * 10 + ones;
}

/// The time in 09:30 or 09:30:00, with the blank or the T before it. Nothing for anything else.
std::optional<Time> plainClock(std::string_view text) {
  const bool seconds = text.size() == 9;
  if (text.size() != 6 && !seconds) return {};
  if ((text[0] != ' ' && text[0] != 'T') || text[3] != ':' || (seconds && text[6] != ':')) return {};
  const int hour = twoDigits(text, 1);
  const int minute = twoDigits(text, 4);
  const int second = seconds ? twoDigits(text, 7) : 0;
  if (std::min({hour, minute, second}) < 0 || hour > 23 || minute > 59 || second > 59) return {};
  return hour * hourLength + minute * minuteLength + second * secondLength;
}

/// The time of the day that a plain date has behind it, which is mostly none.
std::optional<Time> plainTime(std::string_view text) {
  return text.empty() ? std::optional<Time>(0) : plainClock(text);
}

}  // namespace

std::optional<DateCell> readDateCell(std::string_view cell) {
  Cursor cursor(trimmed(cell));
  const std::size_t digits = cursor.digits();
  if (digits == 0) return readMonthName(cursor, {});
  if (digits > 4) return readDigits(cursor, digits);
  if (digits < 3) return readDayAndMonth(cursor);
  if (digits != 4) return {};
  const int year = cursor.number(4, 4);
  const char between = cursor.takeAny("-/.");
  const int month = cursor.number(1, 2);
  if (between == '\0' || month < 0 || !cursor.take(between)) return {};
  return finish(DateShape::YearFirst, dayTime(year, month, cursor.number(1, 2)), cursor);
}

void PlainDates::turnTo(int year) {
  for (std::size_t i = 0; i < 12; ++i) months_[i] = *dayTime(year, static_cast<int>(i) + 1, 1);
  months_[12] = *dayTime(year + 1, 1, 1);
  year_ = year;
}

std::optional<Time> PlainDates::dayOf(int year, int month, int day) {
  if (year < 1 || month < 1 || month > 12 || day < 1) return {};
  if (year != year_) turnTo(year);
  const auto index = static_cast<std::size_t>(month - 1);
  const Time time = months_[index] + (day - 1) * dayLength;
  return time < months_[index + 1] ? std::optional(time) : std::nullopt;
}

bool PlainDates::read(std::string_view text, DateCell& date) {
  date.shape = shape_;
  date.monthFirst.reset();
  date.dayFirstHolds = true;
  switch (shape_) {
    case DateShape::YearFirst:
      return readYearFirst(text, date);
    case DateShape::DayFirst:
    case DateShape::DayOrMonth:
      return readYearLast(text, date);
    case DateShape::Compact:
      return readCompact(text, date);
    default:
      return false;
  }
}

bool PlainDates::readYearFirst(std::string_view text, DateCell& date) {
  if (text.size() < 10) return false;
  const int century = twoDigits(text, 0);
  const int years = twoDigits(text, 2);
  const char between = text[4];
  if (century < 0 || years < 0 || (between != '-' && between != '/' && between != '.') || text[7] != between)
    return false;
  const auto day = dayOf(century * 100 + years, twoDigits(text, 5), twoDigits(text, 8));
  const auto time = plainTime(text.substr(10));
  if (!day || !time) return false;
  date.time = *day + *time;
  return true;
}

bool PlainDates::readYearLast(std::string_view text, DateCell& date) {
  constexpr std::size_t shortest = 8;
  if (text.size() < shortest) return false;
  std::size_t at = 0;
  // Days and months have one digit or two without an order that a processor could foresee: no branch tells them apart.
  const auto number = [&] {
    const auto one = static_cast<unsigned>(text[at] - '0');
    const auto two = static_cast<unsigned>(text[at + 1] - '0');
    const bool both = two < 10;
    at += both ? 2 : 1;
    return one < 10 ? static_cast<int>(both ? one * 10 + two : one) : -1;
  };
  const int first = number();
  const char between = text[at++];
  const int second = number();
  if (first < 0 || second < 0 || text.size() < at + 5 || text[at] != between) return false;
  if (shape_ == DateShape::DayFirst ? between != '.' : between != '/' && between != '-') return false;
  const int century = twoDigits(text, at + 1);
  const int years = twoDigits(text, at + 3);
  const auto time = plainTime(text.substr(at + 5));
  if (century < 0 || years < 0 || !time) return false;
  const int year = century * 100 + years;
  if (monthFirst_) {
    const auto day = dayOf(year, *monthFirst_ ? first : second, *monthFirst_ ? second : first);
    if (!day) return false;
    date.time = *day + *time;
    date.monthFirst = date.time;
    return true;
  }
  const auto dayFirst = dayOf(year, second, first);
  if (shape_ == DateShape::DayFirst) {
    date.time = dayFirst.value_or(0) + *time;
    return dayFirst.has_value();
  }
  const auto monthFirst = dayOf(year, first, second);
  if (!dayFirst && !monthFirst) return false;
  if (monthFirst) date.monthFirst = *monthFirst + *time;
  date.dayFirstHolds = dayFirst.has_value();
  date.time = (dayFirst ? *dayFirst : *monthFirst) + *time;
  return true;
}

bool PlainDates::readCompact(std::string_view text, DateCell& date) {
  if (text.size() != 8) return false;
  const int century = twoDigits(text, 0);
  const int years = twoDigits(text, 2);
  if (century < 18 || century > 21 || years < 0) return false;
  const auto day = dayOf(century * 100 + years, twoDigits(text, 4), twoDigits(text, 6));
  if (day) date.time = *day;
  return day.has_value();
}

std::optional<Time> readTimeCell(std::string_view cell) {
  Cursor cursor(trimmed(cell));
  const std::size_t digits = cursor.digits();
  std::optional<Time> time;
  if (digits >= 3 && digits <= 6) {
    const std::int64_t number = cursor.number(digits);
    const std::int64_t clockNumber = digits <= 4 ? number * 100 : number;
    time = clock(clockNumber / 10'000, clockNumber / 100 % 100, clockNumber % 100);
  } else {
    time = takeClock(cursor);
  }
  const auto zone = takeZone(cursor);
  if (!time || !zone || !cursor.done()) return {};
  return *time - *zone;
}

std::optional<TimeSpan> readTimeSpan(std::string_view text) {
  const std::string_view whole = trimmed(text);
  // The beginning of a date: a year and a month.
  if (Cursor cursor(whole); cursor.digits() == 4) {
    const int year = cursor.number(4, 4);
    const int month = cursor.take('-') ? cursor.number(2, 2) : -1;
    if (cursor.done() && month >= 1 && month <= 12) {
      const auto begin = dayTime(year, month, 1);
      const auto end = month == 12 ? dayTime(year + 1, 1, 1) : dayTime(year, month + 1, 1);
      if (!begin || !end) return {};
      return TimeSpan{*begin, *end - 1};
    }
  }
  const auto date = readDateCell(whole);
  if (!date) return {};
  if (date->shape == DateShape::DayOrMonth || date->shape >= DateShape::EpochSeconds) return {};
  // A time is behind a date if there is a colon; what it does not tell is a part of the span.
  const auto colons = std::count(whole.begin(), whole.end(), ':');
  const Time length = colons == 0 ? dayLength : colons == 1 ? minuteLength : secondLength;
  return TimeSpan{date->time, date->time + length - 1};
}

CalendarDay calendarDay(Time time) {
  const std::int64_t number = time / dayLength - (time % dayLength < 0 ? 1 : 0);
  // The inverse of `daysOf`.
  const std::int64_t shifted = number + 719'468;
  const std::int64_t era = shifted / 146'097;
  const std::int64_t dayOfEra = shifted - era * 146'097;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;
  const std::int64_t monthNumber = month < 10 ? month + 3 : month - 9;
  return {number, yearOfEra + era * 400 + (monthNumber <= 2 ? 1 : 0), monthNumber,
          dayOfYear - (153 * month + 2) / 5 + 1};
}

std::string dateText(Time time) {
  const CalendarDay day = calendarDay(time);
  const Time rest = time - day.number * dayLength;
  const auto padded = [](std::int64_t number, std::size_t width) {
    std::string digits = std::to_string(number);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
  };
  std::string text = padded(day.year, 4) + '-' + padded(day.month, 2) + '-' + padded(day.day, 2);
  if (rest != 0) {
    text += ' ' + padded(rest / hourLength, 2) + ':' + padded(rest / minuteLength % 60, 2) + ':' +
            padded(rest / secondLength % 60, 2);
  }
  return text;
}

}  // namespace orvex::inline ORVEX_COUNTS::prices

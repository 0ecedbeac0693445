#include "orvex/prices/sessions.h"

#include <cstdint>
#include <limits>
#include <utility>

#include "orvex/data/database.h"
#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

std::int64_t sessionOf(const CalendarDay& day, SessionLength length) {
  switch (length) {
    case SessionLength::Day:
      return day.number;
    case SessionLength::Week: {
      // 1970-01-01 was a Thursday.
      const std::int64_t sinceMonday = day.number + 3;
      return (sinceMonday >= 0 ? sinceMonday : sinceMonday - 6) / 7;
    }
    case SessionLength::Month:
      return day.year * 12 + day.month;
    case SessionLength::Year:
      return day.year;
  }
  return 0;
}

}  // namespace

std::optional<SessionLength> sessionNamed(std::string_view name) {
  for (const auto& [word, length] :
       {std::pair("Day", SessionLength::Day), std::pair("Week", SessionLength::Week),
        std::pair("Month", SessionLength::Month), std::pair("Year", SessionLength::Year)}) {
    if (equalNames(word, name)) return length;
  }
  return {};
}

std::optional<SessionLength> sessionOfDates(std::string_view name) {
  return equalNames(name, Database::DateName) ? SessionLength::Day : sessionNamed(name);
}

std::vector<double> sessionsOf(std::span<const Time> times, SessionLength length) {
  std::vector<double> sessions;
  sessions.reserve(times.size());
  for (const Time time : times) sessions.push_back(static_cast<double>(sessionOf(calendarDay(time), length)));
  return sessions;
}

double sessionOf(std::string_view date, SessionLength length) {
  const auto cell = readDateCell(date);
  const bool isCertain = cell && (!cell->monthFirst || !cell->dayFirstHolds || length == SessionLength::Day);
  if (!isCertain) return std::numeric_limits<double>::quiet_NaN();
  const Time time = cell->dayFirstHolds ? cell->time : *cell->monthFirst;
  return static_cast<double>(sessionOf(calendarDay(time), length));
}

}  // namespace orvex::inline ORVEX_COUNTS::prices

// Sessions out of dates.
#include "orvex/prices/sessions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "orvex/prices/price_reader.h"

namespace orvex::prices {
namespace {

TEST(Sessions, BeginWhereTheDatesDo) {
  // A Saturday, a Sunday and a Monday about a new year, two Sundays and a Monday on either side of 1970, a leap day.
  const std::vector<std::string> dates = {"2022-12-31 23:59", "2023-01-01 00:00", "2023-01-01 23:59", "2023-01-02"};
  const std::vector<std::string> early = {"1969-12-28", "1969-12-29", "1970-01-04", "1970-01-05"};
  const std::vector<std::string> leap = {"2020-02-28", "2020-02-29", "2020-03-01"};
  const struct {
    const std::vector<std::string>& dates;
    SessionLength length;
    std::vector<bool> begins;  // from the second on
  } cases[] = {
      {dates, SessionLength::Day, {true, false, true}},
      {dates, SessionLength::Week, {false, false, true}},
      {dates, SessionLength::Month, {true, false, false}},
      {dates, SessionLength::Year, {true, false, false}},
      {early, SessionLength::Week, {true, false, true}},
      {early, SessionLength::Year, {false, true, false}},
      {leap, SessionLength::Day, {true, true}},
      {leap, SessionLength::Month, {false, true}},
  };
  for (const auto& one : cases) {
    std::vector<Time> times;
    for (const std::string& date : one.dates) times.push_back(readDateCell(date)->time);
    const std::vector<double> sessions = sessionsOf(times, one.length);
    ASSERT_EQ(sessions.size(), times.size());
    for (std::size_t i = 1; i < sessions.size(); ++i) {
      EXPECT_EQ(sessions[i] > sessions[i - 1], one.begins[i - 1]) << one.dates[i];
      EXPECT_EQ(sessionOf(one.dates[i], one.length), sessions[i]) << one.dates[i];
    }
  }
}

TEST(Sessions, AreToldByOneDateWhereItIsCertain) {
  const struct {
    const char* date;
    SessionLength length;
    const char* as;  // the same date, certain; nothing where it is not
  } cases[] = {
      {"1/31/2020", SessionLength::Month, "2020-01-31"},
      {"1/2/2020", SessionLength::Month, nullptr},
      {"1/2/2020", SessionLength::Week, nullptr},
      {"first day", SessionLength::Day, nullptr},
      {"", SessionLength::Year, nullptr},
  };
  for (const auto& one : cases) {
    const double session = sessionOf(one.date, one.length);
    if (one.as == nullptr) {
      EXPECT_TRUE(std::isnan(session)) << one.date;
    } else {
      EXPECT_EQ(session, sessionOf(one.as, one.length)) << one.date;
    }
  }
  // Days differ whichever number is the month.
  std::set<double> days;
  for (const char* date : {"1/2/2020", "2/1/2020", "1/13/2020", "2/13/2020", "12/1/2020"}) {
    days.insert(sessionOf(date, SessionLength::Day));
  }
  EXPECT_EQ(days.size(), 5U);
}

TEST(Sessions, AreNamedInAnyCapitals) {
  EXPECT_EQ(sessionNamed("week"), SessionLength::Week);
  EXPECT_EQ(sessionNamed("MONTH"), SessionLength::Month);
  EXPECT_EQ(sessionNamed("hour"), std::nullopt);
}

}  // namespace
}  // namespace orvex::prices

#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// The code by which every indicator that builds on a moving average lets its caller choose it.
namespace average_type {
inline constexpr int Simple = 1;
inline constexpr int Exponential = 2;
inline constexpr int TimeSeries = 3;
inline constexpr int Variable = 4;
inline constexpr int Triangular = 5;
inline constexpr int Weighted = 6;
inline constexpr int Vidya = 7;

/// How far a `VIDYA` that is chosen by its code goes along with the r-squared.
inline constexpr double VidyaR2Scale = 0.65;
}  // namespace average_type

/// Raises `fault` for what is no such code.
inline void checkAverageType(Integer MA_Type, const Fault& fault) {
  if (MA_Type < average_type::Simple || MA_Type > average_type::Vidya) raise(fault);
}

/// The average of the code `MA_Type`, by a `MovingAverage` of its own, in a column named `name`. Any other code makes
/// no average and returns nothing, so that the first use of the result is the fault that a caller's trap reports.
std::shared_ptr<RecordSet> averageOfType(Integer MA_Type, std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                         Integer Periods, std::string_view name);

/// The first computed row of the average of that code over `periods` records, of a column whose own first computed row
/// is `first`.
std::int64_t firstAverageRow(int MA_Type, std::int64_t periods, std::int64_t first = 1);

}  // namespace orvex::inline ORVEX_COUNTS

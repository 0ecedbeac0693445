#include "orvex/averages/average_type.h"

#include <algorithm>

#include "orvex/averages/moving_average.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<RecordSet> averageOfType(Integer MA_Type, std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                         Integer Periods, std::string_view name) {
  MovingAverage average;
  switch (MA_Type.value()) {
    case average_type::Simple:
      return average.SimpleMovingAverage(data, Source, Periods, name);
    case average_type::Exponential:
      return average.ExponentialMovingAverage(data, Source, Periods, name);
    case average_type::TimeSeries:
      return average.TimeSeriesMovingAverage(data, Source, Periods, name);
    case average_type::Variable:
      return average.VariableMovingAverage(data, Source, Periods, name);
    case average_type::Triangular:
      return average.TriangularMovingAverage(data, Source, Periods, name);
    case average_type::Weighted:
      return average.WeightedMovingAverage(data, Source, Periods, name);
    case average_type::Vidya:
      return average.VIDYA(data, Source, Periods, average_type::VidyaR2Scale, name);
    default:
      return nullptr;
  }
}

std::int64_t firstAverageRow(int MA_Type, std::int64_t periods, std::int64_t first) {
  switch (MA_Type) {
    case average_type::Exponential:
      // Its seed takes as many values and one more.
      return first + periods;
    case average_type::TimeSeries:
    case average_type::Triangular:
    case average_type::Vidya:
      return std::max(2 * periods + 1, first + periods - 1);
    case average_type::Variable:
      // The factor's own period of 9 holds the first rows back whatever the average's period is.
      return std::max(3 * periods + 1, first + 9);
    default:
      return std::max(periods + 1, first + periods - 1);
  }
}

}  // namespace orvex::inline ORVEX_COUNTS

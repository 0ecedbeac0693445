#include "orvex/averages/linear_regression.h"

#include <vector>

#include "orvex/averages/regression_columns.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/text.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// The square of a position in the window: a count, which 16 bits hold up to a window of 181 records. That limit is
/// kept where counts are 16 bits wide; no other count is to impose one.
Real squareOf(Integer x) {
  if constexpr (ORVEX_COUNT_BITS == 16) {
    return x * x;
  } else {
    return Real(x) * x;
  }
}

/// Reads the values of the records that end at `record`, oldest first. Moves the cursor over them and back to `record`.
void readWindow(Database& data, const std::shared_ptr<Field>& source, Integer record, Integer count,
                std::vector<double>& window) {
  if (count < 1) raise(faults::SubscriptOutOfRange);
  window.resize(static_cast<std::size_t>(count.value()));
  data.setPosition(record - count + 1);
  for (double& value : window) {
    value = object(source).getValue(data.getPosition());
    data.MoveNext();
  }
  data.MovePrevious();
}

}  // namespace

std::shared_ptr<RecordSet> regressionColumns(const std::shared_ptr<Database>& data,
                                             const std::shared_ptr<Field>& source, Integer periods,
                                             RegressionPart wanted) {
  const Integer count = object(data).getRecordCount();
  const auto slopes = makeColumn(count, LinearRegression::SlopeName, periods.value());
  const auto intercepts = makeColumn(count, LinearRegression::InterceptName, periods.value());
  const auto forecasts = makeColumn(count, LinearRegression::ForecastName, periods.value());
  const auto qualities = makeColumn(count, LinearRegression::RSquaredName, periods.value());
  std::vector<double> y;
  double quality = 0;
  data->MoveFirst();
  walk(
      *data, periods, count,
      [&](kernels::Records records) {
        const auto rows = [&](const std::shared_ptr<Field>& column, RegressionPart part) {
          return wanted == RegressionPart::All || wanted == part ? column->writableValues().data() : nullptr;
        };
        return kernels::run(&kernels::Table::regression, rowsOf(source), periods.value(), records, &quality,
                            kernels::RegressionRows{
                                rows(slopes, RegressionPart::All), rows(intercepts, RegressionPart::All),
                                rows(forecasts, RegressionPart::Forecast), rows(qualities, RegressionPart::RSquared)});
      },
      [&](Integer record) {
        readWindow(*data, source, record, periods, y);
        Real sumX = 0, sumY = 0, sumXX = 0, sumYY = 0, sumXY = 0;
        for (Integer x = 1; x <= periods; ++x) {
          const Real value = y[static_cast<std::size_t>(x.value() - 1)];
          sumX += x;
          sumY += value;
          sumXX += squareOf(x);
          sumYY += value * value;
          sumXY += x * value;
        }
        const Real qXY = sumXY - sumX * sumY / periods;
        const Real qXX = sumXX - sumX * sumX / periods;
        const Real qYY = sumYY - sumY * sumY / periods;
        const Real slope = qXY / qXX;
        // The line is centred on this whole number and not on the mean of x; it is the published form.
        const Integer center = Integer::rounded(periods.value() / 2.0);
        const Real intercept = Real(1) / periods * sumY - center * slope;
        const Real forecast = periods * slope + intercept;
        if (qXY * qXY != 0 && qYY * qXX != 0) quality = qXY * qXY / (qYY * qXX);
        slopes->setValue(record, slope);
        intercepts->setValue(record, intercept);
        forecasts->setValue(record, forecast);
        qualities->setValue(record, quality);
      },
      {.carried = Carried(quality)});
  for (const auto& column : {slopes, intercepts, forecasts, qualities}) blank(*column, periods);
  const auto result = makeRecordSet({slopes, intercepts, forecasts, qualities});
  data->MoveFirst();
  return result;
}

std::shared_ptr<RecordSet> LinearRegression::Regression(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                        Integer Periods) {
  return trap(RegressionFault, [&] { return regressionColumns(data, Source, Periods, RegressionPart::All); });
}

std::shared_ptr<RecordSet> LinearRegression::TimeSeriesForecast(std::shared_ptr<Database> data,
                                                                std::shared_ptr<Field> Source, Integer Periods,
                                                                InOut<std::string> Alias) {
  return trap(TimeSeriesForecastFault, [&] {
    applyDefault(Alias, TimeSeriesForecastName);
    // What is left under the name of the quality is the quality.
    const auto wanted = equalNames(Alias.get(), RSquaredName) ? RegressionPart::All : RegressionPart::Forecast;
    const auto result = regressionColumns(data, Source, Periods, wanted);
    // Renamed before the others are removed by name: an alias that is one of theirs is met by its own removal.
    result->renameField(ForecastName, Alias.get());
    result->removeField(SlopeName);
    result->removeField(InterceptName);
    result->removeField(RSquaredName);
    return result;
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

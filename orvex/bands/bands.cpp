#include "orvex/bands/bands.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>

#include "orvex/averages/average_type.h"
#include "orvex/averages/moving_average.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/prime_search.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;
using std::shared_ptr;

/// The rows center + width x factor and center - width x factor, as far as a kernel can prove them.
std::size_t fillAround(kernels::Source center, kernels::Source width, double factor, kernels::Records records,
                       Field& above, Field& below) {
  return kernels::run(&Table::around, center, width, factor, records, above.writableValues().data(),
                      below.writableValues().data());
}

/// Carries the latest fractal of a column into the row of `record`.
template <class Beyond>
void stepFractals(const shared_ptr<Field>& column, Integer periods, Integer record, Field& result, Beyond beyond) {
  const Integer center = record - periods;
  if (center <= periods) return;
  const Real value = at(column, center);
  bool fractal = true;
  for (int distance = 1; distance <= periods; ++distance) {
    const Real before = at(column, center - distance);
    const Real after = at(column, center + distance);
    fractal = fractal && beyond(value, before) && beyond(value, after);
  }
  result.setValue(record, fractal ? value.value() : result.getValue(record - 1));
}

}  // namespace

shared_ptr<RecordSet> Bands::BollingerBands(shared_ptr<Database> data, shared_ptr<Field> Source, Integer Periods,
                                            Integer StandardDeviations, Integer MA_Type) {
  const Integer count = object(data).getRecordCount();
  checkAverageType(MA_Type, BollingerBandsTypeFault);
  checkPeriods(Periods, 1, count, BollingerBandsPeriodsFault);
  if (StandardDeviations < 0 || StandardDeviations > 100) raise(BollingerBandsDeviationsFault);
  auto result = trap(BollingerBandsAverageFault,
                     [&] { return averageOfType(MA_Type, data, Source, Periods, BollingerMedianName); });
  return trap(BollingerBandsFault, [&] {
    const auto tops = makeColumn(count, BollingerTopName, Periods.value() + 1LL);
    const auto bottoms = makeColumn(count, BollingerBottomName, Periods.value() + 1LL);
    const auto medians = result->getField(BollingerMedianName);
    const Integer first = Periods + 1;
    data->setPosition(first);
    walk(
        *data, first, count,
        [&](kernels::Records records) {
          const std::size_t done =
              kernels::run(&Table::deviation, rowsOf(Source), rowsOf(medians), Periods.value(), 1,
                           Real(StandardDeviations).value(), records, tops->writableValues().data());
          records.last = records.first - 1 + static_cast<int>(done);
          return fillAround(rowsOf(medians), rowsOf(tops), 1.0, records, *tops, *bottoms);
        },
        [&](Integer record) {
          const Real mean = at(medians, data->getPosition());
          Real sum = 0;
          // The records before this one, measured around its own average. That is meant so: the bands tell how far the
          // price strayed before it came here.
          for (int i = 1; i <= Periods; ++i) {
            data->MovePrevious();
            const Real distance = at(Source, data->getPosition()) - mean;
            sum += distance * distance;
          }
          data->setPosition(data->getPosition() + Periods);
          const Real deviation = sqrt(sum / Periods);
          const Real width = StandardDeviations * deviation;
          tops->setValue(record, mean + width);
          bottoms->setValue(record, mean - width);
        });
    blank(*tops, Periods);
    blank(*bottoms, Periods);
    result->addField(tops);
    result->addField(bottoms);
    data->MoveFirst();
    return result;
  });
}

shared_ptr<RecordSet> Bands::MovingAverageEnvelope(shared_ptr<Database> data, shared_ptr<Field> Source, Integer Periods,
                                                   Integer MA_Type, InOut<double> Shift) {
  const Integer count = object(data).getRecordCount();
  checkAverageType(MA_Type, MovingAverageEnvelopeTypeFault);
  checkPeriods(Periods, 1, count, MovingAverageEnvelopePeriodsFault);
  if (Shift.get() < 0 || Shift.get() > 100) raise(MovingAverageEnvelopeShiftFault);
  constexpr std::string_view averageName = "Temp";
  auto result = trap(MovingAverageEnvelopeAverageFault,
                     [&] { return averageOfType(MA_Type, data, Source, Periods, averageName); });
  return trap(MovingAverageEnvelopeFault, [&] {
    const auto tops = makeColumn(count, EnvelopeTopName, 1);
    const auto bottoms = makeColumn(count, EnvelopeBottomName, 1);
    const auto averages = result->getField(averageName);
    data->MoveFirst();
    const Real shift = Real(Shift.get()) / 100;
    Shift.set(shift);
    walk(
        *data, 1, count,
        [&](kernels::Records records) {
          return fillAround(rowsOf(averages), rowsOf(averages), shift, records, *tops, *bottoms);
        },
        [&](Integer record) {
          const Real average = at(averages, data->getPosition());
          tops->setValue(record, average * shift + average);
          bottoms->setValue(record, average - average * shift);
        });
    // Twice the period, as published, so that no average's warm-up shows. It limits the period to half the series.
    blank(*tops, 2 * Periods);
    blank(*bottoms, 2 * Periods);
    result->addField(tops);
    result->addField(bottoms);
    result->removeField(averageName);
    data->MoveFirst();
    return result;
  });
}

shared_ptr<RecordSet> Bands::HighLowBands(shared_ptr<Database> data, shared_ptr<Field> HighPrice,
                                          shared_ptr<Field> LowPrice, shared_ptr<Field> ClosePrice, Integer Periods) {
  const Integer count = object(data).getRecordCount();
  checkPeriods(Periods, 6, count, HighLowBandsPeriodsFault);
  shared_ptr<RecordSet> tops, medians, bottoms;
  trap(HighLowBandsAverageFault, [&] {
    constexpr double scale = 0.8;
    MovingAverage average;
    tops = average.VIDYA(data, HighPrice, Periods, scale, HighLowTopName);
    const Integer half = Integer::rounded(Periods.value() / 2.0);
    medians = average.VIDYA(data, ClosePrice, half, scale, HighLowMedianName);
    bottoms = average.VIDYA(data, LowPrice, Periods, scale, HighLowBottomName);
  });
  return trap(HighLowBandsFault, [&] {
    const auto top = tops->getField(HighLowTopName);
    const auto median = medians->getField(HighLowMedianName);
    const auto bottom = bottoms->getField(HighLowBottomName);
    for (const auto& column : {top, median, bottom}) blank(*column, Periods);
    auto result = makeRecordSet({top, median, bottom});
    data->MoveFirst();
    return result;
  });
}

shared_ptr<RecordSet> Bands::Keltner(shared_ptr<Database> data, shared_ptr<RecordSet> OHLCV, Integer Periods,
                                     double Factor) {
  return trap(KeltnerFault, [&] {
    // Not `Periods`: the range is always that of 14 records.
    const auto ranges = Oscillator().AverageTrueRange(data, OHLCV, "ATR", 14)->getField("ATR");
    const auto close = object(OHLCV).getField(Database::CloseName);
    const auto medians = MovingAverage()
                             .VIDYA(data, close, Periods, average_type::VidyaR2Scale, KeltnerMedianName)
                             ->getField(KeltnerMedianName);
    const Integer count = object(close).getRecordCount();
    const auto tops = makeColumn(count, KeltnerTopName, Periods.value());
    const auto bottoms = makeColumn(count, KeltnerBottomName, Periods.value());
    eachRecord(
        Periods, count,
        [&](kernels::Records records) {
          return fillAround(rowsOf(medians), rowsOf(ranges), Factor, records, *tops, *bottoms);
        },
        [&](Integer record) {
          const Real width = at(ranges, record) * Factor;
          const Real median = at(medians, record);
          tops->setValue(record, median + width);
          bottoms->setValue(record, median - width);
        });
    return makeRecordSet({medians, tops, bottoms});
  });
}

shared_ptr<RecordSet> Bands::PrimeNumberBands(shared_ptr<Database> data, shared_ptr<RecordSet> OHLCV) {
  return trap(PrimeNumberBandsFault, [&] {
    const Integer count = object(data).getRecordCount();
    const auto tops = makeColumn(count, PrimeTopName, 1);
    const auto bottoms = makeColumn(count, PrimeBottomName, 1);
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName);
    eachRecord(1, count, noKernel, [&](Integer record) {
      bottoms->setValue(record, primeAtOrBelow(toLong(primePrice(low(record)))));
      const std::int32_t from = toLong(primePrice(high(record)));
      // The end of the search is computed in 32 bits, where it may not fit.
      const std::int32_t bound = toLong(toLong(2.0 * from) - 1.0);
      tops->setValue(record, primeAtOrAbove(from, bound));
    });
    return makeRecordSet({tops, bottoms});
  });
}

shared_ptr<RecordSet> Bands::FractalChaosBands(shared_ptr<Database> data, shared_ptr<RecordSet> OHLCV,
                                               Integer Periods) {
  const Integer count = object(data).getRecordCount();
  checkPeriods(Periods, 1, count, FractalChaosBandsPeriodsFault);
  return trap(FractalChaosBandsFault, [&] {
    // The first record that has seen a value with all its neighbours.
    const std::int64_t first = 2LL * Periods.value() + 1;
    const auto highs = makeColumn(count, FractalHighName, first);
    const auto lows = makeColumn(count, FractalLowName, first);
    const auto high = object(OHLCV).getField(Database::HighName);
    const auto low = OHLCV->getField(Database::LowName);
    eachRecord(
        1, count,
        [&](kernels::Records records) {
          const auto extremes = records.first > Periods ? workingRows(count) : nullptr;
          const auto fill = [&](auto kernel, const shared_ptr<Field>& source, Field& result) {
            const double latest = records.first > 1 ? result.getValue(records.first - 1) : 0.0;
            double* const rows = result.writableValues().data();
            return kernels::run(kernel, rowsOf(source), Periods.value(), records, latest,
                                extremes != nullptr ? extremes.get() : rows, rows);
          };
          return std::min(fill(&Table::peaks, high, *highs), fill(&Table::valleys, low, *lows));
        },
        [&](Integer record) {
          stepFractals(high, Periods, record, *highs, std::greater<double>());
          stepFractals(low, Periods, record, *lows, std::less<double>());
        });
    data->MoveFirst();
    return makeRecordSet({highs, lows});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

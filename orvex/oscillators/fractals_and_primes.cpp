#include <algorithm>
#include <array>
#include <cstdint>

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

/// The prices of the four records before `record`; 0s where there are not four of them.
std::array<Real, 4> fourBefore(const std::shared_ptr<Field>& price, Integer record) {
  if (record < 5) return {};
  return {at(price, record - 1), at(price, record - 2), at(price, record - 3), at(price, record - 4)};
}

}  // namespace

std::shared_ptr<RecordSet> Oscillator::ChaosFractalOscillator(std::shared_ptr<Database> data,
                                                              std::shared_ptr<RecordSet> OHLCV,
                                                              InOut<Integer> Periods) {
  return trap(ChaosFractalOscillatorFault, [&] {
    // Nothing below depends on it.
    if (Periods.get() < 1) Periods.set(ChaosFractalOscillatorPeriods);
    const Integer count = object(data).getRecordCount();
    const auto high = object(OHLCV).getField(Database::HighName);
    const auto low = object(OHLCV).getField(Database::LowName);
    const auto result = makeColumn(count, ChaosFractalOscillatorName, 2);
    // The rows that stand before others are all taken first, so a column that lacks them fails before any comparison,
    // and so does a series whose last record is the last that can be counted.
    if (count > 4) {
      for (const auto& column : {high, low}) column->getValue(count - 1);
      static_cast<void>(count + 1);
    }
    // From record 2 on, although four records stand behind the fifth only: before it the comparison is with 0, so that
    // ordinary prices give 1 there. It is kept.
    const auto step = [&](Integer record) {
      bool above = true, below = true;
      for (const Real before : fourBefore(high, record)) above &= at(high, record) > before;
      for (const Real before : fourBefore(low, record)) below &= at(low, record) < before;
      result->setValue(record, below ? -1 : above ? 1 : 0);
    };
    eachRecord(2, std::min(count, Integer(4)), noKernel, step);
    eachRecord(
        5, count,
        [&](kernels::Records records) {
          return kernels::run(&kernels::Table::breakouts, rowsOf(high), rowsOf(low), records,
                              result->writableValues().data());
        },
        step);
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::PrimeNumberOscillator(std::shared_ptr<Database> data,
                                                             std::shared_ptr<Field> Source, InOut<std::string> Alias) {
  return trap(PrimeNumberOscillatorFault, [&] {
    applyDefault(Alias, PrimeNumberOscillatorName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 1);
    eachRecord(1, count, noKernel, [&](Integer record) {
      const Real value = primePrice(at(Source, record));
      const std::int32_t number = toLong(value);
      const Real fromLower = value - primeAtOrBelow(number);
      const Real fromUpper = value - primeAtOrAbove(number, 2 * std::int64_t{number} - 1);
      result->setValue(record, abs(fromLower) <= abs(fromUpper) ? fromLower : fromUpper);
    });
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"

namespace orvex {

namespace {

/// The prices of the four records before `record`; 0s where there are not four of them.
std::array<Real, 4> fourBefore(const std::shared_ptr<Field>& price, Integer record) {
  if (record < 5) return {};
  return {at(price, record - 1), at(price, record - 2), at(price, record - 3), at(price, record - 4)};
}

/// The first prime from `from` downward that is at least 2, or 0.
std::int32_t primeBelow(General& general, std::int32_t from) {
  for (std::int32_t candidate = from; candidate >= 2; --candidate) {
    if (general.IsPrime(candidate)) return candidate;
  }
  return 0;
}

/// The first prime from `from` up to 2 x `from` - 1, or 0.
std::int32_t primeAbove(General& general, std::int32_t from) {
  const std::int64_t bound = 2 * std::int64_t{from} - 1;
  for (std::int64_t candidate = from; candidate <= bound; ++candidate) {
    if (general.IsPrime(static_cast<std::int32_t>(candidate))) return static_cast<std::int32_t>(candidate);
  }
  return 0;
}

std::int32_t toLong(Real whole) {
  constexpr double beyond = std::numeric_limits<std::int32_t>::max() + 1.0;
  if (whole < -beyond || whole >= beyond) raise(faults::Overflow);
  return static_cast<std::int32_t>(whole.value());
}

}  // namespace

std::shared_ptr<RecordSet> Oscillator::ChaosFractalOscillator(std::shared_ptr<Database> data,
                                                              std::shared_ptr<RecordSet> OHLCV,
                                                              InOut<Integer> Periods) {
  return trap(ChaosFractalOscillatorFault, [&] {
    // Nothing below depends on it.
    if (Periods.get() < 1) Periods.set(ChaosFractalOscillatorPeriods);
    const Integer count = object(data).getRecordCount();
    const auto high = object(OHLCV).getField(std::string(Database::HighName));
    const auto low = object(OHLCV).getField(std::string(Database::LowName));
    const auto result = makeColumn(count, std::string(ChaosFractalOscillatorName));
    // The rows that stand before others are all taken first, so a column that lacks them fails before any comparison.
    if (count > 4) {
      for (const auto& column : {high, low}) object(column).getValue(count - 1);
    }
    // From record 2 on, although four records stand behind the fifth only: before it the comparison is with 0, so that
    // ordinary prices give 1 there. It is kept.
    const auto step = [&](Integer record) {
      bool above = true, below = true;
      for (const Real before : fourBefore(high, record)) above &= at(high, record) > before;
      for (const Real before : fourBefore(low, record)) below &= at(low, record) < before;
      if (above) result->setValue(record, 1);
      if (below) result->setValue(record, -1);
    };
    eachRecord(2, std::min(count, Integer(4)), noKernel, step);
    eachRecord(
        5, count,
        [&] {
          return kernels::run(&kernels::Table::breakouts, rowsOf(high), rowsOf(low), recordRange(5, count),
                              result->values().data());
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
    const auto result = makeColumn(count, Alias.get());
    General general;
    eachRecord(1, count, noKernel, [&](Integer record) {
      Real value = fix(at(Source, record));
      if (value < 10) value = value * 10;
      const std::int32_t number = toLong(value);
      const Real fromLower = value - primeBelow(general, number), fromUpper = value - primeAbove(general, number);
      result->setValue(record, abs(fromLower) <= abs(fromUpper) ? fromLower : fromUpper);
    });
    return makeRecordSet({result});
  });
}

}  // namespace orvex

#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/indices/cumulative.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Records;
using kernels::Table;

/// The move of a column to `record` as a share of where it came from.
Real relativeMove(const std::shared_ptr<Field>& source, Integer record) {
  const Real before = at(source, record - 1);
  return (at(source, record) - before) / before;
}

/// The index that follows the price on the records whose volume `counts` against that of the record before, and stands
/// still on the others. The seed of 1, not 100 or 1,000 as textbooks have it, is kept as published.
template <class Kernel, class Counts>
std::shared_ptr<RecordSet> volumeIndex(const std::shared_ptr<Database>& data, const std::shared_ptr<Field>& source,
                                       const std::shared_ptr<Field>& volume, const std::string& name, Kernel kernel,
                                       Counts counts) {
  return cumulate(
      data, name, 2, 1.0,
      [&](Records records, double* out) { return kernels::run(kernel, rowsOf(source), rowsOf(volume), records, out); },
      [&](Integer record, Real before) {
        if (!counts(at(volume, record), at(volume, record - 1))) return before;
        return relativeMove(source, record) * before + before;
      });
}

}  // namespace

std::shared_ptr<RecordSet> Index::OnBalanceVolume(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                  std::shared_ptr<Field> Volume, InOut<std::string> Alias) {
  return trap(OnBalanceVolumeFault, [&] {
    applyDefault(Alias, OnBalanceVolumeName);
    return cumulate(
        data, Alias.get(), 2, 0.0,
        [&](Records records, double* out) {
          return kernels::run(&Table::onBalanceVolume, rowsOf(Source), rowsOf(Volume), records, out);
        },
        [&](Integer record, Real before) {
          const Real now = at(Source, record), then = at(Source, record - 1);
          if (now > then) return before + at(Volume, record);
          if (now < then) return before - at(Volume, record);
          return before;
        });
  });
}

std::shared_ptr<RecordSet> Index::PriceVolumeTrend(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   std::shared_ptr<Field> Volume, InOut<std::string> Alias) {
  return trap(PriceVolumeTrendFault, [&] {
    applyDefault(Alias, PriceVolumeTrendName);
    return cumulate(
        data, Alias.get(), 2, 0.0,
        [&](Records records, double* out) {
          return kernels::run(&Table::priceVolumeTrend, rowsOf(Source), rowsOf(Volume), records, out);
        },
        [&](Integer record, Real before) { return relativeMove(Source, record) * at(Volume, record) + before; });
  });
}

std::shared_ptr<RecordSet> Index::PositiveVolumeIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      std::shared_ptr<Field> Volume, InOut<std::string> Alias) {
  return trap(PositiveVolumeIndexFault, [&] {
    applyDefault(Alias, PositiveVolumeIndexName);
    return volumeIndex(data, Source, Volume, Alias.get(), &Table::positiveVolume,
                       [](double now, double then) { return now > then; });
  });
}

std::shared_ptr<RecordSet> Index::NegativeVolumeIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      std::shared_ptr<Field> Volume, InOut<std::string> Alias) {
  return trap(NegativeVolumeIndexFault, [&] {
    applyDefault(Alias, NegativeVolumeIndexName);
    return volumeIndex(data, Source, Volume, Alias.get(), &Table::negativeVolume,
                       [](double now, double then) { return now < then; });
  });
}

std::shared_ptr<RecordSet> Index::TradeVolumeIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   std::shared_ptr<Field> Volume, double MinTickValue,
                                                   InOut<std::string> Alias) {
  applyDefault(Alias, TradeVolumeIndexName);
  if (MinTickValue < 0) raise(TradeVolumeIndexTickFault);
  return trap(TradeVolumeIndexFault, [&] {
    int direction = 0;
    return cumulate(
        data, Alias.get(), 2, 0.0,
        [&](Records records, double* out) {
          return kernels::run(&Table::tradeVolume, rowsOf(Source), rowsOf(Volume), MinTickValue, &direction, records,
                              out);
        },
        [&](Integer record, Real total) {
          const Real move = at(Source, record) - at(Source, record - 1), tick = MinTickValue;
          if (move > tick) {
            direction = 1;
          } else if (move < -tick) {
            direction = -1;
          }
          if (direction > 0) return total + at(Volume, record);
          if (direction < 0) return total - at(Volume, record);
          return total;
        },
        Carried(direction));
  });
}

std::shared_ptr<RecordSet> Index::Performance(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                              InOut<std::string> Alias) {
  return trap(PerformanceFault, [&] {
    applyDefault(Alias, PerformanceName);
    object(data).setPosition(2);
    const double base = object(Source).getValue(1);
    return cumulate(
        data, Alias.get(), 2, 0.0,
        [&](Records records, double* out) {
          return kernels::run(&Table::performance, rowsOf(Source), base, records, out);
        },
        [&](Integer record, Real) { return (at(Source, record) - base) / base * 100; });
  });
}

std::shared_ptr<RecordSet> Index::ComparativeRelativeStrength(std::shared_ptr<Database> data,
                                                              std::shared_ptr<Field> Source1,
                                                              std::shared_ptr<Field> Source2,
                                                              InOut<std::string> Alias) {
  return trap(ComparativeRelativeStrengthFault, [&] {
    applyDefault(Alias, ComparativeRelativeStrengthName);
    return cumulate(
        data, Alias.get(), 1, 0.0,
        [&](Records records, double* out) {
          return kernels::run(&Table::ratio, rowsOf(Source1), rowsOf(Source2), EqualStrength, records, out);
        },
        [&](Integer record, Real) {
          const Real ratio = at(Source1, record) / at(Source2, record);
          return ratio == 1.0 ? Real(EqualStrength) : ratio;
        });
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

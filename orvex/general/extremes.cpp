// The highest and lowest values of a span of records.

#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;

/// The extreme of each record and the `Periods` before it. `beats(value, extreme)` tells whether a value takes the
/// extreme's place.
template <class Kernel, class Beats>
std::shared_ptr<RecordSet> rollingExtreme(const std::shared_ptr<Database>& data, const std::shared_ptr<Field>& source,
                                          Integer Periods, InOut<std::string>& Alias, std::string_view name,
                                          Kernel Table::*kernel, Beats&& beats) {
  applyDefault(Alias, name);
  const Integer count = object(data).getRecordCount();
  const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
  data->MoveFirst();
  const Integer first = Periods + 1;
  // The cursor runs along from record 1, `Periods` behind the record; after a fault that is where it stands.
  walk(
      *data, first, count,
      [&](kernels::Records records) {
        return kernels::run(kernel, rowsOf(source), Periods.value() + 1, kernels::Ties::Newest, records,
                            result->writableValues().data());
      },
      [&](Integer record) {
        Real extreme = at(source, record);
        for (Integer j = record; j >= record - Periods; --j) {
          const Real value = at(source, j);
          if (beats(value, extreme)) extreme = value;
        }
        result->setValue(record, extreme);
      },
      {.behind = Periods});
  data->MoveFirst();
  return makeRecordSet({result});
}

std::shared_ptr<Note> noteOf(Integer period, double value) {
  auto note = std::make_shared<Note>();
  note->setPeriod(period);
  note->setValue(value);
  return note;
}

}  // namespace

std::shared_ptr<RecordSet> General::HHV(std::shared_ptr<Database> data, std::shared_ptr<Field> High, Integer Periods,
                                        InOut<std::string> Alias) {
  return trap(HHVFault, [&] {
    return rollingExtreme(data, High, Periods, Alias, HHVName, &Table::highest,
                          [](Real value, Real highest) { return value > highest; });
  });
}

std::shared_ptr<RecordSet> General::LLV(std::shared_ptr<Database> data, std::shared_ptr<Field> Low, Integer Periods,
                                        InOut<std::string> Alias) {
  return trap(LLVFault, [&] {
    return rollingExtreme(data, Low, Periods, Alias, LLVName, &Table::lowest,
                          [](Real value, Real lowest) { return value < lowest; });
  });
}

std::shared_ptr<Note> General::MaxValue(std::shared_ptr<Field> Source, Integer StartPeriod, Integer EndPeriod) {
  return trap(MaxValueFault, [&] {
    if (StartPeriod > EndPeriod) raise(MaxValuePeriodFault);
    // From 0 and not from the first row, which is kept: in a range without a value above 0 there is no maximum.
    Real highest = 0;
    Integer period = 0;
    for (Integer k = StartPeriod; k <= EndPeriod; ++k) {
      const Real value = at(Source, k);
      if (value > highest) {
        highest = value;
        period = k;
      }
    }
    return noteOf(period, highest);
  });
}

std::shared_ptr<Note> General::MinValue(std::shared_ptr<Field> Source, Integer StartPeriod, Integer EndPeriod) {
  return trap(MinValueFault, [&] {
    if (StartPeriod > EndPeriod) raise(MinValuePeriodFault);
    Real lowest = at(Source, StartPeriod);
    Integer period = StartPeriod;
    for (Integer k = StartPeriod; k <= EndPeriod; ++k) {
      const Real value = at(Source, k);
      if (value < lowest) {
        lowest = value;
        period = k;
      }
    }
    return noteOf(period, lowest);
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

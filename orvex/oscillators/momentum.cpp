#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/oscillators/oscillator.h"
#include "orvex/oscillators/spans.h"

namespace orvex {

std::shared_ptr<RecordSet> Oscillator::CMO(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                           Integer Periods, InOut<std::string> Alias) {
  return trap(CMOFault, [&] {
    applyDefault(Alias, CMOName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get());
    walkSpans(*data, Periods, count + 1, noKernel, [&](Integer record) {
      Real up = 0, down = 0;
      visitSpan(
          *data, Periods, record, [](Integer) {},
          [&](Integer j) {
            const Real value = at(Source, j), before = at(Source, j - 1);
            if (value > before) up += value - before;
            if (value < before) down += before - value;
          });
      if (up + down != 0) result->setValue(record, (up - down) * 100 / (up + down));
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex

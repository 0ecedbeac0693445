#include "orvex/patterns/neural_network.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/patterns/network.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// The relative changes of records 2 .. `last`, each in the place of its record number.
std::vector<Real> changesOf(const std::shared_ptr<Field>& source, int last) {
  std::vector<Real> changes(static_cast<std::size_t>(last) + 1);
  for (int record = 2; record <= last; ++record) {
    const Real before = at(source, record - 1);
    const Real now = at(source, record);
    changes[static_cast<std::size_t>(record)] = before == 0 ? Real(0) : (now - before) / before;
  }
  return changes;
}

Real deviationOf(std::span<const Real> changes) {
  const Real count = static_cast<int>(changes.size());
  Real sum = 0;
  for (const Real change : changes) sum += change;
  const Real mean = sum / count;
  Real squares = 0;
  for (const Real change : changes) squares += (change - mean) * (change - mean);
  return sqrt(squares / count);
}

}  // namespace

std::shared_ptr<RecordSet> NeuralNetwork::NeuralIndicator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                          Integer Periods, double LearningRate, Integer Epochs,
                                                          double TrainingShare, InOut<std::string> Alias) {
  applyDefault(Alias, NeuralIndicatorName);
  const Integer count = object(data).getRecordCount();
  checkPeriods(Periods, 1, count, NeuralIndicatorPeriodsFault);
  if (!(LearningRate > 0)) raise(NeuralIndicatorRateFault);
  if (Epochs < 1) raise(NeuralIndicatorEpochsFault);
  if (!(TrainingShare > 0 && TrainingShare <= 1)) raise(NeuralIndicatorShareFault);
  return trap(NeuralIndicatorFault, [&] {
    const auto result = makeColumn(count, Alias.get());
    const int trained = static_cast<int>(std::floor(TrainingShare * count.value()));
    const std::int64_t first = std::int64_t{Periods.value()} + 2;
    if (first <= trained) {
      if (Periods > MostPeriods) raise(faults::OutOfMemory);
      // The last record is read only where the network learns it: its own forecast must not depend on it.
      const std::vector<Real> changes = changesOf(Source, std::max(trained, count.value() - 1));
      const Real deviation = deviationOf(std::span(changes).subspan(2, static_cast<std::size_t>(trained) - 1));
      std::vector<double> inputs(changes.size());
      for (std::size_t i = 2; i < inputs.size(); ++i) inputs[i] = deviation == 0 ? Real(0) : changes[i] / deviation;
      const auto inputsBefore = [&](Integer record) {
        const auto window = static_cast<std::size_t>(Periods.value());
        return std::span<const double>(inputs).subspan(static_cast<std::size_t>(record.value()) - window, window);
      };

      Network network(static_cast<std::size_t>(Periods.value()));
      for (std::int64_t pass = 1; pass <= Epochs.value(); ++pass) {
        eachRecord(first, trained, noKernel, [&](Integer record) {
          network.learn(inputsBefore(record), inputs[static_cast<std::size_t>(record.value())], LearningRate);
        });
        if (!network.isFinite()) raise(faults::Overflow);
      }
      eachRecord(first, count, noKernel, [&](Integer record) {
        const Real output = network.output(inputsBefore(record));
        result->setValue(record, at(Source, record - 1) * (1 + output * deviation));
      });
    }
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// Forecasts by learning from the past. The network is that of network.h.
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/neural_network.h.
class NeuralNetwork {
 public:
  static constexpr std::string_view NeuralIndicatorName = "NeuralIndicator";
  /// A longer period has more weights than memory holds, whatever counts can tell.
  static constexpr int MostPeriods = 32767;

  static constexpr Fault NeuralIndicatorPeriodsFault = invalidPeriods("NeuralNetwork.NeuralIndicator");
  static constexpr Fault NeuralIndicatorRateFault{1102, "NeuralNetwork.NeuralIndicator", "Invalid LearningRate"};
  static constexpr Fault NeuralIndicatorEpochsFault{1103, "NeuralNetwork.NeuralIndicator", "Invalid Epochs"};
  static constexpr Fault NeuralIndicatorShareFault{1106, "NeuralNetwork.NeuralIndicator", "Invalid TrainingShare"};
  static constexpr Fault NeuralIndicatorFault = unexpectedError("NeuralNetwork.NeuralIndicator.UnexpectedError");

  /// A forecast of each record of `Source` from the records before it, in the unit of `Source`, in a column named
  /// `Alias` ("NeuralIndicator" when empty). With N the record count of `data` and T = floor(`TrainingShare` x N):
  ///   change(j) = (Source(j) - Source(j - 1)) / Source(j - 1), 0 where Source(j - 1) is 0
  ///   deviation = the square root of the mean square distance of the changes of records 2..T from their mean
  ///   input(j) = change(j) / deviation, 0 where the deviation is 0
  ///   row r = Source(r - 1) x (1 + output x deviation), output being the network's for the inputs r - `Periods` ..
  ///   r - 1, oldest first
  /// The network has `Periods` inputs and `Periods` hidden units. It learns input(r) from the inputs before r in
  /// `Epochs` passes over the records r = `Periods` + 2 .. T, one after the other, at the rate `LearningRate`.
  /// Computed rows: `Periods` + 2 to N; all 0 where there is no record to learn from. From T + 1 on no value of a
  /// record later than r - 1 has had a part in the forecast; up to T the network has seen what it forecasts.
  ///
  /// Time and memory grow with the square of `Periods`. Yields to the host once a record in every pass; leaves the
  /// cursor of `data` on record 1. Errors: 1101 for `Periods` outside 1..N, 1102 for a `LearningRate` that is not above
  /// 0, 1103 for `Epochs` below 1, 1106 for a `TrainingShare` that is not above 0 and at most 1; 1105 for any other
  /// fault: weights that grow beyond all numbers, where a smaller `LearningRate` helps, and `Periods` above 32,767.
  std::shared_ptr<RecordSet> NeuralIndicator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                             Integer Periods, double LearningRate, Integer Epochs, double TrainingShare,
                                             InOut<std::string> Alias = {});
};

}  // namespace orvex::inline ORVEX_COUNTS

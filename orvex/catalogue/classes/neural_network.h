#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/patterns/neural_network.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<NeuralNetwork> {
  static constexpr Identity identity{
      .name = "NeuralNetwork",
      .help = "Forecasts by learning from the past.",
      .header = "orvex/patterns/neural_network.h",
      .classId = Guid("3b56809b-2140-405e-b7c1-b96751c36378"),
      .interfaceId = Guid("3997d337-317a-4f93-a4c4-b5b9eabb80f3"),
  };

  static constexpr auto rows = std::tuple{
      row<&NeuralNetwork::NeuralIndicator>(
          {.name = NeuralNetwork::NeuralIndicatorName,
           .help = "Forecasts each value from the ones before it with a small neural network.",
           .arguments = {Data,
                         Source,
                         {.name = "Periods",
                          .help = "How many relative changes the network sees, and how many hidden units it has.",
                          .usual = asExample(5)},
                         {.name = "LearningRate",
                          .help = "How far one example moves the weights, above 0.",
                          .usual = asExample(0.01)},
                         {.name = "Epochs", .help = "How often it goes through the examples.", .usual = asExample(10)},
                         {.name = "TrainingShare",
                          .help = "How much of the series it learns from, above 0 and at most 1.",
                          .usual = asExample(0.7)},
                         aliasOr(NeuralNetwork::NeuralIndicatorName)},
           .columns = {{.firstRow = "Periods + 2",
                        .aliased = true,
                        .help = "The forecast of the record, made from those before it.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {faults::ObjectNotSet, NeuralNetwork::NeuralIndicatorPeriodsFault,
                      NeuralNetwork::NeuralIndicatorRateFault, NeuralNetwork::NeuralIndicatorEpochsFault,
                      NeuralNetwork::NeuralIndicatorShareFault, NeuralNetwork::NeuralIndicatorFault},
           .purpose = Purpose::Statistics,
           .guide = {.formula = "row r = Source(r - 1) x (1 + output x deviation), the output of a network that has "
                                "seen the relative changes of the Periods records before r and has learnt on the first "
                                "TrainingShare of the series",
                     .reading =
                         "Compare the forecast with the value before: above it, a rise is expected. Judge it on the "
                         "records after the training share only; up to there the network has seen what it forecasts.",
                     .origin = "Orvex's own, on the network of Rumelhart, Hinton and Williams, Nature 323, 1986.",
                     .fails = "where the weights grow beyond all numbers: a smaller LearningRate helps"},
           .recomputed = true}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

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
      .classId = Guid("3b56809b-2140-405e-b7c1-b96751c36378"),
      .interfaceId = Guid("3997d337-317a-4f93-a4c4-b5b9eabb80f3"),
  };

  static constexpr auto rows = std::tuple{
      row<&NeuralNetwork::NeuralIndicator>(
          {.name = NeuralNetwork::NeuralIndicatorName,
           .help = "Forecasts each value from the ones before it with a small neural network.",
           .arguments =
               {Data,
                Source,
                {.name = "Periods",
                 .help = "How many relative changes the network sees, and how many hidden units it has.",
                 .usual = 5},
                {.name = "LearningRate", .help = "How far one example moves the weights, above 0.", .usual = 0.01},
                {.name = "Epochs", .help = "How often it goes through the examples.", .usual = 10},
                {.name = "TrainingShare",
                 .help = "How much of the series it learns from, above 0 and at most 1.",
                 .usual = 0.7},
                aliasOr(NeuralNetwork::NeuralIndicatorName)},
           .columns = {aliasedColumn("Periods + 2")},
           .faults = {faults::ObjectNotSet, NeuralNetwork::NeuralIndicatorPeriodsFault,
                      NeuralNetwork::NeuralIndicatorRateFault, NeuralNetwork::NeuralIndicatorEpochsFault,
                      NeuralNetwork::NeuralIndicatorShareFault, NeuralNetwork::NeuralIndicatorFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

#pragma once

#include <tuple>

#include "orvex/catalogue/classes/bands.h"
#include "orvex/catalogue/classes/candle_stick.h"
#include "orvex/catalogue/classes/chart_pattern.h"
#include "orvex/catalogue/classes/cycle.h"
#include "orvex/catalogue/classes/database.h"
#include "orvex/catalogue/classes/field.h"
#include "orvex/catalogue/classes/general.h"
#include "orvex/catalogue/classes/index.h"
#include "orvex/catalogue/classes/line_study.h"
#include "orvex/catalogue/classes/linear_regression.h"
#include "orvex/catalogue/classes/moving_average.h"
#include "orvex/catalogue/classes/neural_network.h"
#include "orvex/catalogue/classes/note.h"
#include "orvex/catalogue/classes/oscillator.h"
#include "orvex/catalogue/classes/record_set.h"
#include "orvex/catalogue/classes/standard.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// Every described class, for ways in that need the types: `std::tuple_element_t<i, Classes>` and its `Description`.
using Classes = std::tuple<Field, Note, RecordSet, Database, MovingAverage, LinearRegression, General, Oscillator,
                           Index, Bands, LineStudy, ChartPattern, Cycle, CandleStick, NeuralNetwork, Standard>;

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

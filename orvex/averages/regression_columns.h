#pragma once

#include <memory>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"

/// Regressions on the way to something else.
namespace orvex::inline ORVEX_COUNTS {

/// The columns of a regression that its caller looks at.
enum class RegressionPart { All, Forecast, RSquared };

/// `LinearRegression::Regression`, with nothing to be relied on in the rows of the columns that are not wanted.
/// REQUIRES of the caller: to remove those. Raises the errors of the steps themselves.
std::shared_ptr<RecordSet> regressionColumns(const std::shared_ptr<Database>& data,
                                             const std::shared_ptr<Field>& source, Integer periods,
                                             RegressionPart wanted);

}  // namespace orvex::inline ORVEX_COUNTS

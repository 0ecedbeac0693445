#pragma once

#include <memory>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"

/// Averages of the columns that an indicator computes on its way. Both take the code of `averageOfType` and fail for
/// any other.
namespace orvex::inline ORVEX_COUNTS {

/// The average's column, named `name`. It walks the cursor of `data` and leaves it on record 1.
std::shared_ptr<Field> averageColumn(Integer MA_Type, std::shared_ptr<Database> data, std::shared_ptr<Field> source,
                                     Integer periods, std::string_view name);

/// The average of the rows `first` and later of a column, taken for a series of its own so that the 0s of the rows
/// before them never enter it: a column of as many rows as `column`, 0 before the average's own first row. With a
/// first computed row A of the average itself, this one's is `first` + A - 1. Fails as the average does where the rows
/// are too few for it.
std::shared_ptr<Field> averageOfPart(Integer MA_Type, const std::shared_ptr<Field>& column, Integer first,
                                     Integer periods, std::string_view name);

}  // namespace orvex::inline ORVEX_COUNTS

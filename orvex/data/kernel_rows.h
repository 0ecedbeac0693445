#pragma once

#include <cstddef>
#include <memory>

#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/kernels/kernels.h"

/// What a method hands to a kernel.
namespace orvex::inline ORVEX_COUNTS {

/// The rows of a column; none of a null field, which the first step then reports.
inline kernels::Source rowsOf(const std::shared_ptr<Field>& column) {
  return column == nullptr ? kernels::Source{} : kernels::source(column->values());
}

/// The same without the first `before` rows; none where there are not so many.
inline kernels::Source behind(kernels::Source source, int before) {
  const auto rows = static_cast<std::size_t>(before);
  return source.count < rows ? kernels::Source{} : kernels::Source{source.rows + rows, source.count - rows};
}

/// Working space for a kernel: `columns` columns of `count` rows each, one after the other, with nothing in them yet.
inline std::unique_ptr<double[]> workingRows(Integer count, int columns = 1) {
  // No more bytes than a pointer difference can tell; the standard's own function is not everywhere yet.
  return std::unique_ptr<double[]>(
      new double[static_cast<std::size_t>(count.value()) * static_cast<std::size_t>(columns)]);
}

}  // namespace orvex::inline ORVEX_COUNTS

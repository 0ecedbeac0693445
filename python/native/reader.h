#pragma once

#include <nanobind/nanobind.h>

namespace orvex::python {

/// Adds read_prices(bytes, options) to the module: a price file as (dates, columns, remarks), the oldest record first.
/// The dates are an array of microseconds since 1970, a list of texts where they were not read as dates, or None; each
/// column is a pair of its name and an array of numbers or a list of texts.
void addReader(nanobind::module_& module);

}  // namespace orvex::python

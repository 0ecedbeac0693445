#pragma once

#include <nanobind/nanobind.h>

#include "native/functions.h"

namespace orvex::python {

/// The description of a function as plain data: texts, numbers, lists and mappings.
nanobind::dict describe(const Function& function);

}  // namespace orvex::python

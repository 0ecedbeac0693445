#pragma once

#include <nanobind/nanobind.h>

/// Live series in Python.
namespace orvex::python {

/// The types `LiveSeries` and `LiveResult`, which orvex._live dresses.
void addLive(nanobind::module_& module);

}  // namespace orvex::python

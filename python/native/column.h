#pragma once

#include <Python.h>

#include <string>

#include "native/computation.h"

/// Columns of results as objects of Python, whose rows arrays view without a copy.
namespace orvex::python {

/// The type `Column`: the rows of a result. Attributes: name, first and last (the computed rows, from 1), and
///   numpy()              the rows as an array that keeps the column
///   __arrow_c_array__()  the same in the Arrow C data interface, with rows that are not computed as nulls,
///                        but for a warm-up that was to be kept
/// -1 with an exception set on failure.
int addColumnType(PyObject* module);

/// A new reference, or null with an exception set.
PyObject* newColumn(std::string name, ResultColumn column);

/// A NumPy array of the rows, a new reference; null with an exception set on failure.
PyObject* newArray(ResultColumn column);

}  // namespace orvex::python

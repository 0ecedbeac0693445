#pragma once

#include <Python.h>

// NumPy's C interface is a table that each source file reaches through one shared pointer; module.cpp fills it.
#define PY_ARRAY_UNIQUE_SYMBOL orvex_numpy
#ifndef ORVEX_FILLS_NUMPY_TABLE
#define NO_IMPORT_ARRAY
#endif
#define NPY_NO_DEPRECATED_API NPY_2_0_API_VERSION
#include <numpy/arrayobject.h>

#include <nanobind/nanobind.h>

#include <algorithm>
#include <vector>

namespace orvex::python {

/// A new array of the numbers, which are of that type of NumPy.
template <class T>
nanobind::object arrayOf(const std::vector<T>& numbers, int type) {
  auto length = static_cast<npy_intp>(numbers.size());
  nanobind::object array = nanobind::steal(PyArray_SimpleNew(1, &length, type));
  if (!array.is_valid()) throw nanobind::python_error();
  std::ranges::copy(numbers, static_cast<T*>(PyArray_DATA(reinterpret_cast<PyArrayObject*>(array.ptr()))));
  return array;
}

}  // namespace orvex::python

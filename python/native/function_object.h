#pragma once

#include <Python.h>

#include <cstddef>

#include "native/computation.h"

/// The library's functions as callables of Python.
namespace orvex::python {

/// The type `Function`. Calling one with plain arguments (arrays of doubles that stand in one piece, numbers) goes
/// straight to the library; any other call is handed to orvex._call.general(function, args, kwargs).
///   columns(...)  the same call with plain arguments only, giving `Column` objects in place of arrays
///   index         its place in `catalogue()`
/// -1 with an exception set on failure.
int addFunctionType(PyObject* module);

/// The function at a place among functions(), a new reference; null with an exception set on failure.
PyObject* newFunction(std::size_t index);

/// Sets the exception that tells why a call of the function has failed.
void setRefusal(const Function& function, const Refusal& refusal);

/// The same as an object, a new reference.
PyObject* newRefusal(const Function& function, const Refusal& refusal);

/// A note, number or truth as Python has it, a new reference.
PyObject* newValue(const catalogue::Value& value);

/// Reads an object as the value of a parameter that is a number or a text; None is an argument left out. False where
/// the object is nothing plain; false with an exception set where it does not fit.
bool readValue(const Function& function, const Parameter& parameter, PyObject* object, catalogue::Value& value);

/// Reads an object as a column: false where it is no array of doubles in one piece.
bool readColumn(PyObject* object, Span& rows);

}  // namespace orvex::python

#include "native/function_object.h"

#include <nanobind/nanobind.h>
#include <structmember.h>

#include <limits>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "native/catalogue_data.h"
#include "native/column.h"
#include "native/numpy.h"
#include "orvex/data/text.h"

namespace nb = nanobind;

namespace orvex::python {

namespace {

using catalogue::Argument;
using catalogue::Missing;
using catalogue::Value;
using Kind = Parameter::Kind;

constexpr std::size_t MostParameters = 24;
/// From this many records on a call lets other threads of Python run: giving the lock up and taking it back costs about
/// as much as a hundred records.
constexpr std::size_t ReleasesLockFrom = 2048;

struct FunctionObject {
  PyObject_HEAD vectorcallfunc call;
  std::size_t index;
  const Function* function;
  std::vector<PyObject*>* names;  // of the parameters, interned
  PyObject* resultType;           // the named tuple of several columns, made with the first one
};

PyTypeObject* functionType = nullptr;

FunctionObject& self(PyObject* object) {
  return *reinterpret_cast<FunctionObject*>(object);
}

nb::object helper(const char* module, const char* name) {
  return nb::module_::import_(module).attr(name);
}

/// What a caller gave for each parameter; null for what was left out.
using Given = std::array<PyObject*, MostParameters>;

/// False for a call that does not fit the parameters.
bool matchArguments(const FunctionObject& callee, PyObject* const* arguments, std::size_t count, PyObject* keywords,
                    Given& given) {
  const std::vector<Parameter>& parameters = callee.function->parameters;
  const std::vector<PyObject*>& names = *callee.names;
  if (count > parameters.size()) return false;
  for (std::size_t i = 0; i < count; ++i) {
    if (parameters[i].keywordOnly) return false;
    given[i] = arguments[i];
  }
  const Py_ssize_t keywordCount = keywords == nullptr ? 0 : PyTuple_GET_SIZE(keywords);
  for (Py_ssize_t i = 0; i < keywordCount; ++i) {
    PyObject* keyword = PyTuple_GET_ITEM(keywords, i);
    std::size_t place = 0;
    while (place < names.size() && names[place] != keyword) ++place;
    if (place == names.size()) {
      place = 0;
      while (place < names.size() && PyUnicode_Compare(names[place], keyword) != 0) ++place;
    }
    if (place == names.size() || given[place] != nullptr) return false;
    given[place] = arguments[count + static_cast<std::size_t>(i)];
  }
  return true;
}

bool readColumnOf(Request& request, bool& first, PyObject* object, Span& rows) {
  if (object == nullptr || !readColumn(object, rows)) return false;
  if (!first && rows.size() != request.count) return false;
  request.count = rows.size();
  first = false;
  return true;
}

/// False for what is nothing plain; false with an exception set for what does not fit.
bool readArguments(const Function& function, const Given& given, Request& request) {
  bool first = true;
  for (std::size_t i = 0; i < function.parameters.size(); ++i) {
    const Parameter& parameter = function.parameters[i];
    PyObject* object = given[i];
    const bool leftOut = object == nullptr || object == Py_None;
    switch (parameter.kind) {
      case Kind::Prices:
        if (!leftOut) return false;
        break;
      case Kind::Price:
        if (!readColumnOf(request, first, object, request.prices[parameter.argument].emplace())) return false;
        break;
      case Kind::Column:
        if (!readColumnOf(request, first, object, request.columns[parameter.argument])) return false;
        break;
      case Kind::WarmUp:
        if (object == nullptr) break;
        if (!PyUnicode_CheckExact(object)) return false;
        request.keepWarmUp = PyUnicode_CompareWithASCIIString(object, "zero") == 0;
        if (!request.keepWarmUp && PyUnicode_CompareWithASCIIString(object, "nan") != 0) return false;
        break;
      case Kind::By:
        if (!leftOut) return false;
        break;
      case Kind::Errors:
        if (object != nullptr) return false;
        break;
      default:
        if (!leftOut && !readValue(function, parameter, object, request.values[parameter.argument])) return false;
        if (leftOut && !function.method->arguments[parameter.argument].usual.given &&
            !function.method->arguments[parameter.argument].optional) {
          return false;
        }
    }
  }
  return true;
}

/// The name that the caller gave to the result's columns; empty where it gave none.
std::string aliasOf(const Request& request) {
  for (const Parameter& parameter : request.function->parameters) {
    if (parameter.kind != Kind::Alias) continue;
    const auto* alias = std::get_if<std::string>(&request.values[parameter.argument]);
    if (alias != nullptr) return *alias;
  }
  return {};
}

/// Null with an exception set where the call fails.
PyObject* arraysOf(FunctionObject& callee, Result& result) {
  const std::size_t count = callee.function->method->columns.size();
  if (count == 1) return newArray(std::move(result.columns[0]));
  if (callee.resultType == nullptr) {
    callee.resultType = helper("orvex._results", "result_type")(callee.index).release().ptr();
  }
  // A subclass of tuple, whose own constructor would take the values one by one.
  auto* type = reinterpret_cast<PyTypeObject*>(callee.resultType);
  nb::object arrays = nb::steal(type->tp_alloc(type, static_cast<Py_ssize_t>(count)));
  if (!arrays.is_valid()) return nullptr;
  for (std::size_t i = 0; i < count; ++i) {
    PyObject* array = newArray(std::move(result.columns[i]));
    if (array == nullptr) return nullptr;
    PyTuple_SET_ITEM(arrays.ptr(), static_cast<Py_ssize_t>(i), array);
  }
  return arrays.release().ptr();
}

/// Null with an exception set where the call fails.
PyObject* columnsOf(const Function& function, Result& result, std::string_view alias) {
  const auto& columns = function.method->columns;
  nb::object made = nb::steal(PyTuple_New(static_cast<Py_ssize_t>(columns.size())));
  if (!made.is_valid()) return nullptr;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    PyObject* column = newColumn(columnTitle(function, columns[i], alias), std::move(result.columns[i]));
    if (column == nullptr) return nullptr;
    PyTuple_SET_ITEM(made.ptr(), static_cast<Py_ssize_t>(i), column);
  }
  return made.release().ptr();
}

PyObject* computeFor(FunctionObject& callee, Request& request, bool asColumns) {
  const Function& function = *callee.function;
  try {
    std::string alias;
    if (asColumns) alias = aliasOf(request);
    std::optional<nb::gil_scoped_release> others;
    if (request.count >= ReleasesLockFrom) others.emplace();
    Result result = compute(std::move(request));
    others.reset();
    if (!function.makesColumns()) return newValue(result.value);
    return asColumns ? columnsOf(function, result, alias) : arraysOf(callee, result);
  } catch (const Refusal& refusal) {
    setRefusal(*callee.function, refusal);
  } catch (nb::python_error& error) {
    error.restore();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
  return nullptr;
}

PyObject* callGeneral(PyObject* object, PyObject* const* arguments, std::size_t count, PyObject* keywords) {
  try {
    nb::list positional;
    for (std::size_t i = 0; i < count; ++i) positional.append(nb::borrow(arguments[i]));
    nb::dict named;
    const Py_ssize_t keywordCount = keywords == nullptr ? 0 : PyTuple_GET_SIZE(keywords);
    for (Py_ssize_t i = 0; i < keywordCount; ++i) {
      named[nb::borrow(PyTuple_GET_ITEM(keywords, i))] = nb::borrow(arguments[count + static_cast<std::size_t>(i)]);
    }
    return helper("orvex._call", "general")(nb::borrow(object), positional, named).release().ptr();
  } catch (nb::python_error& error) {
    error.restore();
    return nullptr;
  }
}

PyObject* call(PyObject* object, PyObject* const* arguments, std::size_t flags, PyObject* keywords) {
  FunctionObject& callee = self(object);
  const auto count = static_cast<std::size_t>(PyVectorcall_NARGS(flags));
  Given given{};
  Request request(*callee.function);
  if (matchArguments(callee, arguments, count, keywords, given) && readArguments(*callee.function, given, request)) {
    return computeFor(callee, request, false);
  }
  return PyErr_Occurred() != nullptr ? nullptr : callGeneral(object, arguments, count, keywords);
}

PyObject* columns(PyObject* object, PyObject* const* arguments, Py_ssize_t count, PyObject* keywords) {
  FunctionObject& callee = self(object);
  Given given{};
  Request request(*callee.function);
  if (matchArguments(callee, arguments, static_cast<std::size_t>(count), keywords, given) &&
      readArguments(*callee.function, given, request)) {
    return computeFor(callee, request, true);
  }
  if (PyErr_Occurred() == nullptr) PyErr_SetString(PyExc_TypeError, "arguments that are not plain");
  return nullptr;
}

void freeFunction(PyObject* object) {
  PyTypeObject* type = Py_TYPE(object);
  for (PyObject* name : *self(object).names) Py_DECREF(name);
  delete self(object).names;
  Py_XDECREF(self(object).resultType);
  type->tp_free(object);
  Py_DECREF(type);
}

PyObject* textOf(const std::string& text) {
  return PyUnicode_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
}

PyObject* nameOf(PyObject* object, void*) {
  return textOf(self(object).function->name);
}

PyObject* moduleOf(PyObject* object, void*) {
  const std::string& module = self(object).function->module;
  return textOf(module.empty() ? "orvex" : "orvex." + module);
}

PyObject* indexOf(PyObject* object, void*) {
  return PyLong_FromSize_t(self(object).index);
}

/// What orvex._docs makes of the function's description.
PyObject* fromDocs(PyObject* object, void* maker) {
  try {
    return helper("orvex._docs", static_cast<const char*>(maker))(describe(*self(object).function)).release().ptr();
  } catch (nb::python_error& error) {
    error.restore();
    return nullptr;
  }
}

PyObject* representation(PyObject* object) {
  const Function& function = *self(object).function;
  return PyUnicode_FromFormat("<function orvex.%s%s%s>", function.module.c_str(), function.module.empty() ? "" : ".",
                              function.name.c_str());
}

/// A function is pickled as its name, like those that Python itself has.
PyObject* reduce(PyObject* object, PyObject*) {
  return textOf(self(object).function->name);
}

/// Makes inspect and help take it for a routine.
PyObject* bind(PyObject* object, PyObject*, PyObject*) {
  return Py_NewRef(object);
}

PyMethodDef functionMethods[] = {
    {"columns", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&columns)), METH_FASTCALL | METH_KEYWORDS,
     "The call with plain arguments, giving columns in place of arrays."},
    {"__reduce__", &reduce, METH_NOARGS, nullptr},
    {},
};

char docstringMaker[] = "docstring";
char signatureMaker[] = "signature";

PyGetSetDef functionAttributes[] = {
    {"__name__", &nameOf, nullptr, nullptr, nullptr},
    {"__qualname__", &nameOf, nullptr, nullptr, nullptr},
    {"__module__", &moduleOf, nullptr, nullptr, nullptr},
    {"__doc__", &fromDocs, nullptr, nullptr, docstringMaker},
    {"__signature__", &fromDocs, nullptr, nullptr, signatureMaker},
    {"index", &indexOf, nullptr, "Its place in catalogue().", nullptr},
    {},
};

PyMemberDef functionMembers[] = {
    {"__vectorcalloffset__", T_PYSSIZET, offsetof(FunctionObject, call), READONLY, nullptr},
    {},
};

}  // namespace

int addFunctionType(PyObject* module) {
  PyType_Slot slots[] = {
      {Py_tp_dealloc, reinterpret_cast<void*>(&freeFunction)},
      {Py_tp_call, reinterpret_cast<void*>(&PyVectorcall_Call)},
      {Py_tp_repr, reinterpret_cast<void*>(&representation)},
      {Py_tp_descr_get, reinterpret_cast<void*>(&bind)},
      {Py_tp_methods, functionMethods},
      {Py_tp_getset, functionAttributes},
      {Py_tp_members, functionMembers},
      {},
  };
  PyType_Spec spec{
      "orvex._native.Function", sizeof(FunctionObject), 0,
      Py_TPFLAGS_DEFAULT | Py_TPFLAGS_IMMUTABLETYPE | Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_HAVE_VECTORCALL,
      slots};
  functionType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
  return functionType == nullptr ? -1 : PyModule_AddType(module, functionType);
}

PyObject* newFunction(std::size_t index) {
  const Function& function = functions().at(index);
  PyObject* object = functionType->tp_alloc(functionType, 0);
  if (object == nullptr) return nullptr;
  FunctionObject& made = self(object);
  made.call = &call;
  made.index = index;
  made.function = &function;
  made.names = new std::vector<PyObject*>();
  for (const Parameter& parameter : function.parameters) {
    made.names->push_back(PyUnicode_InternFromString(parameter.name.c_str()));
  }
  return object;
}

PyObject* newRefusal(const Function& function, const Refusal& refusal) {
  const Error& error = refusal.error;
  const auto text = [](std::string_view view) { return nb::str(view.data(), view.size()); };
  nb::object column = nb::none();
  nb::object record = nb::none();
  nb::object reason = nb::none();
  const bool hasCause = !(error.cause() == error.fault());
  if (error.record() != 0) record = nb::int_(error.record());
  if (hasCause) reason = text(withinSentence(error.cause().description));
  // What a gap makes of the rows behind it overflows at last; other errors before it have nothing to do with it, nor
  // have those of arguments, which have no cause.
  const bool isBehind = error.record() == 0 ? hasCause : refusal.gap && error.record() >= refusal.gap->row;
  if (refusal.gap && (isBehind || error.cause() == faults::Overflow)) {
    column = text(refusal.gap->column);
    record = nb::int_(refusal.gap->row);
    reason = text(refusal.gap->column + " has no value");
  }
  return helper("orvex._errors", "OrvexError")(error.number(), text(error.source()), text(error.description()), record,
                                               function.name.c_str(), column, reason)
      .release()
      .ptr();
}

void setRefusal(const Function& function, const Refusal& refusal) {
  try {
    const nb::object error = nb::steal(newRefusal(function, refusal));
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
  } catch (nb::python_error& error) {
    error.restore();
  }
}

PyObject* newValue(const Value& value) {
  if (const auto* truth = std::get_if<bool>(&value)) return PyBool_FromLong(*truth ? 1 : 0);
  if (const auto* number = std::get_if<double>(&value)) return PyFloat_FromDouble(*number);
  if (const auto* whole = std::get_if<Integer>(&value)) return PyLong_FromLong(whole->value());
  if (const auto* whole = std::get_if<std::int32_t>(&value)) return PyLong_FromLong(*whole);
  if (const auto* note = std::get_if<std::shared_ptr<Note>>(&value); note != nullptr && *note != nullptr) {
    const std::string text = (*note)->getNote();
    return helper("orvex._results", "Note")((*note)->getPeriod().value(), (*note)->getValue(),
                                            nb::str(text.data(), text.size()))
        .release()
        .ptr();
  }
  return Py_NewRef(Py_None);
}

bool readValue(const Function& function, const Parameter& parameter, PyObject* object, Value& value) {
  using catalogue::Type;
  const Argument& argument = function.method->arguments[parameter.argument];
  if (object == Py_None) {
    value = Missing{};
    return true;
  }
  if (argument.type == Type::String) {
    Py_ssize_t size = 0;
    const char* text = PyUnicode_CheckExact(object) ? PyUnicode_AsUTF8AndSize(object, &size) : nullptr;
    if (text == nullptr) return false;
    value = std::string(text, static_cast<std::size_t>(size));
    return true;
  }
  if (PyFloat_CheckExact(object) && argument.type == Type::Double) {
    value = PyFloat_AS_DOUBLE(object);
    return true;
  }
  if (PyUnicode_CheckExact(object) && !argument.choices.empty()) {
    Py_ssize_t size = 0;
    const char* text = PyUnicode_AsUTF8AndSize(object, &size);
    if (text == nullptr) return false;
    const auto code = catalogue::readChoice(argument, {text, static_cast<std::size_t>(size)});
    if (code) value = Integer(*code);
    return code.has_value();
  }
  if (!PyLong_CheckExact(object)) return false;
  int overflow = 0;
  const long long number = PyLong_AsLongLongAndOverflow(object, &overflow);
  if (argument.type == Type::Double) {
    value = PyLong_AsDouble(object);
    return PyErr_Occurred() == nullptr;
  }
  if (overflow != 0 || !std::in_range<std::int32_t>(number)) {
    PyErr_Format(PyExc_OverflowError, "%s must be a whole number from %d to %d", parameter.name.c_str(),
                 std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
    return false;
  }
  if (argument.type == Type::Long) {
    value = static_cast<std::int32_t>(number);
  } else {
    value = Integer(number);
  }
  return true;
}

bool readColumn(PyObject* object, Span& rows) {
  if (!PyArray_CheckExact(object)) return false;
  auto* array = reinterpret_cast<PyArrayObject*>(object);
  if (PyArray_NDIM(array) != 1 || PyArray_TYPE(array) != NPY_DOUBLE) return false;
  constexpr int plain = NPY_ARRAY_C_CONTIGUOUS | NPY_ARRAY_ALIGNED;
  if ((PyArray_FLAGS(array) & plain) != plain || PyArray_ISBYTESWAPPED(array)) return false;
  const npy_intp length = PyArray_DIM(array, 0);
  if (length >= std::numeric_limits<std::int32_t>::max()) return false;
  rows = {static_cast<const double*>(PyArray_DATA(array)), static_cast<std::size_t>(length)};
  return true;
}

}  // namespace orvex::python

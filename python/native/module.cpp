#define ORVEX_FILLS_NUMPY_TABLE
#include "native/numpy.h"

#include <nanobind/nanobind.h>
#include <nanobind/stl/string.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

#include "native/catalogue_data.h"
#include "native/column.h"
#include "native/function_object.h"
#include "native/groups.h"
#include "native/live.h"
#include "native/reader.h"

namespace nb = nanobind;

namespace orvex::python {

namespace {

/// The GNU library gives freed memory back to the system, and each call would then wait for the system to clear it
/// again, until blocks as large have once been freed that it had mapped by themselves; no block beyond 32 MB teaches it
/// that.
void keepFreedMemory() {
  constexpr std::size_t largest = (std::size_t{32} << 20) - (std::size_t{64} << 10);
  void* volatile block = std::malloc(largest);
  std::free(block);
}

/// The numbers of an array of int64 that stands in one piece.
std::span<const std::int64_t> wholeNumbers(nb::handle object) {
  if (!PyArray_CheckExact(object.ptr())) throw nb::type_error("not an array");
  auto* array = reinterpret_cast<PyArrayObject*>(object.ptr());
  if (PyArray_NDIM(array) != 1 || PyArray_TYPE(array) != NPY_INT64 || !PyArray_ISCARRAY_RO(array)) {
    throw nb::type_error("not an array of int64 in one piece");
  }
  return {static_cast<const std::int64_t*>(PyArray_DATA(array)), static_cast<std::size_t>(PyArray_DIM(array, 0))};
}

nb::tuple makeGroups(nb::handle codes, std::size_t count) {
  const std::span<const std::int64_t> numbers = wholeNumbers(codes);
  for (const std::int64_t code : numbers) {
    if (code >= static_cast<std::int64_t>(count)) throw nb::value_error("a code beyond the number of groups");
  }
  std::vector<std::int64_t> order;
  const std::vector<std::int64_t> offsets = groupRows(numbers, count, order);
  return nb::make_tuple(order.empty() ? nb::none() : arrayOf(order, NPY_INT64), arrayOf(offsets, NPY_INT64));
}

/// A study of run_groups: a function and its plain arguments by name, on columns of `rows` rows.
Study readStudy(nb::handle function, nb::dict arguments, std::size_t rows, nb::list results) {
  const Function& called = functions().at(nb::cast<std::size_t>(function.attr("index")));
  Study study{Request(called), {}};
  study.request.count = rows;
  const catalogue::Method& method = *called.method;
  for (const Parameter& parameter : called.parameters) {
    const nb::object name = nb::str(parameter.name.c_str());
    if (!arguments.contains(name)) continue;
    const nb::object value = arguments[name];
    switch (parameter.kind) {
      case Parameter::Kind::Column:
      case Parameter::Kind::Price: {
        Span& column = parameter.kind == Parameter::Kind::Column ? study.request.columns[parameter.argument]
                                                                 : study.request.prices[parameter.argument].emplace();
        if (!readColumn(value.ptr(), column) || column.size() != rows) throw nb::type_error("not a plain column");
        break;
      }
      case Parameter::Kind::WarmUp:
        study.request.keepWarmUp = nb::cast<std::string>(value) == "zero";
        break;
      default:
        if (!readValue(called, parameter, value.ptr(), study.request.values[parameter.argument])) {
          if (PyErr_Occurred() != nullptr) throw nb::python_error();
          throw nb::type_error("not a plain argument");
        }
    }
  }
  nb::list columns;
  for (std::size_t c = 0; c < method.columns.size(); ++c) {
    auto length = static_cast<npy_intp>(rows);
    const nb::object array = nb::steal(PyArray_SimpleNew(1, &length, NPY_DOUBLE));
    if (!array.is_valid()) throw nb::python_error();
    study.results.push_back(static_cast<double*>(PyArray_DATA(reinterpret_cast<PyArrayObject*>(array.ptr()))));
    columns.append(array);
  }
  results.append(columns);
  return study;
}

/// Throws for groups that lie outside `rows` rows: their threads read and write without looking.
void checkGroups(const Groups& groups, std::size_t rows) {
  if (groups.offsets.empty() || groups.offsets.front() < 0 || !std::ranges::is_sorted(groups.offsets)) {
    throw nb::value_error("offsets that do not rise from 0");
  }
  const std::size_t placed = groups.order.empty() ? rows : groups.order.size();
  if (std::cmp_greater(groups.offsets.back(), placed)) throw nb::value_error("groups of more rows than there are");
  const auto outside = [&](std::int64_t row) { return row < 0 || std::cmp_greater_equal(row, rows); };
  if (std::ranges::any_of(groups.order, outside)) throw nb::value_error("a row that is not there");
}

/// Makes the studies, pairs of a function and its arguments, for every group. `tick(done)` is called ten times a second
/// with the number of groups that are done; what it raises, and an interrupt, ends the run. Returns the result columns
/// of each study, in which rows of no group are not written, and the failures: group, study and error.
nb::tuple runGroups(nb::list pairs, std::size_t rows, nb::object order, nb::object offsets, std::size_t threads,
                    nb::object tick) {
  constexpr std::chrono::milliseconds Tick{100};
  Groups groups{{}, wholeNumbers(offsets)};
  if (!order.is_none()) groups.order = wholeNumbers(order);
  checkGroups(groups, rows);
  if (threads == 0) throw nb::value_error("groups are computed on one thread or more");
  nb::list results;
  std::vector<Study> studies;
  for (const nb::handle pair : pairs) {
    studies.push_back(readStudy(pair[0], nb::cast<nb::dict>(pair[1]), rows, results));
  }
  std::vector<Failure> failures;
  {
    GroupRun run(studies, groups, threads);
    for (bool done = false; !done;) {
      {
        nb::gil_scoped_release others;
        done = run.waitFor(Tick);
      }
      if (!done && PyErr_CheckSignals() == 0) {
        nb::object ticked =
            nb::steal(PyObject_CallFunction(tick.ptr(), "n", static_cast<Py_ssize_t>(run.groupsDone())));
      }
      if (PyErr_Occurred() != nullptr) {
        nb::python_error stopped;
        nb::gil_scoped_release others;
        run.stop();
        throw stopped;
      }
    }
    failures = run.failures();
  }
  nb::list failed;
  for (const Failure& failure : failures) {
    failed.append(nb::make_tuple(failure.group, failure.study,
                                 nb::steal(newRefusal(*studies[failure.study].request.function, failure.refusal))));
  }
  return nb::make_tuple(results, failed);
}

nb::tuple allFunctions() {
  nb::list all;
  for (std::size_t i = 0; i < functions().size(); ++i) all.append(nb::steal(newFunction(i)));
  return nb::tuple(all);
}

void* fillNumpyTable() {
  import_array1(nullptr);
  return orvex_numpy;
}

}  // namespace

}  // namespace orvex::python

NB_MODULE(_native, module) {
  using namespace orvex::python;
  if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
    throw nb::import_error("orvex works in the main interpreter only, as NumPy does");
  }
  if (fillNumpyTable() == nullptr || addColumnType(module.ptr()) != 0 || addFunctionType(module.ptr()) != 0) {
    throw nb::python_error();
  }
  keepFreedMemory();
  module.attr("FUNCTIONS") = allFunctions();
  addReader(module);
  addLive(module);
  module.def(
      "describe", [](std::size_t index) { return describe(functions().at(index)); },
      "The description of a function as plain data.");
  module.def("make_groups", &makeGroups, "Which rows bear each code: their order, or None, and the groups' offsets.");
  module.def("run_groups", &runGroups, nb::arg("studies"), nb::arg("rows"), nb::arg("order").none(), nb::arg("offsets"),
             nb::arg("threads"), nb::arg("tick"), "Makes studies for each group of rows.");
}

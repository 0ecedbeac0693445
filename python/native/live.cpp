#include "native/live.h"

#include "native/numpy.h"

#include <nanobind/stl/string.h>
#include <nanobind/stl/string_view.h>

#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "native/function_object.h"
#include "orvex/live/live_series.h"

namespace nb = nanobind;

namespace orvex::python {

namespace {

constexpr double NotComputed = std::numeric_limits<double>::quiet_NaN();
constexpr const char* PriceNames[] = {"open", "high", "low", "close", "volume"};

/// A result with the function that it is of.
struct Kept {
  std::shared_ptr<const LiveResult> result;
  const Function* function;
};

/// Hands over the columns of a mapping: prices, which are arrays of doubles in one piece, and dates, which are texts.
template <class Use>
void withRows(nb::dict columns, Use&& use) {
  PriceRows rows;
  Rows<double> PriceRows::*const places[] = {&PriceRows::open, &PriceRows::high, &PriceRows::low, &PriceRows::close,
                                             &PriceRows::volume};
  for (std::size_t i = 0; i < std::size(places); ++i) {
    if (!columns.contains(PriceNames[i])) continue;
    Span column;
    if (!readColumn(nb::object(columns[PriceNames[i]]).ptr(), column)) throw nb::type_error("not a plain column");
    (rows.*places[i]).values = column;
  }
  std::vector<std::string_view> dates;
  if (columns.contains("date")) {
    for (const nb::handle text : nb::cast<nb::list>(nb::object(columns["date"]))) {
      Py_ssize_t size = 0;
      const char* const characters = PyUnicode_AsUTF8AndSize(text.ptr(), &size);
      if (characters == nullptr) throw nb::python_error();
      dates.emplace_back(characters, static_cast<std::size_t>(size));
    }
  }
  rows.dates.values = dates;
  use(rows);
}

LiveValue valueOf(nb::handle object) {
  if (PyUnicode_Check(object.ptr())) return nb::cast<std::string>(object);
  if (PyTuple_Check(object.ptr())) {
    return LiveColumn{nb::cast<const Kept&>(object[0]).result, nb::cast<std::size_t>(object[1])};
  }
  return nb::cast<double>(object);
}

Kept keep(LiveSeries& series, nb::handle function, nb::dict arguments) {
  const Function& kept = functions().at(nb::cast<std::size_t>(function.attr("index")));
  std::vector<LiveSeries::Argument> given;
  for (const Parameter& parameter : kept.parameters) {
    if (!arguments.contains(parameter.name.c_str())) continue;
    given.emplace_back(kept.method->arguments[parameter.argument].name,
                       valueOf(nb::object(arguments[parameter.name.c_str()])));
  }
  try {
    return {series.keep(std::string(kept.owner->name).append(".").append(kept.method->name), given), &kept};
  } catch (const Error& error) {
    setRefusal(kept, {error, std::nullopt});
    throw nb::python_error();
  }
}

/// A view of a column's rows, which keeps them and cannot be written.
nb::object viewOf(const Kept& kept, std::size_t column) {
  const Rows<double> rows = kept.result->columns()[column]->rows();
  auto length = static_cast<npy_intp>(rows.values.size());
  nb::object array =
      nb::steal(PyArray_SimpleNewFromData(1, &length, NPY_DOUBLE, const_cast<double*>(rows.values.data())));
  if (!array.is_valid()) throw nb::python_error();
  auto* owner = new std::shared_ptr<const void>(rows.owner);
  nb::capsule keeper(owner, [](void* held) noexcept { delete static_cast<std::shared_ptr<const void>*>(held); });
  auto* made = reinterpret_cast<PyArrayObject*>(array.ptr());
  if (PyArray_SetBaseObject(made, keeper.release().ptr()) != 0) throw nb::python_error();
  PyArray_CLEARFLAGS(made, NPY_ARRAY_WRITEABLE);
  return array;
}

nb::object errorOf(const Kept& kept) {
  if (!kept.result->error()) return nb::none();
  nb::object error = nb::steal(newRefusal(*kept.function, {*kept.result->error(), std::nullopt}));
  if (!error.is_valid()) throw nb::python_error();
  return error;
}

/// What a change raises, if anything, as an exception of Python.
template <class Change>
void change(Change body) {
  try {
    body();
  } catch (const Error& error) {
    PyErr_SetString(PyExc_ValueError, error.what());
    throw nb::python_error();
  }
}

}  // namespace

void addLive(nb::module_& module) {
  nb::class_<Kept>(module, "LiveResult", "The result of a call that is kept on a live series.")
      .def_prop_ro("count", [](const Kept& kept) { return kept.result->count(); })
      .def_prop_ro("columns", [](const Kept& kept) { return kept.result->columns().size(); })
      .def_prop_ro("error", &errorOf)
      .def("array", &viewOf)
      .def("last", [](const Kept& kept, std::size_t column) { return kept.result->last(column); });
  nb::class_<LiveSeries>(module, "LiveSeries", "Prices that grow, and calls that are kept on them.")
      .def("__init__",
           [](LiveSeries* series, nb::dict columns) {
             change([&] {
               if (columns.size() == 0) {
                 new (series) LiveSeries(NotComputed);
               } else {
                 withRows(columns, [&](const PriceRows& rows) { new (series) LiveSeries(rows, NotComputed); });
               }
             });
           })
      .def_prop_ro("count", &LiveSeries::count)
      .def("keep", &keep)
      .def("drop", [](LiveSeries& series, const Kept& kept) { change([&] { series.drop(kept.result); }); })
      .def("append_rows",
           [](LiveSeries& series, nb::dict columns) {
             change([&] { withRows(columns, [&](const PriceRows& rows) { series.append(rows); }); });
           })
      .def("append",
           [](LiveSeries& series, double open, double high, double low, double close, double volume,
              std::string_view date) {
             change([&] { series.append(PriceRecord{open, high, low, close, volume, date}); });
           })
      .def("revise", [](LiveSeries& series, double open, double high, double low, double close, double volume,
                        std::string_view date) {
        change([&] { series.revise(PriceRecord{open, high, low, close, volume, date}); });
      });
}

}  // namespace orvex::python

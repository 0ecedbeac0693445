#include "native/reader.h"

#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "native/numpy.h"
#include "orvex/prices/price_reader.h"

namespace nb = nanobind;

namespace orvex::python {

namespace {

nb::object textOf(std::string_view text) {
  nb::object object = nb::steal(PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
  if (!object.is_valid()) throw nb::python_error();
  return object;
}

nb::list textsOf(const std::vector<std::string_view>& texts) {
  nb::list list;
  for (const std::string_view text : texts) list.append(textOf(text));
  return list;
}

prices::Options readOptions(nb::dict given) {
  const auto text = [&](const char* name) -> std::optional<std::string> {
    const nb::object value = given[name];
    return value.is_none() ? std::nullopt : std::optional(nb::cast<std::string>(value));
  };
  prices::Options options;
  options.delimiter = text("delimiter");
  if (const auto decimal = text("decimal")) options.decimal = decimal->front();
  if (text("order") == "keep") options.order = prices::Order::Keep;
  if (text("missing") == "skip") options.missing = prices::Missing::Skip;
  if (text("missing") == "previous") options.missing = prices::Missing::Previous;
  options.from = text("first");
  options.to = text("last");
  if (!nb::object(given["tail"]).is_none()) options.tail = nb::cast<std::size_t>(given["tail"]);
  for (const auto& [role, column] : nb::cast<nb::dict>(given["columns"])) {
    const auto known = prices::roleNamed(nb::cast<std::string>(role));
    if (!known) throw nb::value_error("columns= names date, open, high, low, close and volume");
    options.columns.push_back({*known, nb::cast<std::string>(nb::str(column))});
  }
  return options;
}

nb::tuple readPrices(nb::bytes bytes, nb::dict options) {
  const prices::Options chosen = readOptions(options);
  prices::PriceTable table;
  std::optional<prices::ReadError> error;
  {
    std::string text(bytes.c_str(), bytes.size());
    nb::gil_scoped_release others;
    try {
      table = prices::read(std::move(text), chosen);
    } catch (const prices::ReadError& caught) {
      error = caught;
    }
  }
  if (error) {
    const Fault& fault = error->fault();
    const nb::object made =
        nb::module_::import_("orvex._errors")
            .attr("OrvexError")(fault.number, textOf(fault.source), textOf(error->what()), nb::none(), "read");
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(made.ptr())), made.ptr());
    throw nb::python_error();
  }
  nb::object dates = nb::none();
  nb::list columns;
  for (const prices::PriceColumn& column : table.columns) {
    if (column.role == prices::Role::Date) {
      dates = table.times.empty() ? nb::object(textsOf(column.texts)) : arrayOf(table.times, NPY_INT64);
    } else {
      columns.append(nb::make_tuple(textOf(column.name), column.isText() ? nb::object(textsOf(column.texts))
                                                                         : arrayOf(column.numbers, NPY_DOUBLE)));
    }
  }
  nb::list remarks;
  for (const std::string& remark : table.remarks) remarks.append(textOf(remark));
  return nb::make_tuple(dates, columns, remarks);
}

}  // namespace

void addReader(nb::module_& module) {
  module.def("read_prices", &readPrices, "A price file as dates, columns and remarks.");
}

}  // namespace orvex::python

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/description.h"

/// The library's calculations as functions of Python: names, parameters and what stands for one that is left out.
namespace orvex::python {

/// One parameter of a function.
struct Parameter {
  enum class Kind {
    Prices,  // a frame or mapping of price columns
    Column,  // one column; a frame gives its usual one
    Price,   // one of the price columns, by keyword, in place of the frame
    Whole,   // a whole number, or the name of a choice
    Real,    // a number
    Alias,   // the name of the result's column
    By,      // the column whose values part the rows into symbols
    WarmUp,  // what stands in rows that are not computed
    Errors,  // what becomes of a symbol that cannot be computed
  };

  Kind kind;
  std::string name;
  std::size_t argument = 0;  // its place in the method's arguments; of a Price its place among the prices
  bool keywordOnly = false;
};

struct Function {
  const catalogue::Class* owner;
  const catalogue::Method* method;
  std::string name;    // snake_case
  std::string module;  // within the package; empty for the package itself
  std::vector<Parameter> parameters;
  std::vector<catalogue::ColumnRows> computedRows;  // of each column of the result
  std::shared_ptr<void> object;                     // a calculator, which any number of calls may share
  bool takesColumns = false;

  bool makesColumns() const { return method->result == catalogue::Type::RecordSet; }
};

/// All of them, in the order of the catalogue.
const std::vector<Function>& functions();

/// The name of a column of the result, with the default name where it follows the alias and none is given.
std::string columnTitle(const Function& function, const catalogue::Column& column, std::string_view alias = {});

/// Such a name as that of an attribute: "DI+" becomes "di_plus", "%K" becomes "k".
std::string attributeName(std::string_view name);

}  // namespace orvex::python

#pragma once

#include <tuple>

#include "orvex/catalogue/describe.h"
#include "orvex/data/field.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Field> {
  static constexpr Identity identity{
      .name = "Field",
      .help = "A named column: a number and a text a record, and one note.",
      .classId = Guid("2c909018-7872-4221-8053-de17d4075c97"),
      .interfaceId = Guid("5e5135e1-6119-4b9d-9219-94ad0a99a9d2"),
      .holdsState = true,
  };

  static constexpr Argument RowIndex{"RowIndex", "The row, from 1 (the oldest record)."};

  static constexpr auto rows = std::tuple{
      row<&Field::setNote>("setNote", "Attaches a note, the object itself.", {{"NewNote", "The note."}}),
      row<&Field::getNote>("getNote", "The attached note, or nothing."),
      row<&Field::getRecordCount>("getRecordCount", "The number of rows that initialize was given."),
      row<&Field::initialize>("initialize", "Makes new rows, all 0 and empty, and attaches a new note.",
                              {{"RecordCount", "How many rows; at least 1."}, {"Name", "The column's name."}}, {},
                              {faults::SubscriptOutOfRange}),
      row<&Field::destroy>("destroy", "Frees the rows; name, count and note stay."),
      row<&Field::setName>("setName", "Replaces the name.", {{"NewFieldName", "The new name."}}),
      row<&Field::getName>("getName", "The name."),
      row<&Field::setValue>("setValue", "Stores a number in a row.", {RowIndex, {"Value", "The number."}}, {},
                            {Field::setValueFault}),
      row<&Field::getValue>("getValue", "The number in a row.", {RowIndex}, {}, {Field::getValueFault}),
      row<&Field::getDoubleArray>("getDoubleArray", "A copy of all numbers, lower bound 1."),
      row<&Field::getStringArray>("getStringArray", "A copy of all texts, lower bound 1."),
      row<&Field::setStrValue>("setStrValue", "Stores a text in a row.", {RowIndex, {"Value", "The text."}}, {},
                               {Field::setStrValueFault}),
      row<&Field::getStrValue>("getStrValue", "The text in a row.", {RowIndex}, {}, {Field::getStrValueFault}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

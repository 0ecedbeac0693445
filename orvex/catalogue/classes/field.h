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
      .header = "orvex/data/field.h",
      .classId = Guid("2c909018-7872-4221-8053-de17d4075c97"),
      .interfaceId = Guid("5e5135e1-6119-4b9d-9219-94ad0a99a9d2"),
      .holdsState = true,
  };

  static constexpr Argument RowIndex{"RowIndex", "The row, from 1 (the oldest record)."};

  static constexpr auto rows = std::tuple{
      row<&Field::setNote>(
          {.name = "setNote", .help = "Attaches a note, the object itself.", .arguments = {{"NewNote", "The note."}}}),
      row<&Field::getNote>({.name = "getNote", .help = "The attached note, or nothing."}),
      row<&Field::getRecordCount>({.name = "getRecordCount", .help = "The number of rows that initialize was given."}),
      row<&Field::initialize>(
          {.name = "initialize",
           .help = "Makes new rows, all 0 and empty, and attaches a new note.",
           .arguments = {{"RecordCount", "How many rows; at least 1."}, {"Name", "The column's name."}},
           .faults = {faults::SubscriptOutOfRange}}),
      row<&Field::destroy>({.name = "destroy", .help = "Frees the rows; name, count and note stay."}),
      row<&Field::setName>(
          {.name = "setName", .help = "Replaces the name.", .arguments = {{"NewFieldName", "The new name."}}}),
      row<&Field::getName>({.name = "getName", .help = "The name."}),
      row<&Field::setValue>({.name = "setValue",
                             .help = "Stores a number in a row.",
                             .arguments = {RowIndex, {"Value", "The number."}},
                             .faults = {Field::setValueFault}}),
      row<&Field::getValue>({.name = "getValue",
                             .help = "The number in a row.",
                             .arguments = {RowIndex},
                             .faults = {Field::getValueFault}}),
      row<&Field::getDoubleArray>({.name = "getDoubleArray", .help = "A copy of all numbers, lower bound 1."}),
      row<&Field::getStringArray>({.name = "getStringArray", .help = "A copy of all texts, lower bound 1."}),
      row<&Field::setStrValue>({.name = "setStrValue",
                                .help = "Stores a text in a row.",
                                .arguments = {RowIndex, {"Value", "The text."}},
                                .faults = {Field::setStrValueFault}}),
      row<&Field::getStrValue>({.name = "getStrValue",
                                .help = "The text in a row.",
                                .arguments = {RowIndex},
                                .faults = {Field::getStrValueFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

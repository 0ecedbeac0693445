#pragma once

#include <tuple>

#include "orvex/catalogue/describe.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<RecordSet> {
  static constexpr Identity identity{
      .name = "RecordSet",
      .help = "An ordered collection of fields, found by name without regard to case.",
      .header = "orvex/data/record_set.h",
      .classId = Guid("0af4f828-0466-4bed-85e7-344cddac5949"),
      .interfaceId = Guid("7774a101-49d1-4daa-a835-3f248fba7d8a"),
      .holdsState = true,
  };

  static constexpr Argument FieldName{"FieldName", "The field's name; of two of one name the first is meant."};
  static constexpr Argument RowIndex{"RowIndex", "The row, from 1."};

  static constexpr auto rows = std::tuple{
      row<&RecordSet::setDatabase>({.name = "setDatabase",
                                    .help = "Keeps a reference to a database.",
                                    .arguments = {{"NewDatabase", "The database."}}}),
      row<&RecordSet::getDatabase>({.name = "getDatabase", .help = "The database that was set, or nothing."}),
      row<&RecordSet::addField>({.name = "addField",
                                 .help = "Appends a field, the object itself.",
                                 .arguments = {{"NewField", "The field."}},
                                 .faults = {faults::Overflow}}),
      row<&RecordSet::renameField>(
          {.name = "renameField",
           .help = "Gives a field another name.",
           .arguments = {{"OldFieldName", "Its name so far."}, {"NewFieldName", "Its new name."}},
           .faults = {RecordSet::renameFieldFault}}),
      row<&RecordSet::removeField>({.name = "removeField",
                                    .help = "Removes a field; the others keep their order.",
                                    .arguments = {FieldName},
                                    .faults = {RecordSet::removeFieldFault}}),
      row<&RecordSet::getValue>({.name = "getValue",
                                 .help = "The number in a row of a field.",
                                 .arguments = {FieldName, RowIndex},
                                 .faults = {RecordSet::getValueFault}}),
      row<&RecordSet::setValue>({.name = "setValue",
                                 .help = "Stores a number in a row of a field.",
                                 .arguments = {FieldName, RowIndex, {"Value", "The number."}},
                                 .faults = {RecordSet::setValueFault}}),
      row<&RecordSet::getField>({.name = "getField",
                                 .help = "The field of a name, the object itself.",
                                 .arguments = {FieldName},
                                 .faults = {RecordSet::getFieldFault}}),
      row<&RecordSet::getIndex>({.name = "getIndex",
                                 .help = "The position of the field of a name, from 1.",
                                 .arguments = {FieldName},
                                 .faults = {RecordSet::getIndexFault, faults::ObjectNotSet}}),
      row<&RecordSet::getName>({.name = "getName",
                                .help = "The name of the field at a position.",
                                .arguments = {{"FieldIndex", "The position, from 1."}},
                                .faults = {RecordSet::getNameFault}}),
      row<&RecordSet::getFieldCount>({.name = "getFieldCount", .help = "The number of fields."}),
      row<&RecordSet::isValidField>(
          {.name = "isValidField", .help = "Tells whether there is a field of that name.", .arguments = {FieldName}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

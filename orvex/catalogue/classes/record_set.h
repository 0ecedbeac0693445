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
      .classId = Guid("0af4f828-0466-4bed-85e7-344cddac5949"),
      .interfaceId = Guid("7774a101-49d1-4daa-a835-3f248fba7d8a"),
      .holdsState = true,
  };

  static constexpr Argument FieldName{"FieldName", "The field's name; of two of one name the first is meant."};
  static constexpr Argument RowIndex{"RowIndex", "The row, from 1."};

  static constexpr auto rows = std::tuple{
      row<&RecordSet::setDatabase>("setDatabase", "Keeps a reference to a database.",
                                   {{"NewDatabase", "The database."}}),
      row<&RecordSet::getDatabase>("getDatabase", "The database that was set, or nothing."),
      row<&RecordSet::addField>("addField", "Appends a field, the object itself.", {{"NewField", "The field."}}, {},
                                {faults::Overflow}),
      row<&RecordSet::renameField>("renameField", "Gives a field another name.",
                                   {{"OldFieldName", "Its name so far."}, {"NewFieldName", "Its new name."}}, {},
                                   {RecordSet::renameFieldFault}),
      row<&RecordSet::removeField>("removeField", "Removes a field; the others keep their order.", {FieldName}, {},
                                   {RecordSet::removeFieldFault}),
      row<&RecordSet::getValue>("getValue", "The number in a row of a field.", {FieldName, RowIndex}, {},
                                {RecordSet::getValueFault}),
      row<&RecordSet::setValue>("setValue", "Stores a number in a row of a field.",
                                {FieldName, RowIndex, {"Value", "The number."}}, {}, {RecordSet::setValueFault}),
      row<&RecordSet::getField>("getField", "The field of a name, the object itself.", {FieldName}, {},
                                {RecordSet::getFieldFault}),
      row<&RecordSet::getIndex>("getIndex", "The position of the field of a name, from 1.", {FieldName}, {},
                                {RecordSet::getIndexFault, faults::ObjectNotSet}),
      row<&RecordSet::getName>("getName", "The name of the field at a position.",
                               {{"FieldIndex", "The position, from 1."}}, {}, {RecordSet::getNameFault}),
      row<&RecordSet::getFieldCount>("getFieldCount", "The number of fields."),
      row<&RecordSet::isValidField>("isValidField", "Tells whether there is a field of that name.", {FieldName}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

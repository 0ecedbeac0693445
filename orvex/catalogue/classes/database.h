#pragma once

#include <tuple>

#include "orvex/catalogue/describe.h"
#include "orvex/data/database.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Database> {
  static constexpr Identity identity{
      .name = "Database",
      .help = "A price series with its six columns, record count and cursor.",
      .classId = Guid("78db5049-c7de-4920-8574-a201c474f1a6"),
      .interfaceId = Guid("9f67ed0e-0a9a-471b-8e50-afb7d12029ee"),
      .holdsState = true,
  };

  /// A loader's description is that of the fault that it met.
  static constexpr Fault loadFault = Database::loadFault("");

  static constexpr auto rows = std::tuple{
      row<&Database::RecordsetCache>("RecordsetCache", "Adopts a set that holds the six price fields.",
                                     {{"NewRecordset", "The set of Date, Open, High, Low, Close and Volume."}}, {},
                                     {RecordSet::getFieldFault, faults::ObjectNotSet}, Kind::PropertyPutReference),
      row<&Database::getRecordset>("getRecordset", "The set of the price fields, the object itself."),
      row<&Database::getRecordCount>("getRecordCount", "The number of records."),
      row<&Database::setPosition>("setPosition", "Moves the cursor to a record, or one past the last.",
                                  {{"Index", "The record, from 1."}}, {}, {Database::BeginOfFile, Database::EndOfFile}),
      row<&Database::getPosition>("getPosition", "The record that the cursor stands on."),
      row<&Database::MoveNext>("MoveNext", "Moves the cursor to the next record.", {}, {},
                               {Database::EndOfFile, faults::Overflow}),
      row<&Database::MovePrevious>("MovePrevious", "Moves the cursor to the record before.", {}, {},
                                   {Database::BeginOfFile, Database::EndOfFile}),
      row<&Database::MoveFirst>("MoveFirst", "Moves the cursor to record 1.", {}, {}, {}),
      row<&Database::MoveLast>("MoveLast", "Moves the cursor to the last record.", {}, {}, {Database::BeginOfFile}),
      row<&Database::OpenDataBase>(
          "OpenDataBase", "Loads a text file of one record a line, without a header line.",
          {{"filename", "The file."}, {"Delimiter", "What stands between date, open, high, low, close and volume."}},
          {}, {loadFault}),
      row<&Database::OpenDatabaseByArray>("OpenDatabaseByArray", "Loads one array into all price columns.",
                                          {{"Ary", "The prices; element 1 is the first record."}}, {}, {loadFault}),
      row<&Database::OpenDatabaseByFourArrays>("OpenDatabaseByFourArrays",
                                               "Loads four arrays; the volume is a copy of the closes.",
                                               {{"OpenAry", "The opens; their upper bound is the record count."},
                                                {"HighAry", "The highs."},
                                                {"LowAry", "The lows."},
                                                {"CloseAry", "The closes."}},
                                               {}, {loadFault}),
      row<&Database::CloseDatabase>("CloseDatabase", "Lets go of the set of fields."),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

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
      .header = "orvex/data/database.h",
      .classId = Guid("78db5049-c7de-4920-8574-a201c474f1a6"),
      .interfaceId = Guid("9f67ed0e-0a9a-471b-8e50-afb7d12029ee"),
      .holdsState = true,
  };

  /// A loader's description is that of the fault that it met.
  static constexpr Fault loadFault = Database::loadFault("");

  static constexpr auto rows = std::tuple{
      row<&Database::RecordsetCache>(
          {.name = "RecordsetCache",
           .help = "Adopts a set that holds the six price fields.",
           .arguments = {{"NewRecordset", "The set of Date, Open, High, Low, Close and Volume."}},
           .faults = {RecordSet::getFieldFault, faults::ObjectNotSet},
           .kind = Kind::PropertyPutReference}),
      row<&Database::getRecordset>({.name = "getRecordset", .help = "The set of the price fields, the object itself."}),
      row<&Database::getRecordCount>({.name = "getRecordCount", .help = "The number of records."}),
      row<&Database::setPosition>({.name = "setPosition",
                                   .help = "Moves the cursor to a record, or one past the last.",
                                   .arguments = {{"Index", "The record, from 1."}},
                                   .faults = {Database::BeginOfFile, Database::EndOfFile}}),
      row<&Database::getPosition>({.name = "getPosition", .help = "The record that the cursor stands on."}),
      row<&Database::MoveNext>({.name = "MoveNext",
                                .help = "Moves the cursor to the next record.",
                                .faults = {Database::EndOfFile, faults::Overflow}}),
      row<&Database::MovePrevious>({.name = "MovePrevious",
                                    .help = "Moves the cursor to the record before.",
                                    .faults = {Database::BeginOfFile, Database::EndOfFile}}),
      row<&Database::MoveFirst>(
          {.name = "MoveFirst", .help = "Moves the cursor to record 1.", .faults = {Database::EndOfFile}}),
      row<&Database::MoveLast>(
          {.name = "MoveLast", .help = "Moves the cursor to the last record.", .faults = {Database::BeginOfFile}}),
      row<&Database::OpenDataBase>(
          {.name = "OpenDataBase",
           .help = "Loads a text file of one record a line, without a header line.",
           .arguments = {{"filename", "The file."},
                         {"Delimiter", "What stands between date, open, high, low, close and volume."}},
           .faults = {loadFault}}),
      row<&Database::OpenDatabaseByArray>({.name = "OpenDatabaseByArray",
                                           .help = "Loads one array into all price columns.",
                                           .arguments = {{"Ary", "The prices; element 1 is the first record."}},
                                           .faults = {loadFault}}),
      row<&Database::OpenDatabaseByFourArrays>(
          {.name = "OpenDatabaseByFourArrays",
           .help = "Loads four arrays; the volume is a copy of the closes.",
           .arguments = {{"OpenAry", "The opens; their upper bound is the record count."},
                         {"HighAry", "The highs."},
                         {"LowAry", "The lows."},
                         {"CloseAry", "The closes."}},
           .faults = {loadFault}}),
      row<&Database::CloseDatabase>({.name = "CloseDatabase", .help = "Lets go of the set of fields."}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

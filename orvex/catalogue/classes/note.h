#pragma once

#include <tuple>

#include "orvex/catalogue/describe.h"
#include "orvex/data/note.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Note> {
  static constexpr Identity identity{
      .name = "Note",
      .help = "A point of a series: a period, a value and a text.",
      .header = "orvex/data/note.h",
      .classId = Guid("9d0fde10-191d-4fea-bfc0-3d23f4173bff"),
      .interfaceId = Guid("9b8747fa-586c-4b19-bdb5-8337ca2d0481"),
      .holdsState = true,
  };

  static constexpr auto rows = std::tuple{
      row<&Note::setPeriod>(
          {.name = "setPeriod", .help = "Sets the period.", .arguments = {{"Period", "A record number."}}}),
      row<&Note::setValue>({.name = "setValue", .help = "Sets the value.", .arguments = {{"Value", "A number."}}}),
      row<&Note::setNote>({.name = "setNote", .help = "Sets the text.", .arguments = {{"Note", "A text."}}}),
      row<&Note::getPeriod>({.name = "getPeriod", .help = "The period."}),
      row<&Note::getValue>({.name = "getValue", .help = "The value."}),
      row<&Note::getNote>({.name = "getNote", .help = "The text."}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue

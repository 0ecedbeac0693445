#include "orvex/prices/column_words.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

#include "orvex/data/text.h"
#include "orvex/prices/text_encoding.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

struct Word {
  std::string_view text;
  Role role;
  int distance;
};

constexpr Word words[] = {
    {"date", Role::Date, 0},
    {"datetime", Role::Date, 1},
    {"date time", Role::Date, 1},
    {"timestamp", Role::Date, 1},
    {"trade date", Role::Date, 1},
    {"trading day", Role::Date, 1},
    {"day", Role::Date, 1},
    {"datum", Role::Date, 1},
    {"fecha", Role::Date, 1},
    {"open time", Role::Date, 1},
    {"unix", Role::Date, 2},
    {"unix timestamp", Role::Date, 2},
    {"time", Role::Clock, 1},
    {"uhrzeit", Role::Clock, 1},
    {"zeit", Role::Clock, 1},
    {"heure", Role::Clock, 1},
    {"hora", Role::Clock, 1},
    {"open", Role::Open, 0},
    {"open price", Role::Open, 1},
    {"opening price", Role::Open, 1},
    {"o", Role::Open, 1},
    {"er\xC3\xB6"
     "ffnung",
     Role::Open, 1},
    {"er\xC3\xB6"
     "ffnungskurs",
     Role::Open, 1},
    {"er\xC3\xB6"
     "ffn",
     Role::Open, 1},
    {"eroeffnung", Role::Open, 1},
    {"erster", Role::Open, 1},
    {"ouverture", Role::Open, 1},
    {"ouv", Role::Open, 1},
    {"apertura", Role::Open, 1},
    {"high", Role::High, 0},
    {"high price", Role::High, 1},
    {"h", Role::High, 1},
    {"hoch", Role::High, 1},
    {"h\xC3\xB6"
     "chst",
     Role::High, 1},
    {"h\xC3\xB6"
     "chstkurs",
     Role::High, 1},
    {"hoechst", Role::High, 1},
    {"tageshoch", Role::High, 1},
    {"plus haut", Role::High, 1},
    {"haut", Role::High, 1},
    {"m\xC3\xA1ximo", Role::High, 1},
    {"maximo", Role::High, 1},
    {"low", Role::Low, 0},
    {"low price", Role::Low, 1},
    {"l", Role::Low, 1},
    {"tief", Role::Low, 1},
    {"tiefst", Role::Low, 1},
    {"tiefstkurs", Role::Low, 1},
    {"tagestief", Role::Low, 1},
    {"plus bas", Role::Low, 1},
    {"bas", Role::Low, 1},
    {"m\xC3\xADnimo", Role::Low, 1},
    {"minimo", Role::Low, 1},
    {"close", Role::Close, 0},
    {"close/last", Role::Close, 1},
    {"close price", Role::Close, 1},
    {"closing price", Role::Close, 1},
    {"c", Role::Close, 1},
    {"schluss", Role::Close, 1},
    {"schlu\xC3\x9F", Role::Close, 1},
    {"schlusskurs", Role::Close, 1},
    {"schlu\xC3\x9Fkurs", Role::Close, 1},
    {"cl\xC3\xB4ture", Role::Close, 1},
    {"cloture", Role::Close, 1},
    {"cierre", Role::Close, 1},
    {"last", Role::Close, 2},
    {"last price", Role::Close, 2},
    {"price", Role::Close, 2},
    {"adj close", Role::Close, 2},
    {"adjusted close", Role::Close, 2},
    {"settle", Role::Close, 2},
    {"letzter", Role::Close, 2},
    {"zuletzt", Role::Close, 2},
    {"dernier", Role::Close, 2},
    {"\xC3\xBAltimo", Role::Close, 2},
    {"ultimo", Role::Close, 2},
    {"volume", Role::Volume, 0},
    {"vol", Role::Volume, 1},
    {"v", Role::Volume, 1},
    {"volumen", Role::Volume, 1},
    {"total volume", Role::Volume, 1},
    {"shares traded", Role::Volume, 1},
    {"st\xC3\xBC"
     "cke",
     Role::Volume, 1},
    {"tickvol", Role::Volume, 2},
    {"tick volume", Role::Volume, 2},
    {"umsatz", Role::Volume, 2},
};

/// The words of a name, a blank between them: "1. open", "<OPEN>" and "Open." are all "open".
std::string plain(std::string_view name) {
  std::string text;
  for (const char c : name) {
    if (c == '<' || c == '>' || c == '.' || c == '"' || c == '*') continue;
    text += c == '_' || c == '-' || c == '\t' ? ' ' : c;
  }
  const std::size_t numbered = text.find_first_not_of("0123456789");
  // A number in front counts the columns where a point or a bracket is behind it.
  const std::size_t point = name.find_first_not_of("0123456789");
  if (point != std::string_view::npos && point > 0 && (name[point] == '.' || name[point] == ')')) {
    text.erase(0, numbered == std::string::npos ? text.size() : numbered + (name[point] == ')' ? 1 : 0));
  }
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string_view roleName(Role role) {
  constexpr std::array<std::string_view, 8> names = {Database::DateName,
                                                     Database::OpenName,
                                                     Database::HighName,
                                                     Database::LowName,
                                                     Database::CloseName,
                                                     Database::VolumeName,
                                                     "Time",
                                                     ""};
  return names[static_cast<std::size_t>(role)];
}

std::optional<Role> roleNamed(std::string_view name) {
  for (const Role role : {Role::Date, Role::Open, Role::High, Role::Low, Role::Close, Role::Volume, Role::Clock}) {
    if (equalNames(name, roleName(role))) return role;
  }
  return {};
}

Meaning meaningOf(std::string_view name) {
  const std::string text = plain(name);
  const auto* const found = std::find_if(std::begin(words), std::end(words), [&](const Word& word) {
    return word.text.size() == text.size() && equalNames(word.text, text);
  });
  if (found == std::end(words)) return {};
  return {found->role, found->distance};
}

Meanings meaningsOf(const std::vector<std::string>& names) {
  std::vector<Meaning> found;
  found.reserve(names.size());
  for (const std::string& name : names) found.push_back(meaningOf(name));
  Meanings result{std::vector<Role>(names.size(), Role::Other), {}};
  std::map<Role, std::size_t> holders;
  std::map<std::pair<Role, int>, int> same;
  for (const Meaning& one : found) ++same[{one.role, one.distance}];
  for (int distance = 0; distance <= 2; ++distance) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      const Role role = found[i].role;
      if (role == Role::Other || found[i].distance != distance) continue;
      const auto holder = holders.find(role);
      if (holder == holders.end()) {
        // Several words that may mean the same leave it open which one does.
        if (distance == 2 && same[{role, distance}] > 1) continue;
        result.roles[i] = role;
        holders[role] = i;
        if (distance == 2) {
          result.remarks.push_back("The column " + shown(names[i]) + " is taken for " + std::string(roleName(role)) +
                                   "; --columns " + std::string(roleName(role)) + "=NAME takes another.");
        }
      } else if (distance < 2 && found[holder->second].distance == distance) {
        result.remarks.push_back("More than one column could be " + std::string(roleName(role)) + ": " +
                                 shown(names[holder->second]) + " is taken and not " + shown(names[i]) + ".");
      }
    }
  }
  // A time stands for the date where no other column does.
  if (!holders.contains(Role::Date)) std::replace(result.roles.begin(), result.roles.end(), Role::Clock, Role::Date);
  return result;
}

}  // namespace orvex::inline ORVEX_COUNTS::prices

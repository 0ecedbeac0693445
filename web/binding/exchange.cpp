#include "web/binding/exchange.h"

#include <utility>

namespace orvex::web {

namespace {

std::string given;

}  // namespace

const char* give(std::string text) {
  given = std::move(text);
  return given.data();
}

std::size_t givenSize() {
  return given.size();
}

const std::vector<catalogue::Calculation>& calculations() {
  static const std::vector<catalogue::Calculation> all = [] {
    std::vector<catalogue::Calculation> found;
    for (const catalogue::Class* owner : catalogue::classes()) {
      for (const catalogue::Method* method : owner->methods) {
        if (catalogue::isCalculation(*owner, *method)) found.push_back({owner, method});
      }
    }
    return found;
  }();
  return all;
}

}  // namespace orvex::web

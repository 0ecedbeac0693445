#include "orvex/data/variant.h"

#include "orvex/data/number_text.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

struct NumberOf {
  double operator()(Empty) const { return 0.0; }
  double operator()(Null) const { raise(faults::InvalidUseOfNull); }
  double operator()(const NoValue& none) const { raise(none.fault); }
  double operator()(double number) const { return number; }
  double operator()(const std::string& text) const { return numberFromText(text); }
};

}  // namespace

int VariantArray::upperBound() const {
  if (const auto* bound = std::get_if<int>(&content_)) return *bound;
  if (const auto* numbers = std::get_if<Array<double>>(&content_)) return numbers->upperBound();
  if (const auto* cells = std::get_if<Array<Cell>>(&content_)) return cells->upperBound();
  raise(std::get<Fault>(content_));
}

double VariantArray::number(int index) const {
  if (const auto* numbers = std::get_if<Array<double>>(&content_)) return numbers->at(index);
  if (const auto* cells = std::get_if<Array<Cell>>(&content_)) return std::visit(NumberOf{}, cells->at(index));
  if (std::holds_alternative<int>(content_)) raise(faults::SubscriptOutOfRange);
  raise(std::get<Fault>(content_));
}

}  // namespace orvex::inline ORVEX_COUNTS

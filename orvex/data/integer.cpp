#include "orvex/data/integer.h"

#include "orvex/data/real.h"

namespace orvex::inline ORVEX_COUNTS {

Integer Integer::rounded(double number) {
  // Not-a-number fails the test as well.
  if (!(number > Least - 1.0 && number < Greatest + 1.0)) raise(faults::Overflow);
  const double whole = roundHalfEven(number);
  // Half a step beyond a limit may round to it or away from it.
  if (whole < Least || whole > Greatest) raise(faults::Overflow);
  return static_cast<std::int32_t>(whole);
}

}  // namespace orvex::inline ORVEX_COUNTS

#include "orvex/data/integer.h"

#include "orvex/data/real.h"

namespace orvex {

Integer Integer::rounded(double number) {
  // Not-a-number fails the test as well.
  if (!(number > Least - 1.0 && number < Greatest + 1.0)) raise(faults::Overflow);
  return static_cast<std::int32_t>(roundHalfEven(number));
}

}  // namespace orvex

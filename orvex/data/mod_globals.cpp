#include "orvex/data/mod_globals.h"

#include "orvex/data/real.h"

namespace orvex::inline ORVEX_COUNTS::modGlobals {

double MaxOf(double Value1, double Value2) {
  if (Value1 > Value2) return Value1;
  if (Value2 > Value1) return Value2;
  return 0.0;
}

double MinOf(double Value1, double Value2) {
  if (Value1 < Value2) return Value1;
  if (Value2 < Value1) return Value2;
  return 0.0;
}

double RatioOf(double a, double b, double c) {
  if (a == b) return 0.0;
  return ((Real(c) - b) / (Real(a) - b)).value();
}

}  // namespace orvex::inline ORVEX_COUNTS::modGlobals

#pragma once

#include "orvex/data/counts.h"

/// Procedures of the library's own module. They are part of what it offers and no indicator calls them: where one takes
/// the larger of two values, equal values give that value and not 0.
namespace orvex::inline ORVEX_COUNTS::modGlobals {

/// The larger of two values, or 0 when neither is strictly greater: equal values give 0.
double MaxOf(double Value1, double Value2);

/// The smaller of two values, or 0 when neither is strictly smaller: equal values give 0.
double MinOf(double Value1, double Value2);

/// (c - b) / (a - b) where a differs from b, otherwise 0. A quotient that is not finite is error 6.
double RatioOf(double a, double b, double c);

}  // namespace orvex::inline ORVEX_COUNTS::modGlobals

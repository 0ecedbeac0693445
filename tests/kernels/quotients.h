#pragma once

#include <cstddef>

/// Quotients into out[i], by the packs of one instruction set: x[i] / divisor, and x[i] / y[i].
namespace orvex::test {

using DivideAll = void(const double* x, std::size_t count, double divisor, double* out);
using DividePairs = void(const double* x, const double* y, std::size_t count, double* out);

namespace baseline {
DivideAll divideAll;
DividePairs dividePairs;
}
namespace avx2_fma {
DivideAll divideAll;
DividePairs dividePairs;
}
namespace avx512 {
DivideAll divideAll;
DividePairs dividePairs;
}

}  // namespace orvex::test

#pragma once

#include <cstddef>

/// x[i] / divisor into out[i], by the packs of one instruction set.
namespace orvex::test {

using DivideAll = void(const double* x, std::size_t count, double divisor, double* out);

namespace baseline {
DivideAll divideAll;
}
namespace avx2_fma {
DivideAll divideAll;
}
namespace avx512 {
DivideAll divideAll;
}

}  // namespace orvex::test

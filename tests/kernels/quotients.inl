// Included by a translation unit that is compiled for one instruction set and names it in ORVEX_VARIANT.
#include "orvex/kernels/quotients.inl"

#include "tests/kernels/quotients.h"

namespace orvex::test::ORVEX_VARIANT {

void divideAll(const double* x, std::size_t count, double divisor, double* out) {
  const Divisor by(divisor);
  eachBlock<4>(0, static_cast<std::ptrdiff_t>(count), [=]<int Lanes, int Count>(std::ptrdiff_t i) {
    for (int k = 0; k < Count; ++k) {
      const std::ptrdiff_t at = i + k * Lanes;
      (Pack<Lanes>::load(x + at) / by).store(out + at);
    }
  });
}

void dividePairs(const double* x, const double* y, std::size_t count, double* out) {
  eachBlock<1>(0, static_cast<std::ptrdiff_t>(count), [=]<int Lanes, int>(std::ptrdiff_t at) {
    constexpr int turnOfProducts = 1;
    quotient(Pack<Lanes>::load(x + at), Pack<Lanes>::load(y + at), turnOfProducts).store(out + at);
  });
}

}  // namespace orvex::test::ORVEX_VARIANT

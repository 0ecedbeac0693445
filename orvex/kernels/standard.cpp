#include "orvex/kernels/standard.h"

#include "orvex/kernels/variants.h"

namespace orvex::inline ORVEX_COUNTS::kernels {

const StandardTable* activeStandard() noexcept {
  switch (level()) {
#ifdef ORVEX_X86_VARIANTS
    case Level::Avx512:
      return &avx512::standardTable;
    case Level::Avx2Fma:
      return &avx2_fma::standardTable;
    case Level::Avx2:
      return &avx2::standardTable;
#endif
    case Level::Off:
      return nullptr;
    default:
      return &baseline::standardTable;
  }
}

}  // namespace orvex::inline ORVEX_COUNTS::kernels

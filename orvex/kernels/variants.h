#pragma once

#include "orvex/kernels/chains.h"
#include "orvex/kernels/kernels.h"
#include "orvex/kernels/standard.h"

namespace orvex::inline ORVEX_COUNTS::kernels {

struct Variant {
  Table table;
  Chains chains;
};

// What variant.inl defines once for each instruction set.
namespace baseline {
extern const Variant variant;
extern const StandardTable standardTable;
}
namespace avx2 {
extern const Variant variant;
extern const StandardTable standardTable;
}
namespace avx2_fma {
extern const Variant variant;
extern const StandardTable standardTable;
}
namespace avx512 {
extern const Variant variant;
extern const StandardTable standardTable;
}

}  // namespace orvex::inline ORVEX_COUNTS::kernels

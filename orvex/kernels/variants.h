#pragma once

#include "orvex/kernels/kernels.h"
#include "orvex/kernels/standard.h"

/// The tables that variant.inl defines once for each instruction set.
namespace orvex::inline ORVEX_COUNTS::kernels {

namespace baseline {
extern const Table table;
extern const StandardTable standardTable;
}
namespace avx2 {
extern const Table table;
extern const StandardTable standardTable;
}
namespace avx2_fma {
extern const Table table;
extern const StandardTable standardTable;
}
namespace avx512 {
extern const Table table;
extern const StandardTable standardTable;
}

}  // namespace orvex::inline ORVEX_COUNTS::kernels

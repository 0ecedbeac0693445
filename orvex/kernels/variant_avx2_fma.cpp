#define ORVEX_VARIANT avx2_fma
#include "orvex/kernels/variant.inl"

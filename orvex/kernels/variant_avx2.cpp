#define ORVEX_VARIANT avx2
#include "orvex/kernels/variant.inl"

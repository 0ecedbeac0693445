#define ORVEX_VARIANT avx512
#include "orvex/kernels/variant.inl"

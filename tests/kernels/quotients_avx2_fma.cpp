#define ORVEX_VARIANT avx2_fma
#include "tests/kernels/quotients.inl"

#define ORVEX_VARIANT avx512
#include "tests/kernels/quotients.inl"

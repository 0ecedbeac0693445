#define ORVEX_VARIANT baseline
#include "tests/kernels/quotients.inl"

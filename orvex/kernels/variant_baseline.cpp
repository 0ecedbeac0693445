#define ORVEX_VARIANT baseline
#include "orvex/kernels/variant.inl"

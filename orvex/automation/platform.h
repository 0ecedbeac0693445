#pragma once

// Windows without what this server never uses, and without its macros min and max.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>

#pragma once

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "Orvex needs C++20: compile with -std=c++20 or /std:c++20"
#endif

/// How wide counts are: record numbers, record counts, periods and loop counters. The classes are defined on 16 bits,
/// so that is what the headers mean by themselves. A program that is compiled with ORVEX_COUNT_BITS=32, as the target
/// `Orvex::orvex32` has it, holds series of up to 2,147,483,646 records, and nothing that only 16 bits limit is limited
/// there: methods that fail at 32,766 or 32,767 records, a regression over more than 181 of them, twice a period past
/// 16,383, the sum of a cycle's distances. Where 16 bits suffice, both give the same bits. One source makes both
/// libraries, each in an inline namespace of its own (`orvex::counts16`, `orvex::counts32`): a program may hold both.
#ifndef ORVEX_COUNT_BITS
#define ORVEX_COUNT_BITS 16
#endif

#if ORVEX_COUNT_BITS == 16
#define ORVEX_COUNTS counts16
#elif ORVEX_COUNT_BITS == 32
#define ORVEX_COUNTS counts32
#else
#error "ORVEX_COUNT_BITS is 16 or 32"
#endif

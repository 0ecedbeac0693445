/* The C interface: every calculation of the library by its name, for C and for any language that can call C.
 *
 *   orvex_series* series = NULL;
 *   orvex_result* result = NULL;
 *   orvex_error error;
 *   const orvex_prices prices = {.close = close};
 *   const orvex_argument periods = {.name = "Periods", .number = 20};
 *   if (orvex_open(&prices, count, &series, &error) == 0 &&
 *       orvex_call(series, "SimpleMovingAverage", &periods, 1, &result, &error) == 0) {
 *     orvex_column average;
 *     orvex_get_column(result, 0, &average);
 *     ...
 *   }
 *   orvex_release(result);
 *   orvex_close(series);
 *
 * It stands in the library of 32-bit counts: link with -lorvex32 (pkg-config orvex32, or Orvex::orvex32). Texts are
 * UTF-8 and end with a zero. Nothing is kept between calls but what the caller holds, and no exception leaves a
 * function: each that can fail returns 0 or the number of its error, of which `error` tells more where it is not NULL.
 *
 * Threads may call on one series at the same time while none adds to it or closes it. The structures do not change
 * within version 1. */
#ifndef ORVEX_C_ORVEX_H
#define ORVEX_C_ORVEX_H

#include <stdint.h>

#if defined(__GNUC__) && !defined(_WIN32)
#define ORVEX_C_API __attribute__((visibility("default")))
#else
#define ORVEX_C_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* NOLINTBEGIN(modernize-use-using): C has no other. */
/* A price series, and what a call gave. */
typedef struct orvex_series orvex_series;
typedef struct orvex_result orvex_result;

/* Why a call failed. Texts that are longer than their place are cut. */
typedef struct orvex_error {
  int32_t number; /* what was reported: 1105, say; 7 where memory ran out, 5 for a mistake in how it was called */
  int32_t record; /* the record of the series that was being computed, from 1; 0 where it was none */
  int32_t
      cause_number; /* what was met first inside: 11, say, a division by zero; `number` itself where it was no other */
  char source[128]; /* who reports it */
  char description[128];
  char cause_source[128];
  char cause_description[128];
  char message[512]; /* a sentence for people with all of that, or with the name that is not known */
} orvex_error;

/* Price columns of one length, the oldest record first. NULL for those that there are not: a method that needs one of
 * these then fails. */
typedef struct orvex_prices {
  const double* open;
  const double* high;
  const double* low;
  const double* close;
  const double* volume;
} orvex_prices;

/* An argument of a call by its name, in whichever case. Where `text` is not NULL it is the value: the name of a column,
 * the name of a choice such as "Exponential", or a text; otherwise `number` is, which a whole number must be for an
 * argument that is one. */
typedef struct orvex_argument {
  const char* name;
  double number;
  const char* text;
} orvex_argument;

/* A column of a result, there until the result is released. Rows `first` to `last`, from 1, are computed: those whose
 * every input is. None where `first` is greater. The others are NaN. */
typedef struct orvex_column {
  const char* name;
  const double* values;
  int32_t count;
  int32_t first;
  int32_t last;
} orvex_column;

/* A result that is no set of columns. */
typedef struct orvex_value {
  double number;    /* of a note its value; 1 or 0 for true or false */
  const char* text; /* of a note, or a text; otherwise "" */
  int32_t record;   /* of a note its record, from 1; otherwise 0 */
} orvex_value;
/* NOLINTEND(modernize-use-using) */

/* MAJOR.MINOR.PATCH. */
ORVEX_C_API const char* orvex_version(void);

/* Opens a series of `count` records. Its columns are not copied: they stay where they are, and as they are, until it is
 * closed. NaN in front of the first value or behind the last stands for rows that have none. */
ORVEX_C_API int32_t orvex_open(const orvex_prices* prices, int32_t count, orvex_series** series, orvex_error* error);

/* Adds a column of as many rows, not copied either, which arguments name as they name "Close". So the columns of one
 * call are taken by the next, once their result's rows are added. */
ORVEX_C_API int32_t orvex_add_column(orvex_series* series, const char* name, const double* values, orvex_error* error);

/* Closes a series; NULL is none. Results that it gave stay. */
ORVEX_C_API void orvex_close(orvex_series* series);

/* Calls a method, "MACD" or "Oscillator.MACD", with the arguments named; the others have their usual or default values,
 * as docs/reference.md tells them, and price columns are those of the series. The result is to be released. */
ORVEX_C_API int32_t orvex_call(const orvex_series* series, const char* method, const orvex_argument* arguments,
                               int32_t argument_count, orvex_result** result, orvex_error* error);

/* How many columns a result has: 0 for one that is a value. */
ORVEX_C_API int32_t orvex_column_count(const orvex_result* result);

/* The column at a place from 0; 9 where there is none. */
ORVEX_C_API int32_t orvex_get_column(const orvex_result* result, int32_t place, orvex_column* column);

/* A value, there until the result is released; 13 where the result has columns. */
ORVEX_C_API int32_t orvex_get_value(const orvex_result* result, orvex_value* value);

/* Frees a result with its columns; NULL is none. */
ORVEX_C_API void orvex_release(orvex_result* result);

#ifdef __cplusplus
}
#endif

#endif

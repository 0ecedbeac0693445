/* The C interface as a C program has it. Ends with 0 if all is as it should be. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "orvex/c/orvex.h"

static int failures = 0;

static void check(int holds, const char* what, int line) {
  if (holds) return;
  ++failures;
  fprintf(stderr, "line %d: %s\n", line, what);
}
#define CHECK(what) check((what), #what, __LINE__)

enum { COUNT = 5 };
static const double rising[COUNT] = {1, 2, 3, 4, 5};
static const double late[COUNT] = {NAN, 2, 3, 4, 5};
static const double gap[COUNT] = {1, 2, NAN, 4, 5};
static const double flat[COUNT] = {7, 7, 7, 7, 7};

static orvex_argument number(const char* name, double value) {
  orvex_argument argument = {name, value, NULL};
  return argument;
}

static orvex_argument text(const char* name, const char* value) {
  orvex_argument argument = {name, 0, value};
  return argument;
}

static orvex_series* open_all(const double* close) {
  orvex_prices prices = {rising, rising, rising, NULL, rising};
  orvex_series* series = NULL;
  prices.close = close;
  CHECK(orvex_open(&prices, COUNT, &series, NULL) == 0 && series != NULL);
  return series;
}

/* A mean of three stands from the fourth record on. */
static void test_columns(void) {
  orvex_series* const series = open_all(rising);
  const orvex_argument arguments[] = {number("periods", 3), text("ALIAS", "Mean")};
  orvex_result* result = NULL;
  orvex_result* second = NULL;
  orvex_column mean, next;
  orvex_value value;
  orvex_error error;
  CHECK(orvex_call(series, "MovingAverage.SimpleMovingAverage", arguments, 2, &result, &error) == 0);
  CHECK(error.number == 0 && error.message[0] == '\0');
  CHECK(orvex_column_count(result) == 1);
  CHECK(orvex_get_column(result, 0, &mean) == 0);
  CHECK(strcmp(mean.name, "Mean") == 0 && mean.count == COUNT && mean.first == 4 && mean.last == 5);
  CHECK(isnan(mean.values[0]) && isnan(mean.values[2]) && mean.values[3] == 3 && mean.values[4] == 4);
  CHECK(orvex_get_column(result, 1, &mean) == 9 && orvex_get_column(result, -1, &mean) == 9);
  CHECK(orvex_get_value(result, &value) == 13);

  /* What one call gave the next takes, and begins behind the rows that are not computed. */
  CHECK(orvex_add_column(series, "Mean", mean.values, &error) == 0);
  CHECK(orvex_add_column(series, "mean", mean.values, &error) == 5 && strstr(error.message, "already") != NULL);
  {
    const orvex_argument chained[] = {text("Source", "mean"), number("Periods", 1)};
    CHECK(orvex_call(series, "simplemovingaverage", chained, 2, &second, &error) == 0);
  }
  CHECK(orvex_get_column(second, 0, &next) == 0 && next.first == 5 && next.last == 5 && next.values[4] == 4);
  orvex_close(series);
  CHECK(next.values[4] == 4);
  orvex_release(result);
  orvex_release(second);
}

/* The average of the choice 1, Simple, by its name; arguments that are not named are usual or optional. */
static void test_choices(void) {
  orvex_series* const series = open_all(late);
  const orvex_argument arguments[] = {text("MA_Type", "simple"), number("Periods", 2), number("StandardDeviations", 1)};
  orvex_result* result = NULL;
  orvex_column median;
  orvex_error error;
  CHECK(orvex_call(series, "BollingerBands", arguments, 3, &result, &error) == 0);
  CHECK(orvex_column_count(result) == 3 && orvex_get_column(result, 0, &median) == 0);
  CHECK(median.first == 4 && median.values[3] == 3.5 && median.values[4] == 4.5);
  orvex_release(result);
  orvex_close(series);
}

static void test_values(void) {
  const orvex_argument prime[] = {number("Number", 7)};
  orvex_series* const series = open_all(rising);
  const orvex_argument span[] = {text("Source", "Close"), number("StartPeriod", 2), number("EndPeriod", 4)};
  orvex_result* result = NULL;
  orvex_value value;
  CHECK(orvex_call(series, "General.IsPrime", prime, 1, &result, NULL) == 0);
  CHECK(orvex_get_value(result, &value) == 0 && value.number == 1 && value.record == 0 && value.text[0] == '\0');
  CHECK(orvex_column_count(result) == 0);
  orvex_release(result);
  CHECK(orvex_call(series, "MaxValue", span, 3, &result, NULL) == 0);
  CHECK(orvex_get_value(result, &value) == 0 && value.number == 4 && value.record == 4);
  orvex_release(result);
  orvex_close(series);
}

/* Each call fails with that number, and says that in its message. */
static void test_errors(void) {
  orvex_series* const series = open_all(rising);
  orvex_series* const broken = open_all(gap);
  orvex_prices volume_only = {NULL, NULL, NULL, NULL, rising};
  orvex_series* without_close = NULL;
  const struct {
    const char* method;
    orvex_argument arguments[2];
    int32_t count;
    int32_t number;
    const char* message;
  } cases[] = {
      {"NoSuch", {{0}}, 0, 5, "no method \"NoSuch\""},
      {"Field.getName", {{0}}, 0, 5, "no method"},
      {"SimpleMovingAverage", {{"Length", 3, NULL}}, 1, 5, "no argument \"Length\"; it has Source Periods Alias"},
      {"SimpleMovingAverage", {{"data", 3, NULL}}, 1, 5, "no argument \"data\""},
      {"SimpleMovingAverage", {{"Periods", 3, NULL}, {"periods", 3, NULL}}, 2, 5, "twice"},
      {"SimpleMovingAverage", {{NULL, 3, NULL}}, 1, 5, "name of an argument"},
      {"SimpleMovingAverage", {{"Periods", 2.5, NULL}}, 1, 13, "Periods: it must be"},
      {"SimpleMovingAverage", {{"Periods", 0, "two"}}, 1, 13, "Periods: it must be"},
      {"SimpleMovingAverage", {{"Periods", 1e10, NULL}}, 1, 6, "Periods: it must be"},
      {"SimpleMovingAverage", {{"Periods", NAN, NULL}}, 1, 6, "Periods: it must be"},
      {"SimpleMovingAverage", {{"Source", 3, NULL}}, 1, 13, "Source: it is the name of a column"},
      {"SimpleMovingAverage", {{"Source", 0, "Mid"}}, 1, 1110, "no column \"Mid\"; it has Open High Low Close Volume"},
      {"BollingerBands", {{"MA_Type", 0, "Harmonic"}}, 1, 13, "1 Simple"},
      {"General.IsPrime", {{0}}, 0, 449, "IsPrime needs the argument"},
  };
  orvex_result* result = NULL;
  orvex_error error;
  size_t i;
  for (i = 0; i < sizeof cases / sizeof *cases; ++i) {
    const int32_t number = orvex_call(series, cases[i].method, cases[i].arguments, cases[i].count, &result, &error);
    if (number != cases[i].number || error.number != number || strstr(error.message, cases[i].message) == NULL ||
        result != NULL || error.description[0] == '\0') {
      ++failures;
      fprintf(stderr, "case %d: %d \"%s\"\n", (int)i, (int)number, error.message);
    }
  }
  /* A method's own error, with what went wrong inside and where. */
  {
    const orvex_argument two[] = {number("Periods", 2)};
    CHECK(orvex_call(broken, "SimpleMovingAverage", two, 1, &result, &error) == 1105);
    CHECK(strstr(error.message, "Close has no value in record 3") != NULL);
  }
  {
    const orvex_prices prices = {flat, flat, flat, flat, flat};
    const orvex_argument few[] = {number("Periods", 2)};
    orvex_series* still = NULL;
    CHECK(orvex_open(&prices, COUNT, &still, NULL) == 0);
    CHECK(orvex_call(still, "WilliamsPctR", few, 1, &result, &error) == 1105);
    CHECK(error.cause_number == 11 && error.record == 3 && strcmp(error.cause_description, "Division by zero") == 0);
    CHECK(strcmp(error.source, "Oscillator.WilliamsPctR.UnexpectedError") == 0);
    orvex_close(still);
  }
  CHECK(orvex_open(&volume_only, COUNT, &without_close, &error) == 0);
  CHECK(orvex_call(without_close, "SimpleMovingAverage", NULL, 0, &result, &error) == 1110);
  orvex_close(without_close);
  /* Without a place for the error, and with nothing given at all. */
  CHECK(orvex_call(series, "NoSuch", NULL, 0, &result, NULL) == 5);
  CHECK(orvex_call(NULL, "MACD", NULL, 0, &result, NULL) == 5 && orvex_call(series, NULL, NULL, 0, &result, NULL) == 5);
  CHECK(orvex_call(series, "MACD", NULL, 1, &result, NULL) == 5 &&
        orvex_call(series, "MACD", NULL, 0, NULL, NULL) == 5);
  CHECK(orvex_open(NULL, 1, &without_close, NULL) == 5 && orvex_open(&volume_only, 1, NULL, NULL) == 5);
  CHECK(orvex_get_column(NULL, 0, NULL) == 9 && orvex_get_value(NULL, NULL) == 13 && orvex_column_count(NULL) == 0);
  orvex_release(NULL);
  orvex_close(NULL);
  orvex_close(series);
  orvex_close(broken);
}

int main(void) {
  CHECK(orvex_version()[0] >= '1');
  test_columns();
  test_choices();
  test_values();
  test_errors();
  return failures == 0 ? 0 : 1;
}

/* Prints Bollinger bands of the closes in a price file, a line for each record.
 *
 *   cc averages.c $(pkg-config --cflags --libs orvex32) -o averages && ./averages prices.csv
 */
#include <stdio.h>
#include <stdlib.h>

#include <orvex/c/orvex.h>

enum { MOST = 100000 };

int main(int argc, char** argv) {
  static double close[MOST];
  int32_t count = 0;
  FILE* const file = argc > 1 ? fopen(argv[1], "r") : NULL;
  if (file == NULL) {
    fprintf(stderr, "usage: averages FILE\n");
    return EXIT_FAILURE;
  }
  while (count < MOST && fscanf(file, "%*[^,],%*f,%*f,%*f,%lf,%*[^\n]\n", &close[count]) == 1) ++count;
  fclose(file);

  const orvex_prices prices = {.close = close};
  const orvex_argument arguments[] = {{.name = "Periods", .number = 20}, {.name = "MA_Type", .text = "Exponential"}};
  orvex_series* series = NULL;
  orvex_result* result = NULL;
  orvex_error error;
  int status = EXIT_SUCCESS;
  if (orvex_open(&prices, count, &series, &error) != 0 ||
      orvex_call(series, "BollingerBands", arguments, 2, &result, &error) != 0) {
    fprintf(stderr, "error %d: %s\n", (int)error.number, error.message);
    status = EXIT_FAILURE;
  }
  for (int32_t row = 0; status == EXIT_SUCCESS && row < count; ++row) {
    for (int32_t place = 0; place < orvex_column_count(result); ++place) {
      orvex_column column;
      orvex_get_column(result, place, &column);
      printf("%s%.17g", place == 0 ? "" : ",", column.values[row]);
    }
    printf("\n");
  }
  orvex_release(result);
  orvex_close(series);
  return status;
}

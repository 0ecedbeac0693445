// Reads a price file, computes two indicators and prints the last records with what a trader would look at.
// Build it with the CMakeLists.txt beside it, and run it as: signals prices.csv
#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>

#include "orvex/data/database.h"
#include "orvex/indices/index.h"
#include "orvex/oscillators/oscillator.h"
#include "orvex/prices/price_reader.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: signals FILE, with dates and prices\n");
    return 2;
  }
  try {
    const auto data = std::make_shared<orvex::Database>();
    // What the columns are is found out. A file that is not certain is refused with a word on what to do.
    data->OpenDatabaseByRows(orvex::prices::rowsOf(orvex::prices::readFile(argv[1])));
    const auto dates = data->getRecordset()->getField("Date");
    const auto close = data->getRecordset()->getField("Close");

    const auto strength = orvex::Index().RelativeStrengthIndex(data, close, 14, "RSI");
    const auto macd = orvex::Oscillator().MACD(data, close, 12, 26, 9, "MACD");
    const auto histogram = macd->getField("MACDHistogram");

    const int count = data->getRecordCount().value();
    std::printf("%-12s %10s %8s %10s\n", "date", "close", "RSI", "histogram");
    for (int record = std::max(2, count - 9); record <= count; ++record) {
      const bool crossed = histogram->getValue(record - 1) * histogram->getValue(record) < 0;
      std::printf("%-12s %10.2f %8.2f %10.4f%s\n", dates->getStrValue(record).c_str(), close->getValue(record),
                  strength->getValue("RSI", record), histogram->getValue(record),
                  crossed ? "  crosses its signal" : "");
    }
  } catch (const std::exception& error) {
    // A `prices::ReadError`, "File not found." say, or an `orvex::Error`: what went wrong inside an indicator, with the
    // record.
    std::fprintf(stderr, "signals: %s\n", error.what());
    return 1;
  }
  return 0;
}

// Loads four closes, averages two at a time and prints the last value, and how wide its counts are.
#include <iostream>
#include <memory>

#include "orvex/averages/moving_average.h"
#include "orvex/catalogue/catalogue.h"
#include "orvex/data/database.h"

int main() {
  const auto data = std::make_shared<orvex::Database>();
  data->OpenDatabaseByArray(std::vector<double>{10, 11, 12, 14});
  const auto close = data->getRecordset()->getField("Close");
  const auto result = orvex::MovingAverage().SimpleMovingAverage(data, close, 2, "average");
  std::cout << result->getValue("average", 4) << ' ' << (orvex::catalogue::findClass("movingaverage") != nullptr) << ' '
            << ORVEX_COUNT_BITS << '\n';
}

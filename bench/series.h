#pragma once

#include <memory>
#include <string>

#include "bench/cases.h"
#include "orvex/data/database.h"

namespace orvex::bench {

/// As long as a series can be without its last counter step overflowing.
inline constexpr int RecordCount = 32765;

/// The series of that kind and length, always the same one.
const std::shared_ptr<Database>& series(Prices prices);
std::shared_ptr<Database> makeSeries(Prices prices, int count);

/// Writes the ordinary series as a price file.
void writePriceFile(const std::string& path);

}  // namespace orvex::bench

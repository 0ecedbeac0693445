// Reads whatever bytes there are as a price file of any kind: the first byte chooses the options.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "orvex/data/text.h"
#include "orvex/prices/price_reader.h"

namespace {

using orvex::prices::Options;
using orvex::prices::PriceColumn;
using orvex::prices::PriceTable;
using orvex::prices::ReadError;
using orvex::prices::Role;

void require(bool condition) {
  if (!condition) std::abort();
}

Options optionsOf(unsigned choice) {
  Options options;
  if ((choice & 1) != 0) options.order = orvex::prices::Order::Keep;
  if ((choice & 2) != 0) options.missing = orvex::prices::Missing::Skip;
  if ((choice & 4) != 0) options.missing = orvex::prices::Missing::Previous;
  if ((choice & 8) != 0) options.decimal = ',';
  if ((choice & 16) != 0) options.tail = 3;
  if ((choice & 32) != 0) options.from = "2020-01";
  if ((choice & 64) != 0) options.columns = {{Role::Close, "2"}};
  return options;
}

/// A message may hold parts of the file, but nothing that a terminal would obey.
void requireShowable(std::string_view text) {
  require(orvex::isUtf8(text));
  for (const char c : text) require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F);
}

void requireWhole(const PriceTable& table, const Options& options) {
  require(table.count > 0 && table.count <= static_cast<std::size_t>(orvex::Integer::Greatest));
  require(table.lines.size() == table.count && (table.times.empty() || table.times.size() == table.count));
  for (const PriceColumn& column : table.columns) {
    require((column.isText() ? column.texts.size() : column.numbers.size()) == table.count);
    for (const double number : column.numbers) require(!std::isinf(number));
    for (const std::string_view text : column.texts) require(orvex::isUtf8(text));
  }
  if (options.order == orvex::prices::Order::Check) {
    for (std::size_t i = 1; i < table.times.size(); ++i) require(table.times[i - 1] < table.times[i]);
  }
  for (const std::string& remark : table.remarks) requireShowable(remark);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  const Options options = optionsOf(bytes[0]);
  try {
    requireWhole(orvex::prices::read(std::string(reinterpret_cast<const char*>(bytes) + 1, size - 1), options),
                 options);
  } catch (const ReadError& error) {
    require(error.fault().number == 1012);
    requireShowable(error.what());
  }
  return 0;
}

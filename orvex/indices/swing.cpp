#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/indices/cumulative.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<RecordSet> Index::SwingIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                             double LimitMoveValue, InOut<std::string> Alias) {
  applyDefault(Alias, SwingIndexName);
  object(data);
  if (LimitMoveValue <= 0) raise(SwingIndexLimitFault);
  return trap(SwingIndexFault, [&] {
    PriceColumn opens(OHLCV, Database::OpenName), highs(OHLCV, Database::HighName);
    PriceColumn lows(OHLCV, Database::LowName), closes(OHLCV, Database::CloseName);
    Real range = 0;
    return cumulate(
        data, Alias.get(), 2, 0.0,
        [&](kernels::Records records, double* out) {
          const kernels::Bars bars{highs.rows(), lows.rows(), closes.rows()};
          double term = range;
          const std::size_t done =
              kernels::run(&kernels::Table::swing, opens.rows(), bars, LimitMoveValue, &term, records, out);
          range = term;
          return done;
        },
        [&](Integer record, Real) -> Real {
          // Not yet numbers to compute with: a record whose range is 0 has no use for them.
          const double open = opens.field()->getValue(record), close = closes.field()->getValue(record);
          const double openBefore = opens.field()->getValue(record - 1);
          const Real high = highs(record), low = lows(record), closeBefore = closes(record - 1);
          const Real up = abs(high - closeBefore), down = abs(low - closeBefore), span = abs(high - low);
          const auto body = [&] { return 0.25 * abs(closeBefore - openBefore); };
          // Where the largest of the three is tied none of these holds, and the range of the record before stays in
          // force. Results depend on it: it is no missing branch.
          if (up > down && up > span) {
            range = up - 0.5 * down + body();
          } else if (down > up && down > span) {
            range = down - 0.5 * up + body();
          } else if (span > up && span > down) {
            range = span + body();
          }
          if (range <= 0) return 0;
          const Real move = (close - closeBefore) + 0.5 * (Real(close) - open) + 0.25 * (closeBefore - openBefore);
          return 50 * move / range * (down > up ? down : up) / LimitMoveValue;
        },
        Carried(range));
  });
}

std::shared_ptr<RecordSet> Index::AccumulativeSwingIndex(std::shared_ptr<Database> data,
                                                         std::shared_ptr<RecordSet> OHLCV, double LimitMoveValue,
                                                         InOut<std::string> Alias) {
  applyDefault(Alias, AccumulativeSwingIndexName);
  object(data);
  if (LimitMoveValue <= 0) raise(AccumulativeSwingIndexLimitFault);
  // Before the trap: its error reaches the caller as the swing index's own.
  const auto swing = Index().SwingIndex(data, OHLCV, LimitMoveValue, "SI");
  return trap(AccumulativeSwingIndexFault, [&] {
    const auto values = swing->getField("SI");
    return cumulate(
        data, Alias.get(), 2, 0.0,
        [&](kernels::Records records, double* out) {
          return kernels::run(&kernels::Table::runningTotal, rowsOf(values), records, out);
        },
        [&](Integer record, Real before) { return before + at(values, record); });
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

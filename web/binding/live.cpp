// Live series as JavaScript calls them: prices that grow, and calls that are kept on them. What may fail returns a
// text, the error in JSON, and nothing where it has not failed; what begins a series or a call, or gives a call
// something, returns nothing where it has failed. The one caller is web/package/src/live.ts.
#include <emscripten.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/output.h"
#include "orvex/live/live_series.h"
#include "web/binding/exchange.h"

namespace orvex::web {
namespace {

/// A call that is kept on a series: what it is given, and then its result.
struct Kept {
  catalogue::Calculation calculation;
  std::vector<LiveSeries::Argument> given{};
  std::shared_ptr<const LiveResult> result{};
  /// How many rows stand as they were when the columns were looked at last.
  int standing = 0;

  template <class Value>
  void give(std::size_t argument, Value value) {
    if (argument >= calculation.method->arguments.size()) throw std::out_of_range("argument");
    given.emplace_back(calculation.method->arguments[argument].name, std::move(value));
  }
};

/// Records that are begun with, or appended at once: rows of `count` numbers one after the other, with a bit for each
/// price that is there, and the texts of the dates one after the other, as long as `sizes` tells; none for none.
struct Records {
  const double* numbers;
  int count;
  unsigned columns;
  const char* dates;
  const std::uint32_t* sizes;

  template <class Use>
  void use(Use&& use) const {
    static constexpr std::array places = {&PriceRows::open, &PriceRows::high, &PriceRows::low, &PriceRows::close,
                                          &PriceRows::volume};
    PriceRows rows;
    const double* next = numbers;
    for (std::size_t i = 0; i < places.size(); ++i) {
      if ((columns >> i & 1) == 0) continue;
      rows.*places[i] = {{next, static_cast<std::size_t>(count)}, nullptr};
      next += count;
    }
    std::vector<std::string_view> texts;
    const char* text = dates;
    for (int i = 0; sizes != nullptr && i < count; ++i) {
      texts.emplace_back(text, sizes[i]);
      text += sizes[i];
    }
    rows.dates = {texts, nullptr};
    use(rows);
  }
};

const char* giveError(const Error& error) {
  return give(fmt::format(R"({{{}}})", cli::errorMembers(error)));
}

/// Nothing, or the error that the body has ended in.
template <class Body>
const char* attempt(Body body) {
  try {
    body();
    return nullptr;
  } catch (const Error& error) {
    return giveError(error);
  } catch (...) {
    return giveError(Error(currentFault()));
  }
}

/// A series with what is kept on it.
class Live {
 public:
  Live() : series_(notComputed) {}
  explicit Live(const PriceRows& prices) : series_(prices, notComputed) {}

  template <class Change>
  const char* change(Change change) {
    return attempt([&] {
      change(series_);
      for (const auto& kept : kept_) kept->standing = std::min(kept->standing, kept->result->standing());
    });
  }

  const char* keep(Kept& kept) {
    return attempt([&] {
      const auto& [owner, method] = kept.calculation;
      kept.result = series_.keep(std::string(owner->name).append(".").append(method->name), kept.given);
      kept_.emplace_back(&kept);
    });
  }

  const char* drop(Kept& kept) {
    return attempt([&] {
      series_.drop(kept.result);
      std::erase_if(kept_, [&](const auto& one) { return one.get() == &kept; });
    });
  }

 private:
  static constexpr double notComputed = std::numeric_limits<double>::quiet_NaN();

  LiveSeries series_;
  std::vector<std::unique_ptr<Kept>> kept_;
};

}  // namespace
}  // namespace orvex::web

using orvex::LiveColumn;
using orvex::LiveSeries;
using orvex::PriceRows;
using orvex::web::Kept;
using orvex::web::Live;
using orvex::web::orNothing;
using orvex::web::Records;

extern "C" {

/// A series of `count` records, or an empty one that has all prices. Null where memory has run out.
EMSCRIPTEN_KEEPALIVE Live* orvex_live_begin(const double* numbers, int count, unsigned columns, const char* dates,
                                            const std::uint32_t* sizes) {
  return orNothing([&] {
    std::unique_ptr<Live> live;
    Records{numbers, count, columns, dates, sizes}.use(
        [&](const PriceRows& rows) { live = count == 0 ? std::make_unique<Live>() : std::make_unique<Live>(rows); });
    return live.release();
  });
}

EMSCRIPTEN_KEEPALIVE void orvex_live_end(Live* live) {
  const std::unique_ptr<Live> ended(live);
}

EMSCRIPTEN_KEEPALIVE const char* orvex_live_append(Live* live, double open, double high, double low, double close,
                                                   double volume, const char* date, std::size_t size) {
  return live->change([&](LiveSeries& series) { series.append({open, high, low, close, volume, {date, size}}); });
}

EMSCRIPTEN_KEEPALIVE const char* orvex_live_append_rows(Live* live, const double* numbers, int count, unsigned columns,
                                                        const char* dates, const std::uint32_t* sizes) {
  return live->change([&](LiveSeries& series) {
    Records{numbers, count, columns, dates, sizes}.use([&](const PriceRows& rows) { series.append(rows); });
  });
}

EMSCRIPTEN_KEEPALIVE const char* orvex_live_revise(Live* live, double open, double high, double low, double close,
                                                   double volume, const char* date, std::size_t size) {
  return live->change([&](LiveSeries& series) { series.revise({open, high, low, close, volume, {date, size}}); });
}

/// A call of the calculation at that place of the catalogue, to be given its arguments and then to be kept.
EMSCRIPTEN_KEEPALIVE Kept* orvex_kept_begin(std::size_t calculation) {
  return orNothing([&] { return std::make_unique<Kept>(Kept{orvex::web::calculations().at(calculation)}).release(); });
}

EMSCRIPTEN_KEEPALIVE bool orvex_kept_number(Kept* kept, std::size_t argument, double value) {
  return orNothing([&] { return kept->give(argument, value), true; });
}
EMSCRIPTEN_KEEPALIVE bool orvex_kept_text(Kept* kept, std::size_t argument, const char* value, std::size_t size) {
  return orNothing([&] { return kept->give(argument, std::string(value, size)), true; });
}
EMSCRIPTEN_KEEPALIVE bool orvex_kept_column(Kept* kept, std::size_t argument, const Kept* other, std::size_t column) {
  return orNothing([&] { return kept->give(argument, LiveColumn{other->result, column}), true; });
}

/// Keeps it on the series, which then owns it.
EMSCRIPTEN_KEEPALIVE const char* orvex_kept_keep(Kept* kept, Live* live) {
  return live->keep(*kept);
}
/// Lets go of one that was not kept.
EMSCRIPTEN_KEEPALIVE void orvex_kept_end(Kept* kept) {
  const std::unique_ptr<Kept> ended(kept);
}
/// Lets go of one that is kept.
EMSCRIPTEN_KEEPALIVE const char* orvex_kept_drop(Kept* kept, Live* live) {
  return live->drop(*kept);
}

/// How many records its columns are of.
EMSCRIPTEN_KEEPALIVE int orvex_kept_count(const Kept* kept) {
  return kept->result->count();
}
/// How many of their rows stand as they were when this was asked last.
EMSCRIPTEN_KEEPALIVE int orvex_kept_standing(Kept* kept) {
  return std::exchange(kept->standing, kept->result->count());
}
/// How many columns there are: none until the call has succeeded once.
EMSCRIPTEN_KEEPALIVE std::size_t orvex_kept_columns(const Kept* kept) {
  return kept->result->columns().size();
}
EMSCRIPTEN_KEEPALIVE const char* orvex_kept_name(const Kept* kept, std::size_t column) {
  return orvex::web::give(kept->result->columns()[column]->getName());
}
EMSCRIPTEN_KEEPALIVE const double* orvex_kept_rows(const Kept* kept, std::size_t column) {
  return kept->result->columns()[column]->values().data();
}
EMSCRIPTEN_KEEPALIVE double orvex_kept_last(const Kept* kept, std::size_t column) {
  return kept->result->last(column);
}
/// The computed rows of a column.
EMSCRIPTEN_KEEPALIVE int orvex_kept_first_row(const Kept* kept, std::size_t column) {
  return kept->result->computed()[column].first;
}
EMSCRIPTEN_KEEPALIVE int orvex_kept_last_row(const Kept* kept, std::size_t column) {
  return kept->result->computed()[column].last;
}
EMSCRIPTEN_KEEPALIVE const char* orvex_kept_error(const Kept* kept) {
  const auto& error = kept->result->error();
  return error ? orvex::web::giveError(*error) : nullptr;
}

}  // extern "C"

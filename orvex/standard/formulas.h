#pragma once

#include <cstddef>
#include <type_traits>

#include "orvex/standard/arc_tangent.h"
#include "orvex/standard/numbers.h"

/// The definitions in which a row comes from one row of each column: of numbers `x`, one a column, and of parameters
/// `p`. Each is written once, for steps and kernels.
namespace orvex::inline ORVEX_COUNTS::standard {

/// The parameters of a formula. Kernels may give divisors in their place, made once for all that they divide.
struct Parameters {
  double values[4];

  double operator[](std::size_t i) const { return values[i]; }
};

/// The squared share by which Kaufman's average moves, of a move and of the way that it took.
template <class T>
T efficiencyShare(T move, T path, int turn) {
  constexpr double slowest = 2.0 / 31.0, span = 2.0 / 3.0 - 2.0 / 31.0;
  const T one = spread(1.0, move);
  const T efficiency = whereGreater(path, move, magnitude(overOr(move, path, 1.0, turn)), one);
  const T share = efficiency * spread(span, move) + spread(slowest, move);
  return share * share;
}

/// The largest of the bar's own range and the distances of both its ends from the close before.
template <class T>
T rangeFrom(T high, T low, T close) {
  return larger(high - low, larger(magnitude(high - close), magnitude(low - close)));
}

template <class T>
T directionalMove(T way, T other) {
  const T none = spread(0.0, way);
  return whereGreater(way, other, larger(way, none), none);
}

template <class T>
T directionalIndex(T plus, T minus, int turn) {
  const T both = minus + plus;
  const T index = spread(100.0, plus) * overOr(magnitude(minus - plus), both, 0.0, turn);
  return whereGreater(both, spread(0.0, plus), index, spread(-1.0, plus));
}

namespace formulas {

// clang-format off
#define ORVEX_FORMULA(name, count, ...) ORVEX_FORMULA_OF(name, count, false, __VA_ARGS__)
/// One that is finite only where all of its columns are.
#define ORVEX_TELLING_FORMULA(name, count, ...) ORVEX_FORMULA_OF(name, count, true, __VA_ARGS__)
#define ORVEX_FORMULA_OF(name, count, isTelling, ...)                                         \
  struct name {                                                                               \
    static constexpr int columns = count;                                                     \
    static constexpr bool tells = isTelling;                                                  \
    template <class T, class Given = Parameters>                                              \
    static T of(const T (&x)[count], const Given& p, int turn) {                              \
      const auto number = [&](double value) { return spread(value, x[0]); };                  \
      static_cast<void>(number), static_cast<void>(p), static_cast<void>(turn);               \
      return __VA_ARGS__;                                                                     \
    }                                                                                         \
  };

ORVEX_TELLING_FORMULA(Same, 1, x[0])
ORVEX_TELLING_FORMULA(Square, 1, x[0] * x[0])
ORVEX_FORMULA(PercentOf, 1, part(x[0], p[0]) * number(100))
/// Of an age of p[1] records at most, how far from that it is.
ORVEX_FORMULA(Freshness, 1, number(p[0]) * (number(p[1]) - x[0]))
ORVEX_FORMULA(Magnitude, 1, magnitude(x[0]))
ORVEX_TELLING_FORMULA(Sum, 2, x[0] + x[1])
ORVEX_TELLING_FORMULA(Difference, 2, x[0] - x[1])
ORVEX_FORMULA(TimesDifference, 2, number(p[0]) * (x[0] - x[1]))
ORVEX_FORMULA(Product, 2, x[0] * x[1])
ORVEX_FORMULA(Distance, 2, magnitude(x[0] - x[1]))
ORVEX_TELLING_FORMULA(Middle, 2, (x[0] + x[1]) * number(0.5))
ORVEX_FORMULA(Apart, 2, x[0] + x[1] * number(p[0]))
ORVEX_FORMULA(Quotient, 2, over(x[0], x[1], turn))
ORVEX_FORMULA(Ratio, 2, overOr(x[0], x[1], p[0], turn))
ORVEX_FORMULA(Percentage, 2, number(100) * overOr(x[0], x[1], 0, turn))
ORVEX_FORMULA(Rate, 2, overOr(x[0] - x[1], x[1], 0, turn))
ORVEX_FORMULA(PercentRate, 2, overOr(x[0] - x[1], x[1], 0, turn) * number(100))
ORVEX_FORMULA(ShareOfBoth, 2, number(100) * overOr(x[0], x[0] + x[1], 0, turn))
ORVEX_FORMULA(Balance, 2, number(100) * overOr(x[0] - x[1], x[0] + x[1], 0, turn))
ORVEX_FORMULA(Rise, 2, larger(x[0] - x[1], number(0)))
ORVEX_FORMULA(WhereGreater, 3, whereGreater(x[0], x[1], x[2], number(0)))

// What is made of averages of averages.
ORVEX_FORMULA(TwiceLess, 2, number(2) * x[0] - x[1])
ORVEX_FORMULA(ThriceLess, 3, number(3) * x[0] - number(3) * x[1] + x[2])
ORVEX_FORMULA(Ahead, 2, x[0] + (x[0] - x[1]))
ORVEX_FORMULA(Combined, 4, number(p[0]) * x[0] + number(p[1]) * x[1] + number(p[2]) * x[2] + number(p[3]) * x[3])
/// Of a value, that of the window's beginning, and the mean step of its P = p[0] steps.
ORVEX_FORMULA(Efficiency, 3, efficiencyShare(x[0] - x[1], x[2] * number(p[0]), turn))

// Prices: high, low, close (before), then open or volume.
ORVEX_TELLING_FORMULA(AveragePrice, 4, (x[0] + x[1] + x[2] + x[3]) * number(0.25))
ORVEX_TELLING_FORMULA(TypicalPrice, 3, part(x[0] + x[1] + x[2], 3))
ORVEX_TELLING_FORMULA(WeightedClose, 3, (x[0] + x[1] + number(2) * x[2]) * number(0.25))
ORVEX_TELLING_FORMULA(TrueRange, 3, rangeFrom(x[0], x[1], x[2]))
ORVEX_FORMULA(BuyingPressure, 3, x[0] - smaller(x[1], x[2]))
ORVEX_FORMULA(BalanceOfPower, 4, overOr(x[2] - x[3], larger(x[0] - x[1], number(0)), 0, turn))
ORVEX_FORMULA(Place, 3, number(100) * overOr(x[2] - x[1], x[0] - x[1], 0, turn))
ORVEX_FORMULA(PlaceBelow, 3, number(-100) * overOr(x[0] - x[2], x[0] - x[1], 0, turn))
ORVEX_FORMULA(MoneyFlow, 4, overOr((x[2] - x[1]) - (x[0] - x[2]), larger(x[0] - x[1], number(0)), 0, turn) * x[3])
ORVEX_FORMULA(Shadows, 4, x[0] - x[1] - magnitude(x[2] - x[3]))
ORVEX_FORMULA(Largest, 3, larger(x[0], larger(x[1], x[2])))
ORVEX_FORMULA(Smallest, 3, smaller(x[0], smaller(x[1], x[2])))
/// The three cycles' pressures and ranges.
ORVEX_FORMULA(Ultimate, 6, part(number(100) * (number(4) * overOr(x[0], x[3], 0, turn) +
                                               number(2) * overOr(x[1], x[4], 0, turn + 1) +
                                               overOr(x[2], x[5], 0, turn)), 7))

// Direction. How far the value went its way: `x[0] - x[1]`, where that is more than 0 and than the other's `x[2] - x[3]`.
ORVEX_FORMULA(DirectionalMove, 4, directionalMove(x[0] - x[1], x[2] - x[3]))
/// 100 x the difference of both sides in their sum, of the sides and the range; below 0 where there is neither.
ORVEX_FORMULA(DirectionalIndex, 3, directionalIndex(number(100) * overOr(x[0], x[2], 0, turn),
                                                    number(100) * overOr(x[1], x[2], 0, turn + 1), turn))

// The least-squares line of the mean weighted 1 (oldest) to P, w, and the plain one, m: its slope is 6 (w - m) / (P - 1),
// and it ends at 3 w - 2 m. p[0] is P - 1.
ORVEX_FORMULA(LineEnd, 2, number(3) * x[0] - number(2) * x[1])
ORVEX_FORMULA(Correlation, 3, overOr(x[0], root(x[1] * x[2]), 0, turn))
ORVEX_FORMULA(LineSlope, 2, part(number(6) * (x[0] - x[1]), p[0]))
ORVEX_FORMULA(LineStart, 2, (number(3) * x[0] - number(2) * x[1]) - part(number(6) * (x[0] - x[1]), p[0]) * number(p[0]))
ORVEX_FORMULA(LineAhead, 2, (number(3) * x[0] - number(2) * x[1]) + part(number(6) * (x[0] - x[1]), p[0]))
ORVEX_FORMULA(Degrees, 1, arcTangentOf(x[0]) * number(DegreesPerRadian))
#undef ORVEX_TELLING_FORMULA
#undef ORVEX_FORMULA
#undef ORVEX_FORMULA_OF
// clang-format on

}  // namespace formulas

/// Types in an order.
template <class... Types>
struct List {
  static constexpr std::size_t size = sizeof...(Types);

  /// The place of a type.
  template <class Type>
  static constexpr std::size_t index() {
    constexpr bool found[] = {std::is_same_v<Type, Types>...};
    std::size_t i = 0;
    while (!found[i]) ++i;
    return i;
  }
};

/// All of them, as the tables of kernels have them.
using Formulas =
    List<formulas::Same, formulas::Square, formulas::PercentOf, formulas::Freshness, formulas::Magnitude, formulas::Sum,
         formulas::Difference, formulas::TimesDifference, formulas::Product, formulas::Distance, formulas::Middle,
         formulas::Apart, formulas::Quotient, formulas::Ratio, formulas::Percentage, formulas::Rate,
         formulas::PercentRate, formulas::ShareOfBoth, formulas::Balance, formulas::Rise, formulas::WhereGreater,
         formulas::TwiceLess, formulas::ThriceLess, formulas::Ahead, formulas::Combined, formulas::Efficiency,
         formulas::AveragePrice, formulas::TypicalPrice, formulas::WeightedClose, formulas::TrueRange,
         formulas::BuyingPressure, formulas::BalanceOfPower, formulas::Place, formulas::PlaceBelow, formulas::MoneyFlow,
         formulas::Shadows, formulas::Largest, formulas::Smallest, formulas::Ultimate, formulas::DirectionalMove,
         formulas::DirectionalIndex, formulas::LineEnd, formulas::Correlation, formulas::LineSlope, formulas::LineStart,
         formulas::LineAhead, formulas::Degrees>;

}  // namespace orvex::inline ORVEX_COUNTS::standard

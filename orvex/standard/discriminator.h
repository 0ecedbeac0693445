#pragma once

#include <cstddef>

#include "orvex/standard/arc_tangent.h"
#include "orvex/standard/numbers.h"

/// John Ehlers' homodyne discriminator (Rocket Science for Traders, 2001), as TA-Lib computes it, written
/// once for steps and kernels.
namespace orvex::inline ORVEX_COUNTS::standard {

/// What it carries from record to record is an array of numbers; these are their places. Of what is filtered further
/// the values of the records before are kept, the newest first; all are 0 to begin with.
struct Discriminator {
  static constexpr std::size_t detrended = 0;   // 9 records, the price less its trend; in phase is that 3 records later
  static constexpr std::size_t quadrature = 9;  // 6 records, that a quarter of a cycle ahead
  static constexpr std::size_t inPhaseMean = 15;  // both turned on and smoothed
  static constexpr std::size_t quadratureMean = 16;
  static constexpr std::size_t real = 17;  // their product with that of the record before
  static constexpr std::size_t imaginary = 18;
  static constexpr std::size_t period = 19;
  static constexpr std::size_t smoothPeriod = 20;  // the length of the dominant cycle
  static constexpr std::size_t values = 21;

  /// Takes a record's smoothed price in: its own and those of two, four and six records before. The numbers carried are
  /// plain where `T` is checked: of lengths of cycles nothing is too large.
  template <class T, class Carried>
  static void take(Carried (&state)[values], const T (&smooth)[4], int turn) {
    const auto number = [&](double value) { return spread(value, smooth[0]); };
    const auto at = [&](std::size_t place) { return T(state[place]); };
    const T scale = number(0.075) * at(period) + number(0.54);
    // The transform's odd filter, four weights two records apart, scaled by how long the cycle was.
    const auto hilbert = [&](const T& newest, const T& two, const T& four, const T& six) {
      return (number(0.0962) * newest - number(0.0962) * six - number(0.5769) * four + number(0.5769) * two) * scale;
    };
    const T flat = hilbert(smooth[0], smooth[1], smooth[2], smooth[3]);
    const T ahead = hilbert(flat, at(detrended + 1), at(detrended + 3), at(detrended + 5));
    const T along = at(detrended + 2);
    const T advancedI = hilbert(along, at(detrended + 4), at(detrended + 6), at(detrended + 8));
    const T advancedQ = hilbert(ahead, at(quadrature + 1), at(quadrature + 3), at(quadrature + 5));
    const T beforeI = at(inPhaseMean), beforeQ = at(quadratureMean);
    const T nowQ = number(0.2) * (ahead + advancedI) + number(0.8) * beforeQ;
    const T nowI = number(0.2) * (along - advancedQ) + number(0.8) * beforeI;
    const T nowReal = number(0.2) * (nowI * beforeI + nowQ * beforeQ) + number(0.8) * at(real);
    const T nowImaginary = number(0.2) * (nowI * beforeQ - nowQ * beforeI) + number(0.8) * at(imaginary);
    for (std::size_t i = quadrature - 1; i > detrended; --i) state[i] = state[i - 1];
    for (std::size_t i = inPhaseMean - 1; i > quadrature; --i) state[i] = state[i - 1];
    state[detrended] = flat;
    state[quadrature] = ahead;
    state[inPhaseMean] = nowI;
    state[quadratureMean] = nowQ;
    state[real] = nowReal;
    state[imaginary] = nowImaginary;
    const Carried share = spread(0.8, state[period]), rest = spread(0.2, state[period]);
    state[period] = rest * held(state[imaginary], state[real], state[period], turn) + share * state[period];
    state[smoothPeriod] =
        spread(0.33, state[period]) * state[period] + spread(0.67, state[period]) * state[smoothPeriod];
  }

  /// What is shown of a record once it is taken in: the length of the dominant cycle or, as two columns, the price's
  /// components, in phase and a quarter of a cycle ahead.
  template <class T, class Carried, std::size_t Columns>
  static void show(const Carried (&state)[values], T (&columns)[Columns]) {
    static_assert(Columns == 1 || Columns == 2);
    if constexpr (Columns == 1) {
      columns[0] = state[smoothPeriod];
    } else {
      columns[0] = state[detrended + 3];
      columns[1] = state[quadrature];
    }
  }

  /// The arc tangent of a quotient in degrees, from -90 to 90, for an `along` that is not 0. A quotient beyond any
  /// double is that of a right angle.
  template <class T>
  static T angle(const T& up, const T& along, int turn) {
    return arcTangentOf(over(up, along, turn)) * spread(DegreesPerRadian, up);
  }

 private:
  /// The length of the cycle that turns by such an angle a record, held near the one before and within 6 and 50. Of an
  /// angle of 0 it has no end, and is held back like any other that is too long.
  template <class T>
  static T held(const T& up, const T& along, const T& before, int turn) {
    const auto number = [&](double value) { return spread(value, before); };
    const T zero = number(0), divisor = whereEqual(along, zero, number(1), along);
    const T turned = over(number(360), angle(up, divisor, turn), turn + 1);
    const T length = whereEqual(along, zero, before, whereEqual(up, zero, before, turned));
    const T nearby = larger(number(0.67) * before, smaller(number(1.5) * before, length));
    return smaller(number(50), larger(number(6), nearby));
  }
};

}  // namespace orvex::inline ORVEX_COUNTS::standard

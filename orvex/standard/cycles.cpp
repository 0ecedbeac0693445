#include <algorithm>
#include <array>
#include <cstddef>

#include "orvex/standard/elementary.h"
#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

// John Ehlers' measure of the dominant cycle (Rocket Science for Traders, 2001), as the field's most used library
// computes it. Everything is carried from record to record in one structure, histories included: each is as long as
// its filter looks back.
namespace orvex::inline ORVEX_COUNTS {

namespace standard {

namespace {

/// The last eight values of a column, of ages 0 (the newest) to 7.
class History {
 public:
  void push(double value) {
    newest_ = (newest_ + 1) % length;
    values_[newest_] = value;
  }
  double operator[](std::size_t age) const { return values_[(newest_ + length - age) % length]; }

 private:
  static constexpr std::size_t length = 8;

  std::array<double, length> values_{};
  std::size_t newest_ = 0;
};

/// What the discriminator carries.
struct CycleState {
  History smooth, detrended, quadrature;
  History inPhase;  // the detrended price of three records before
  double inPhase2 = 0.0, quadrature2 = 0.0;
  double real = 0.0, imaginary = 0.0;
  double period = 0.0, smoothPeriod = 0.0;
  double phase = 0.0;  // of the adaptive average, in degrees
  double adaptive = 0.0, following = 0.0;
  double dominantPhase = 0.0;
  double sine = 0.0, leadSine = 0.0;
  std::array<double, 3> trend{};  // the last averages over a cycle, the newest first
  int daysInTrend = 0;
};

/// The transform's odd filter, four weights two records apart, scaled by how long the cycle was.
template <class T>
T hilbert(const History& x, T scale) {
  return (0.0962 * T(x[0]) - 0.0962 * T(x[6]) - 0.5769 * T(x[4]) + 0.5769 * T(x[2])) * scale;
}

/// The arc tangent of a quotient in degrees, from -90 to 90, for an `along` that is not 0. A quotient beyond any double
/// is that of a right angle.
inline double angle(double up, double along) {
  return arcTangent(up / along) * DegreesPerRadian;
}

/// The length of a cycle, held near the one before and within 6 and 50.
inline double heldNear(double before, double period) {
  if (period > 1.5 * before) period = 1.5 * before;
  if (period < 0.67 * before) period = 0.67 * before;
  if (period < 6.0) period = 6.0;
  if (period > 50.0) period = 50.0;
  return period;
}

/// Takes a record's smoothed price in.
template <class T>
void discriminate(CycleState& s, T smoothed) {
  const T scale = 0.075 * T(s.period) + 0.54;
  s.smooth.push(smoothed);
  s.detrended.push(hilbert(s.smooth, scale));
  s.quadrature.push(hilbert(s.detrended, scale));
  s.inPhase.push(s.detrended[3]);
  const T advancedI = hilbert(s.inPhase, scale), advancedQ = hilbert(s.quadrature, scale);
  const T beforeI = s.inPhase2, beforeQ = s.quadrature2;
  const T nowQ = 0.2 * (T(s.quadrature[0]) + advancedI) + 0.8 * beforeQ;
  const T nowI = 0.2 * (T(s.inPhase[0]) - advancedQ) + 0.8 * beforeI;
  s.inPhase2 = nowI;
  s.quadrature2 = nowQ;
  const T real = 0.2 * (nowI * beforeI + nowQ * beforeQ) + 0.8 * T(s.real);
  const T imaginary = 0.2 * (nowI * beforeQ - nowQ * beforeI) + 0.8 * T(s.imaginary);
  s.real = real;
  s.imaginary = imaginary;
  const double before = s.period;
  const bool turns = imaginary != T(0) && real != T(0);
  // Of an angle of 0 the cycle has no end, and is held back like any other that is too long.
  const double held = heldNear(before, turns ? 360.0 / angle(imaginary, real) : before);
  const double period = 0.2 * held + 0.8 * before;
  s.period = period;
  s.smoothPeriod = 0.33 * period + 0.67 * s.smoothPeriod;
}

/// The price smoothed by weights 4 to 1, from the record on at which the discriminator begins.
Series smoothedPrice(Call& call, const Series& x, int early) {
  return weighted(call, x.from(x.first + early), 4);
}

constexpr int ShortStart = 9;   // records before the smoothing of periods alone
constexpr int LongStart = 34;   // and where phases are computed too
constexpr int ShortFirst = 32;  // after which the first row stands
constexpr int LongFirst = 63;

}  // namespace

std::array<Series, 2> mesa(Call& call, const Series& x, double fastLimit, double slowLimit) {
  const Series smooth = smoothedPrice(call, x, ShortStart);
  auto both = call.columns<2>(smooth.first, CycleState(), [&]<class T>(At<T> at, CycleState& s, int r) {
    discriminate(s, at(smooth, r));
    const T inPhase = s.inPhase[0];
    const T phase = inPhase != T(0) ? T(angle(s.quadrature[0], inPhase)) : T(0);
    const T turned = larger(T(s.phase) - phase, T(1));
    s.phase = phase;
    const T share = turned > T(1) ? larger(fastLimit / turned, T(slowLimit)) : T(fastLimit);
    const T adaptive = share * at(x, r) + (1 - share) * T(s.adaptive);
    const T following = 0.5 * share * adaptive + (1 - 0.5 * share) * T(s.following);
    s.adaptive = adaptive;
    s.following = following;
    return std::array{adaptive, following};
  });
  for (Series& one : both) one = call.shown(one, x.first + ShortFirst);
  return both;
}

namespace {

/// The columns that `value(at, state, r)` reads off the discriminator, shown from `first` records after the price's
/// first.
template <int Columns, class Value>
std::array<Series, Columns> ofCycle(Call& call, const Series& x, int early, int first, Value value) {
  const Series smooth = smoothedPrice(call, x, early);
  auto made = call.columns<Columns>(smooth.first, CycleState(), [&](auto at, CycleState& s, int r) {
    discriminate(s, at(smooth, r));
    return value(at, s, smooth, r);
  });
  for (Series& one : made) one = call.shown(one, x.first + first);
  return made;
}

/// The sines and cosines of the equal parts of a circle, for cycles of up to 50 records.
class Circles {
 public:
  struct Point {
    double sine, cosine;
  };

  /// The points of a cycle of that length.
  static const Point* of(int length) {
    static const Circles all;
    return all.points_.data() + before(length);
  }

 private:
  static constexpr int longest = 50;

  Circles() {
    for (int length = 1; length <= longest; ++length) {
      for (int i = 0; i < length; ++i) {
        const double angle = i * (2.0 * Pi) / length;
        points_[before(length) + static_cast<std::size_t>(i)] = {sine(angle), cosine(angle)};
      }
    }
  }

  /// How many points shorter cycles have.
  static constexpr std::size_t before(int length) { return static_cast<std::size_t>(length * (length - 1) / 2); }

  static constexpr std::size_t allPoints = longest * (longest + 1) / 2;

  std::array<Point, allPoints> points_;
};

/// The phase of the dominant cycle in degrees, from -45 to 315: the smoothed price of one cycle against a sine and a
/// cosine of its length. Prices before the first smoothed one count as 0.
template <class T>
T dominantPhase(At<T> at, CycleState& s, const Series& smooth, int r) {
  const int length = static_cast<int>(s.smoothPeriod + 0.5);
  const Circles::Point* const points = Circles::of(length);
  const int seen = std::min(length, static_cast<int>(r - smooth.first) + 1);
  T real = 0, imaginary = 0;
  for (int i = 0; i < seen; ++i) {
    const T price = at(smooth, r - i);
    real += points[i].sine * price;
    imaginary += points[i].cosine * price;
  }
  T phase = s.dominantPhase;
  if (imaginary != T(0)) {
    phase = angle(real, imaginary);
  } else if (real < T(0)) {
    phase = phase - 90;
  } else if (real > T(0)) {
    phase = phase + 90;
  }
  phase = phase + 90;
  // What the smoothing of four records held back.
  phase = phase + 360 / T(s.smoothPeriod);
  if (imaginary < T(0)) phase = phase + 180;
  if (phase > T(315)) phase = phase - 360;
  s.dominantPhase = phase;
  return phase;
}

/// The mean of the prices of one cycle, smoothed by weights 4 to 1.
template <class T>
T trendline(At<T> at, CycleState& s, const Series& x, int r) {
  const int length = static_cast<int>(s.smoothPeriod + 0.5);
  T total = 0;
  for (int i = 0; i < length; ++i) total += at(x, r - i);
  const T mean = length > 0 ? total / length : total;
  const T line = (4 * mean + 3 * T(s.trend[0]) + 2 * T(s.trend[1]) + T(s.trend[2])) / 10;
  s.trend = {mean, s.trend[0], s.trend[1]};
  return line;
}

}  // namespace

}  // namespace standard

using namespace standard;

Standard::Result Standard::HT_DCPERIOD(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_DCPERIOD">(data, Alias).compute([&](Call& call) {
    return ofCycle<1>(
        call, call.take(Source), ShortStart, ShortFirst,
        []<class T>(At<T>, CycleState& s, const Series&, int) { return std::array{T(s.smoothPeriod)}; })[0];
  });
}

Standard::Result Standard::HT_DCPHASE(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_DCPHASE">(data, Alias).compute([&](Call& call) {
    return ofCycle<1>(call, call.take(Source), LongStart, LongFirst,
                      [&](auto at, CycleState& s, const Series& smooth, int r) {
                        return std::array{dominantPhase(at, s, smooth, r)};
                      })[0];
  });
}

Standard::Result Standard::HT_PHASOR(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_PHASOR">(data, Alias).compute([&](Call& call) {
    const auto parts = ofCycle<2>(call, call.take(Source), ShortStart, ShortFirst,
                                  []<class T>(At<T>, CycleState& s, const Series&, int) {
                                    return std::array{T(s.inPhase[0]), T(s.quadrature[0])};
                                  });
    return std::vector<Named>{{InPhaseSuffix, parts[0]}, {QuadratureSuffix, parts[1]}};
  });
}

Standard::Result Standard::HT_SINE(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_SINE">(data, Alias).compute([&](Call& call) {
    const auto waves =
        ofCycle<2>(call, call.take(Source), LongStart, LongFirst,
                   [&]<class T>(At<T> at, CycleState& s, const Series& smooth, int r) {
                     const T phase = dominantPhase(at, s, smooth, r);
                     return std::array{sine(phase / DegreesPerRadian), sine((phase + 45) / DegreesPerRadian)};
                   });
    return std::vector<Named>{{"", waves[0]}, {LeadSuffix, waves[1]}};
  });
}

Standard::Result Standard::HT_TRENDMODE(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_TRENDMODE">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source);
    return ofCycle<1>(call, x, LongStart, LongFirst,
                      [&]<class T>(At<T> at, CycleState& s, const Series& smooth, int r) {
                        const T phaseBefore = s.dominantPhase, sineBefore = s.sine, leadBefore = s.leadSine;
                        const T phase = dominantPhase(at, s, smooth, r);
                        const T now = sine(phase / DegreesPerRadian), lead = sine((phase + 45) / DegreesPerRadian);
                        s.sine = now;
                        s.leadSine = lead;
                        const T line = trendline(at, s, x, r);
                        bool isTrend = true;
                        if ((now > lead && sineBefore <= leadBefore) || (now < lead && sineBefore >= leadBefore)) {
                          s.daysInTrend = 0;
                          isTrend = false;
                        }
                        ++s.daysInTrend;
                        if (s.daysInTrend < 0.5 * s.smoothPeriod) isTrend = false;
                        // A phase that goes on at about the pace of the cycle tells of a cycle.
                        const T turned = phase - phaseBefore, pace = 360 / T(s.smoothPeriod);
                        if (turned > 0.67 * pace && turned < 1.5 * pace) isTrend = false;
                        const T price = at(smooth, r);
                        if (line != T(0) && magnitude((price - line) / line) >= T(0.015)) isTrend = true;
                        return std::array{T(isTrend ? 1 : 0)};
                      })[0];
  });
}

Standard::Result Standard::HT_TRENDLINE(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_TRENDLINE">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source);
    return ofCycle<1>(call, x, LongStart, LongFirst, [&](auto at, CycleState& s, const Series&, int r) {
      return std::array{trendline(at, s, x, r)};
    })[0];
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "orvex/standard/discriminator.h"
#include "orvex/standard/elementary.h"
#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

// John Ehlers' measure of the dominant cycle (Rocket Science for Traders, 2001), as TA-Lib computes
// it, and what is made of it.
namespace orvex::inline ORVEX_COUNTS {

namespace standard {

namespace {

using kernels::StandardTable;
using Carried = double[Discriminator::values];

struct DiscriminatorState {
  Carried carried{};
};

/// The price smoothed by weights 4 to 1, from the record on at which the discriminator begins.
Series smoothedPrice(Call& call, const Series& x, int early) {
  return weighted(call, x.from(x.first + early), 4);
}

constexpr int ShortStart = 9;   // records before the smoothing of periods alone
constexpr int LongStart = 34;   // and where phases are computed too
constexpr int ShortFirst = 32;  // after which the first row stands
constexpr int LongFirst = 63;

/// The columns that the discriminator of smoothed prices shows.
template <int Columns, class Kernel>
std::array<Series, Columns> discriminated(Call& call, const Series& smooth, Kernel kernel) {
  return call.columns<Columns>(
      smooth.first,
      [&](kernels::Records records, const std::array<double*, Columns>& rows, DiscriminatorState& state) {
        return call.proves(kernel(records, rows, state.carried), records, smooth, 6);
      },
      DiscriminatorState(),
      [&]<class T>(At<T> at, DiscriminatorState& state, int r) {
        const T ages[] = {at(smooth, r), at(smooth, r - 2), at(smooth, r - 4), at(smooth, r - 6)};
        Discriminator::take(state.carried, ages, 0);
        T columns[Columns];
        Discriminator::show(state.carried, columns);
        return std::to_array(columns);
      });
}

/// The length of the dominant cycle.
Series dominantCycle(Call& call, const Series& smooth) {
  return discriminated<1>(
      call, smooth, [&](kernels::Records records, const std::array<double*, 1>& rows, Carried& carried) {
        return kernels::run(&StandardTable::dominantCycle, rowsOf(smooth.column), &carried[0], records, rows[0]);
      })[0];
}

/// The price's components, in phase and a quarter of a cycle ahead.
std::array<Series, 2> phasor(Call& call, const Series& smooth) {
  return discriminated<2>(
      call, smooth, [&](kernels::Records records, const std::array<double*, 2>& rows, Carried& carried) {
        return kernels::run(&StandardTable::phasor, rowsOf(smooth.column), &carried[0], records, rows[0], rows[1]);
      });
}

/// What the adaptive average carries.
struct AdaptiveState {
  double phase = 0.0;  // in degrees
  double adaptive = 0.0, following = 0.0;
};

}  // namespace

std::array<Series, 2> mesa(Call& call, const Series& x, double fastLimit, double slowLimit) {
  const auto components = phasor(call, smoothedPrice(call, x, ShortStart));
  const Series &inPhase = components[0], &quadrature = components[1];
  auto both = call.columns<2>(inPhase.first, AdaptiveState(), [&]<class T>(At<T> at, AdaptiveState& s, int r) {
    const T along = at(inPhase, r);
    const T phase = along != T(0) ? T(Discriminator::angle<double>(at(quadrature, r), along, 0)) : T(0);
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

/// What is carried about the phase of the dominant cycle and about the trend.
struct CycleState {
  double phase = 0.0;  // in degrees
  double sine = 0.0, leadSine = 0.0;
  std::array<double, 3> trend{};  // the last averages over a cycle, the newest first
  int daysInTrend = 0;
};

/// The columns that `value(at, state, smooth, length, r)` makes of smoothed prices and the length of their cycle, shown
/// where phases stand.
template <int Columns, class Value>
std::array<Series, Columns> ofCycle(Call& call, const Series& x, Value value) {
  const Series smooth = smoothedPrice(call, x, LongStart), length = dominantCycle(call, smooth);
  auto made = call.columns<Columns>(smooth.first, CycleState(), [&](auto at, CycleState& s, int r) {
    return value(at, s, smooth, at(length, r), r);
  });
  for (Series& one : made) one = call.shown(one, x.first + LongFirst);
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

/// The records of a cycle, which is not below 0.
int lengthOf(double cycle) {
  return static_cast<int>(std::floor(cycle + 0.5));
}

/// The phase of the dominant cycle in degrees, from -45 to 315: the smoothed price of one cycle against a sine and a
/// cosine of its length. Prices before the first smoothed one count as 0.
template <class T>
T dominantPhase(At<T> at, CycleState& s, const Series& smooth, double cycle, int r) {
  const int length = lengthOf(cycle);
  const Circles::Point* const points = Circles::of(length);
  const int seen = std::min(length, static_cast<int>(r - smooth.first) + 1);
  T real = 0, imaginary = 0;
  for (int i = 0; i < seen; ++i) {
    const T price = at(smooth, r - i);
    real += points[i].sine * price;
    imaginary += points[i].cosine * price;
  }
  T phase = s.phase;
  if (imaginary != T(0)) {
    phase = Discriminator::angle<double>(real, imaginary, 0);
  } else if (real < T(0)) {
    phase = phase - 90;
  } else if (real > T(0)) {
    phase = phase + 90;
  }
  phase = phase + 90;
  // What the smoothing of four records held back.
  phase = phase + 360 / T(cycle);
  if (imaginary < T(0)) phase = phase + 180;
  if (phase > T(315)) phase = phase - 360;
  s.phase = phase;
  return phase;
}

/// The mean of the prices of one cycle, smoothed by weights 4 to 1.
template <class T>
T trendline(At<T> at, CycleState& s, const Series& x, double cycle, int r) {
  const int length = lengthOf(cycle);
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
    const Series x = call.take(Source);
    return call.shown(dominantCycle(call, smoothedPrice(call, x, ShortStart)), x.first + ShortFirst);
  });
}

Standard::Result Standard::HT_DCPHASE(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_DCPHASE">(data, Alias).compute([&](Call& call) {
    return ofCycle<1>(call, call.take(Source), [](auto at, CycleState& s, const Series& smooth, double cycle, int r) {
      return std::array{dominantPhase(at, s, smooth, cycle, r)};
    })[0];
  });
}

Standard::Result Standard::HT_PHASOR(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_PHASOR">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source);
    const auto [inPhase, quadrature] = phasor(call, smoothedPrice(call, x, ShortStart));
    return std::vector<Named>{{InPhaseSuffix, call.shown(inPhase, x.first + ShortFirst)},
                              {QuadratureSuffix, call.shown(quadrature, x.first + ShortFirst)}};
  });
}

Standard::Result Standard::HT_SINE(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_SINE">(data, Alias).compute([&](Call& call) {
    const auto waves = ofCycle<2>(
        call, call.take(Source), []<class T>(At<T> at, CycleState& s, const Series& smooth, double cycle, int r) {
          const T phase = dominantPhase(at, s, smooth, cycle, r);
          return std::array{sine(phase / DegreesPerRadian), sine((phase + 45) / DegreesPerRadian)};
        });
    return std::vector<Named>{{"", waves[0]}, {LeadSuffix, waves[1]}};
  });
}

Standard::Result Standard::HT_TRENDMODE(DataRef data, FieldRef Source, Name Alias) {
  return Method<"HT_TRENDMODE">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source);
    return ofCycle<1>(call, x, [&]<class T>(At<T> at, CycleState& s, const Series& smooth, double cycle, int r) {
      const T phaseBefore = s.phase, sineBefore = s.sine, leadBefore = s.leadSine;
      const T phase = dominantPhase(at, s, smooth, cycle, r);
      const T now = sine(phase / DegreesPerRadian), lead = sine((phase + 45) / DegreesPerRadian);
      s.sine = now;
      s.leadSine = lead;
      const T line = trendline(at, s, x, cycle, r);
      bool isTrend = true;
      if ((now > lead && sineBefore <= leadBefore) || (now < lead && sineBefore >= leadBefore)) {
        s.daysInTrend = 0;
        isTrend = false;
      }
      ++s.daysInTrend;
      if (s.daysInTrend < 0.5 * cycle) isTrend = false;
      // A phase that goes on at about the pace of the cycle tells of a cycle.
      const T turned = phase - phaseBefore, pace = 360 / T(cycle);
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
    return ofCycle<1>(call, x, [&](auto at, CycleState& s, const Series&, double cycle, int r) {
      return std::array{trendline(at, s, x, cycle, r)};
    })[0];
  });
}

}  // namespace orvex::inline ORVEX_COUNTS

// Chains: computations in which each record needs what the record before left, a few numbers (the state). One may be
// made of several stages, an average of an average and what is computed from both: what a record's stages hand to each
// other stays in registers, and the columns that a definition shows are the only ones that are written.
//
// What a chain waits for is itself. But averages forget: two chains that begin with different values end, after a
// while, with the very same bits, and from then on they are one. So the records are cut into stretches that run side by
// side, each from a guess and some records early. Where a stretch, at its own first record, has not met the one before
// it, its rows are computed again until they do; the bits are those of the one chain in any case.
//
// An example: the average of factor 1/2 of a price that stays at 8. The one chain, once it is there, has 8 in every
// row. A stretch that begins with 0 has 4, 6, 7, 7.5 and so on: its distance halves with each record, and in the 54th
// there is no double left between them. It has 8 too, and all that follows is the same. Begun 106 records early, as
// `runChain` does for this factor, it has met the chain at its own first record, and no row is computed twice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "orvex/kernels/extremes.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"

namespace {

constexpr int stretches = 8;

/// A number of each of `Count` stretches.
template <int Count>
struct Abreast {
  using P = Pack<widestLanes>;
  static constexpr int parts = Count / widestLanes;

  P part[parts];

  // Part by part: as a whole it would be copied through memory, in pieces that no processor puts together at once.
  Abreast() = default;
  Abreast(const Abreast& from) { *this = from; }
  Abreast& operator=(const Abreast& from) {
    unroll<0, parts>([&](auto i) { part[i.value] = from.part[i.value]; });
    return *this;
  }

  template <class Operation>
  static Abreast each(const Operation& operation) {
    Abreast result;
    unroll<0, parts>([&](auto i) { result.part[i.value] = operation(i.value); });
    return result;
  }
  static Abreast all(double x) {
    return each([&](int) { return P::all(x); });
  }
  double lane(int k) const { return part[k / widestLanes].v[k % widestLanes]; }

  friend Abreast operator+(const Abreast& a, const Abreast& b) {
    return each([&](int i) { return a.part[i] + b.part[i]; });
  }
  friend Abreast operator-(const Abreast& a, const Abreast& b) {
    return each([&](int i) { return a.part[i] - b.part[i]; });
  }
  friend Abreast operator*(const Abreast& a, const Abreast& b) {
    return each([&](int i) { return a.part[i] * b.part[i]; });
  }
  friend Abreast operator/(const Abreast& a, const Divisor& b) {
    return each([&](int i) { return a.part[i] / b; });
  }
  friend Abreast larger(const Abreast& a, const Abreast& b) {
    return each([&](int i) { return larger(a.part[i], b.part[i]); });
  }
  friend Abreast smaller(const Abreast& a, const Abreast& b) {
    return each([&](int i) { return smaller(a.part[i], b.part[i]); });
  }
  friend Abreast whereGreater(const Abreast& a, const Abreast& b, const Abreast& yes, const Abreast& no) {
    return each([&](int i) { return whereGreater(a.part[i], b.part[i], yes.part[i], no.part[i]); });
  }
  friend Abreast whereEqual(const Abreast& a, const Abreast& b, const Abreast& yes, const Abreast& no) {
    return each([&](int i) { return whereEqual(a.part[i], b.part[i], yes.part[i], no.part[i]); });
  }
  friend Abreast plusProduct(const Abreast& sum, const Abreast& a, const Abreast& b) {
    return each([&](int i) { return plusProduct(sum.part[i], a.part[i], b.part[i]); });
  }
  friend Abreast quotient(const Abreast& x, const Abreast& divisor, int turn) {
    return each([&](int i) { return quotient(x.part[i], divisor.part[i], turn + i); });
  }
  friend Abreast operator/(const Abreast& a, const Abreast& b) {
    return each([&](int i) { return a.part[i] / b.part[i]; });
  }
  friend Abreast magnitude(const Abreast& a) {
    return each([&](int i) { return magnitude(a.part[i]); });
  }
  friend Abreast wholePart(const Abreast& a) {
    return each([&](int i) { return wholePart(a.part[i]); });
  }
  friend Abreast chosen(const double* table, const Abreast& places) {
    return each([&](int i) { return chosen(table, places.part[i]); });
  }
  friend Abreast spread(double number, const Abreast&) { return all(number); }
  friend Abreast over(const Abreast& a, const Abreast& b, int turn) { return quotient(a, b, turn); }
  friend Abreast overOr(const Abreast& a, const Abreast& b, double otherwise, int turn) {
    return whereEqual(b, all(0.0), all(otherwise), quotient(a, b, turn));
  }
};

// The same for the one number of a chain that runs alone.
struct Alone {
  double x;

  static Alone all(double number) { return {number}; }

  friend Alone operator+(Alone a, Alone b) { return {a.x + b.x}; }
  friend Alone operator-(Alone a, Alone b) { return {a.x - b.x}; }
  friend Alone operator*(Alone a, Alone b) { return {a.x * b.x}; }
  friend Alone operator/(Alone a, const Divisor& b) { return {a.x / b}; }
  friend Alone larger(Alone a, Alone b) { return {a.x > b.x ? a.x : b.x}; }
  friend Alone smaller(Alone a, Alone b) { return {a.x < b.x ? a.x : b.x}; }
  friend Alone whereGreater(Alone a, Alone b, Alone yes, Alone no) { return a.x > b.x ? yes : no; }
  friend Alone whereEqual(Alone a, Alone b, Alone yes, Alone no) { return a.x == b.x ? yes : no; }
  friend Alone quotient(Alone a, Alone b, int) { return {a.x / b.x}; }
  friend Alone operator/(Alone a, Alone b) { return {a.x / b.x}; }
  friend Alone magnitude(Alone a) { return {a.x < 0.0 ? 0.0 - a.x : a.x + 0.0}; }
  friend Alone wholePart(Alone a) { return {static_cast<double>(static_cast<int>(a.x))}; }
  friend Alone chosen(const double* table, Alone place) { return {table[static_cast<int>(place.x)]}; }
  friend Alone spread(double number, Alone) { return all(number); }
  friend Alone over(Alone a, Alone b, int) { return a / b; }
  friend Alone overOr(Alone a, Alone b, double otherwise, int) { return b.x == 0.0 ? all(otherwise) : all(a.x / b.x); }
};

/// What every chain is a kind of: `next(state, in, out, turn)` turns the state of the record before into that of the
/// record whose inputs are `in`, and gives its outputs. It is written once for `Abreast` and `Alone`. An infinity or
/// not-a-number in the state stays there, so one look at the end finds it; what the state need not show is looked for
/// record by record: with `checksInputs` inputs that are no numbers or too large, with `checksOutputs` outputs that are
/// no numbers. Each operation is done in `together` stretches at once: in all, since what it gives is waited for, or in
/// fewer where a record has so many operations that these fill the processor, and all would not fit its registers, as
/// they do not in packs of two.
template <int Inputs, int Outputs, int Values>
struct Chain {
  static constexpr int inputs = Inputs, outputs = Outputs, values = Values;
  static constexpr int together = widestLanes == 2 ? stretches / 2 : stretches;
  static constexpr bool checksInputs = false, checksOutputs = false;
};

bool sameBits(const double* a, const double* b, int count) {
  return std::memcmp(a, b, static_cast<std::size_t>(count) * sizeof *a) == 0;
}

/// The rows of a chain's columns from record to record, and what tells whether all are numbers.
template <class C>
class ChainRun {
 public:
  /// Row 0 is the first record's; `state` is that of the record before it.
  ChainRun(const C& chain, const double* const (&in)[C::inputs], double* const (&out)[C::outputs],
           const double (&state)[C::values])
      : chain_(chain) {
    for (int k = 0; k < C::inputs; ++k) in_[k] = in[k];
    for (int k = 0; k < C::outputs; ++k) out_[k] = out[k];
    for (int v = 0; v < C::values; ++v) state_[v] = state[v];
  }

  /// Rows 0 .. count - 1. False where they are not proven. `memory` is how many records it takes to forget all but 1 /
  /// e of the state.
  bool run(std::ptrdiff_t count, double memory) {
    // Until nothing is left of 53 bits, and then until the last roundings have come together.
    const double warmUp = 16.0 + 45.0 * memory;
    std::ptrdiff_t aligned = 0;
    if (warmUp < static_cast<double>(count)) {
      constexpr std::uintptr_t line = 64;
      const std::uintptr_t inside = reinterpret_cast<std::uintptr_t>(out_[0]) % line;
      aligned = least(static_cast<std::ptrdiff_t>((line - inside) % line / sizeof(double)), count);
      const std::ptrdiff_t early = (static_cast<std::ptrdiff_t>(warmUp) + 7) / 8 * 8;
      // Stretch k runs from row k x distance on; an odd number of cache lines keeps the stretches out of each other's
      // way.
      const std::ptrdiff_t distance = (count - aligned - early) / (stretches * 16) * 16 - 8;
      if (distance >= 8 && 2 * (distance + early) <= count) {
        alone(0, aligned);
        inStretches(aligned, early, distance);
        aligned += stretches * distance + early;
      } else {
        aligned = 0;
      }
    }
    alone(aligned, count);
    for (int v = 0; v < C::values; ++v) check_ += state_[v] * 0.0;
    return check_ == 0.0;
  }

  double state(int v) const { return state_[v]; }

 private:
  static constexpr int kept = 32, together = C::together, groups = stretches / together;
  using Numbers = Abreast<together>;

  /// The states of all stretches.
  struct States {
    Numbers of[groups][C::values];

    double lane(int v, int k) const { return of[k / together][v].lane(k % together); }
  };

  /// As of some records of every stretch: where a chain that is computed again meets its stretch.
  struct Marks {
    std::ptrdiff_t spacing;
    States state[kept];
  };

  void alone(std::ptrdiff_t from, std::ptrdiff_t end) {
    Alone state[C::values];
    for (int v = 0; v < C::values; ++v) state[v].x = state_[v];
    for (std::ptrdiff_t row = from; row < end; ++row) {
      Alone in[C::inputs], out[C::outputs];
      for (int k = 0; k < C::inputs; ++k) {
        in[k].x = in_[k][row];
        if constexpr (C::checksInputs) check_ += in[k].x * inputScale * 0.0;
      }
      chain_.next(state, in, out, 0);
      for (int k = 0; k < C::outputs; ++k) {
        out_[k][row] = out[k].x;
        if constexpr (C::checksOutputs) check_ += out[k].x * 0.0;
      }
    }
    for (int v = 0; v < C::values; ++v) state_[v] = state[v].x;
  }

  void inStretches(std::ptrdiff_t first, std::ptrdiff_t early, std::ptrdiff_t distance) {
    States states;
    Numbers sum = Numbers::all(0.0);
    for (Numbers(&state)[C::values] : states.of) {
      for (int v = 0; v < C::values; ++v) state[v] = Numbers::all(state_[v]);
    }
    for (std::ptrdiff_t row = 0; row < early; row += widestLanes) block<false>(first + row, distance, states, sum);
    const States met = states;
    Marks marks;
    marks.spacing = (distance / kept + 8) / 8 * 8;
    int next = 0;
    std::ptrdiff_t done = 0;
    while (done < distance) {
      const std::ptrdiff_t end = least(done + marks.spacing, distance);
      for (; done < end; done += widestLanes) block<true>(first + early + done, distance, states, sum);
      if (done == distance) break;
      marks.state[next++] = states;
    }
    for (int k = 0; k < together; ++k) check_ += sum.lane(k) * 0.0;
    // An infinity or not-a-number in a state stays there up to the end of its stretch.
    for (int v = 0; v < C::values; ++v) {
      for (int k = 0; k < stretches; ++k) check_ += states.lane(v, k) * 0.0;
    }
    for (int v = 0; v < C::values; ++v) state_[v] = states.lane(v, 0);
    for (int k = 1; k < stretches; ++k) {
      double begun[C::values];
      for (int v = 0; v < C::values; ++v) begun[v] = met.lane(v, k);
      const std::ptrdiff_t own = first + early + k * distance;
      if (sameBits(begun, state_, C::values) || rejoins(own, distance, marks, k)) {
        for (int v = 0; v < C::values; ++v) state_[v] = states.lane(v, k);
      }
    }
  }

  /// Goes on alone until it meets stretch k; false where that is not before the stretch's end, which it then is at.
  bool rejoins(std::ptrdiff_t own, std::ptrdiff_t distance, const Marks& marks, int k) {
    std::ptrdiff_t done = 0;
    for (int mark = 0; done < distance; ++mark) {
      const std::ptrdiff_t end = least(done + marks.spacing, distance);
      alone(own + done, own + end);
      done = end;
      if (done == distance) break;
      double there[C::values];
      for (int v = 0; v < C::values; ++v) there[v] = marks.state[mark].lane(v, k);
      if (sameBits(there, state_, C::values)) return true;
    }
    return false;
  }

  /// As many records of each stretch as a pack has lanes. Early, only the first stretch's are rows already.
  template <bool own>
  void block(std::ptrdiff_t row, std::ptrdiff_t distance, States& states, Numbers& sum) {
    Numbers in[widestLanes][groups][C::inputs], out[widestLanes][groups][C::outputs];
    eachPart([&](auto group, auto i, int stretch) {
      unroll<0, C::inputs>([&](auto k) {
        WidestPack square[widestLanes];
        ORVEX_UNROLL for (int lane = 0; lane < widestLanes; ++lane) {
          square[lane] = WidestPack::load(in_[k.value] + row + (stretch + lane) * distance);
        }
        transpose(square);
        ORVEX_UNROLL for (int j = 0; j < widestLanes; ++j) in[j][group.value][k.value].part[i.value] = square[j];
      });
    });
    unroll<0, widestLanes>([&](auto j) {
      unroll<0, groups>([&](auto group) {
        const auto& x = in[j.value][group.value];
        auto& y = out[j.value][group.value];
        chain_.next(states.of[group.value], x, y, j.value);
        if constexpr (C::checksInputs) {
          for (int k = 0; k < C::inputs; ++k) sum = plusProduct(sum, x[k], Numbers::all(inputScale));
        }
        if constexpr (C::checksOutputs && own) {
          for (int k = 0; k < C::outputs; ++k) sum = sum + y[k] * Numbers::all(0.0);
        }
      });
    });
    unroll<0, C::outputs>([&](auto k) {
      if constexpr (own) {
        eachPart([&](auto group, auto i, int stretch) {
          WidestPack square[widestLanes];
          ORVEX_UNROLL for (int j = 0; j < widestLanes; ++j) square[j] = out[j][group.value][k.value].part[i.value];
          transpose(square);
          ORVEX_UNROLL for (int lane = 0; lane < widestLanes; ++lane) {
            square[lane].store(out_[k.value] + row + (stretch + lane) * distance);
          }
        });
      } else {
        for (int j = 0; j < widestLanes; ++j) {
          const double value = out[j][0][k.value].part[0].v[0];
          out_[k.value][row + j] = value;
          if constexpr (C::checksOutputs) check_ += value * 0.0;
        }
      }
    });
  }

  /// `body` of each pack of stretches: of which group, its place there, and its first stretch.
  template <class Body>
  static void eachPart(const Body& body) {
    unroll<0, groups>([&](auto group) {
      unroll<0, Numbers::parts>([&](auto i) { body(group, i, group.value * together + i.value * widestLanes); });
    });
  }

  const C chain_;
  const double* in_[C::inputs];
  double* out_[C::outputs];
  double state_[C::values];
  double check_ = 0.0;
};

/// Rows 0 .. count - 1 of the chain's outputs, after `state`, which becomes that of the last one. False, with the state
/// as it was, where they are not proven.
template <class C>
bool runChain(const C& chain, const double* const (&in)[C::inputs], double* const (&out)[C::outputs],
              double (&state)[C::values], std::ptrdiff_t count, double memory) {
  ChainRun<C> run(chain, in, out, state);
  if (!run.run(count, memory)) return false;
  for (int v = 0; v < C::values; ++v) state[v] = run.state(v);
  return true;
}

}  // namespace

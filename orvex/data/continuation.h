#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

#include "orvex/data/field.h"
#include "orvex/data/integer.h"

namespace orvex::inline ORVEX_COUNTS {

/// What the steps of a walk hand on from record to record beside the rows that they write: a variable of theirs, or a
/// row that is blanked afterwards. Named to the walk, so that a call that is continued goes on with it.
class Carried {
 public:
  Carried() = default;
  /// A variable that the step captures by reference. REQUIRES: it outlives the walk.
  template <class T>
  requires(!std::is_same_v<T, Carried>) explicit Carried(T& variable) {
    static_assert(std::is_trivially_copyable_v<T>);
    if constexpr (!std::is_empty_v<T>) {
      place_ = &variable;
      size_ = sizeof(T);
    }
  }
  /// The row of the record before, of a column whose rows are blanked once the walk has ended.
  static Carried rowBefore(Field& column) {
    Carried carried;
    carried.column_ = &column;
    return carried;
  }

 private:
  friend class Continuation;

  std::size_t size() const noexcept { return column_ != nullptr ? sizeof(double) : size_; }

  void* place_ = nullptr;
  std::size_t size_ = 0;
  Field* column_ = nullptr;
};

/// What a call leaves behind so that the same call over a series that has grown, or whose last record has changed,
/// computes no other record again.
///
/// While it is the thread's current one, `makeColumn` gives the columns that the last such call made, and the walks go
/// on where that call's ended. Both are found again by their order: a method makes the same columns and reaches the
/// same walks whatever the length of the series. Rows and what is carried are kept as of the record before the last,
/// which is closed, and as of the last one: from there a call goes on where others have followed it, from the closed
/// one where it is another now.
class Continuation {
 public:
  /// The current one of this thread; nothing in a plain call.
  static Continuation* current() noexcept { return current_; }

  /// Makes a continuation the current one for as long as this lives.
  class Scope {
   public:
    explicit Scope(Continuation& continuation) noexcept : outer_(current_) { current_ = &continuation; }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope() { current_ = outer_; }

   private:
    Continuation* outer_;
  };

  /// For as long as this lives, columns and walks are those of the series without its first `before` records.
  class Part {
   public:
    explicit Part(std::int64_t before) noexcept : whole_(current_), before_(before) { move(before_); }
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;
    ~Part() { move(-before_); }

   private:
    void move(std::int64_t distance) noexcept {
      if (whole_ != nullptr) whole_->before_ += distance;
    }

    Continuation* whole_;
    std::int64_t before_;
  };

  Continuation() = default;
  Continuation(const Continuation&) = delete;
  Continuation& operator=(const Continuation&) = delete;

  /// Prepares for a call over `count` records, of which those before the last call's last one are the same, and that
  /// one too where `lastIsSame` is true and there are more now. To be followed by `commit` or by `rollBack`, after
  /// which the next call goes on from where this one did.
  void begin(std::int64_t count, bool lastIsSame = false) noexcept;
  void commit() noexcept;
  void rollBack() noexcept;
  /// Forgets everything: the next call begins with the first record.
  void reset() noexcept;

  /// How many columns the calls have made.
  std::size_t columnCount() const noexcept { return columns_.size(); }

  /// How many rows of the columns under way stand as the last call left them, whatever its last record is now.
  std::int64_t keptRows() const noexcept { return kept_ > before_ ? kept_ - before_ : 0; }

  /// The next column, of `count` rows: those that are not kept are 0. Error 9 for a count below 1.
  std::shared_ptr<Field> column(Integer count, std::string_view name);

  /// The records of a walk that are to be stepped: those from `first` on. What is carried is kept as of `closed`.
  struct Records {
    std::int64_t first, closed;
  };
  /// Takes the next walk, from `first` to `last`, and gives back what it carried.
  Records enter(std::int64_t first, std::int64_t last, const Carried& carried);
  /// The last closed one of the walk that was entered last.
  std::int64_t closed() const noexcept { return entered_.closed; }
  /// Keeps what the walk that was entered last carries. To be called with its records stepped up to `closed`.
  void keep(const Carried& carried) noexcept;
  /// The same, with all of them stepped.
  void keepLast(const Carried& carried) noexcept;
  /// Takes the next walk, which has no records yet.
  void pass() {
    enter(1, 0, Carried());
    keep(Carried());
    keepLast(Carried());
  }
  /// Whether the next walk begins with its own first record.
  bool nextBeginsAnew() const noexcept { return nextWalk_ >= walks_.size() || !walks_[nextWalk_].kept[side_].begun; }

 private:
  /// How far a walk has come, and what it carries from there.
  struct Place {
    std::int64_t record = 0;
    std::vector<std::byte> carried;

    void keep(const Carried& from) noexcept;
    void giveBack(const Carried& to) const;
  };
  struct Progress {
    bool begun = false;
    Place closed, last;
  };
  /// As of the last call that was committed, and as of the one under way.
  struct Walk {
    std::array<Progress, 2> kept;
  };

  static inline constinit thread_local Continuation* current_ = nullptr;

  std::vector<std::shared_ptr<Field>> columns_;
  std::vector<Walk> walks_;
  std::size_t side_ = 0;    // of each walk: what the last call kept
  std::int64_t count_ = 0;  // the records of the last call
  bool allBegun_ = false;   // whether all of its walks had a closed record

  // The call under way.
  std::int64_t newCount_ = 0;
  std::int64_t kept_ = 0;
  bool lastStands_ = false;  // its rows are those of the last call's last record too
  std::int64_t before_ = 0;
  std::size_t nextColumn_ = 0, nextWalk_ = 0;
  Records entered_{};
};

/// Whether the walk that follows begins with its own first record, and so with its seed: always in a plain call.
inline bool nextWalkBeginsAnew() noexcept {
  const Continuation* const continuation = Continuation::current();
  return continuation == nullptr || continuation->nextBeginsAnew();
}

/// How many rows of the columns under way stand already as this call is to make them: none in a plain call.
inline std::int64_t keptRows() noexcept {
  const Continuation* const continuation = Continuation::current();
  return continuation == nullptr ? 0 : continuation->keptRows();
}

}  // namespace orvex::inline ORVEX_COUNTS

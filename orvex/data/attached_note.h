#pragma once

#include <atomic>
#include <memory>

#include "orvex/data/note.h"

namespace orvex::inline ORVEX_COUNTS {

/// The note that is attached to a column. A new one is made when somebody first asks for it: most columns live and go
/// without. Threads may ask at the same time and get the same one.
class AttachedNote {
 public:
  AttachedNote() = default;
  AttachedNote(const AttachedNote&) = delete;
  AttachedNote& operator=(const AttachedNote&) = delete;
  ~AttachedNote() { delete known_.load(std::memory_order_relaxed); }

  /// Attaches a new note in place of any earlier one.
  void renew() noexcept {
    delete known_.exchange(nullptr, std::memory_order_relaxed);
    attached_ = true;
  }
  /// Attaches this one, or nothing.
  void set(std::shared_ptr<Note> note);
  /// The note, or nothing where none has been attached.
  std::shared_ptr<Note> get() const;

 private:
  bool attached_ = false;
  /// What has been set or asked for; none before.
  mutable std::atomic<std::shared_ptr<Note>*> known_ = nullptr;
};

}  // namespace orvex::inline ORVEX_COUNTS

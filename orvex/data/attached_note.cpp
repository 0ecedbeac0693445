#include "orvex/data/attached_note.h"

#include <utility>

namespace orvex::inline ORVEX_COUNTS {

void AttachedNote::set(std::shared_ptr<Note> note) {
  delete known_.exchange(new std::shared_ptr<Note>(std::move(note)), std::memory_order_relaxed);
  attached_ = true;
}

std::shared_ptr<Note> AttachedNote::get() const {
  std::shared_ptr<Note>* known = known_.load(std::memory_order_acquire);
  if (known == nullptr) {
    if (!attached_) return nullptr;
    auto made = std::make_unique<std::shared_ptr<Note>>(std::make_shared<Note>());
    // Of threads that ask at the same time one makes it known, and the others take that.
    if (known_.compare_exchange_strong(known, made.get(), std::memory_order_acq_rel)) known = made.release();
  }
  return *known;
}

}  // namespace orvex::inline ORVEX_COUNTS

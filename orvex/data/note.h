#pragma once

#include <string>

#include "orvex/data/binding_slot.h"
#include "orvex/data/integer.h"

namespace orvex::inline ORVEX_COUNTS {

/// A point of a series: a period (record number), a value and a text, each set and read independently. Nothing is
/// validated.
class Note {
 public:
  Note() = default;
  Note(const Note&) = delete;
  Note& operator=(const Note&) = delete;

  void setPeriod(Integer Period) { period_ = Period; }
  void setValue(double Value) { value_ = Value; }
  void setNote(const std::string& Text) { note_ = Text; }
  Integer getPeriod() const { return period_; }
  double getValue() const { return value_; }
  std::string getNote() const { return note_; }

  BindingSlot binding;

 private:
  Integer period_;
  double value_ = 0.0;
  std::string note_;
};

}  // namespace orvex::inline ORVEX_COUNTS

#include "orvex/data/error.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <stdexcept>

namespace orvex::inline ORVEX_COUNTS {

Error::Error(const Fault& report, const Fault& cause, int record) noexcept
    : fault_(report), cause_(cause), record_(record) {
  writeText();
}

Error Error::ofMemory(const Fault& report) noexcept {
  Error error(report, faults::OutOfMemory, 0);
  error.isOfMemory_ = true;
  return error;
}

void Error::setRecord(int record) noexcept {
  if (record_ != 0) return;
  record_ = record;
  writeText();
}

void Error::moveRecord(int distance) noexcept {
  if (record_ == 0) return;
  record_ += distance;
  writeText();
}

void Error::writeText() noexcept {
  char* at = text_.data();
  // Room for the end of the text.
  char* const end = text_.data() + text_.size() - 1;
  const auto write = [&](std::string_view text) {
    at = std::copy_n(text.data(), std::min(text.size(), static_cast<std::size_t>(end - at)), at);
  };
  write(fault_.description);
  const bool hasCause = !(cause_ == fault_) && !cause_.description.empty();
  if (hasCause || record_ != 0) {
    write(" (");
    if (hasCause) write(cause_.description);
    if (record_ != 0) {
      write(hasCause ? " in record " : "in record ");
      std::array<char, 12> digits;
      const char* const digitsEnd = std::to_chars(digits.data(), digits.data() + digits.size(), record_).ptr;
      write({digits.data(), static_cast<std::size_t>(digitsEnd - digits.data())});
    }
    write(")");
  }
  *at = '\0';
}

void raise(const Fault& fault) {
  throw Error(fault);
}

void raiseReport(const Fault& report) {
  try {
    throw;
  } catch (const Error& error) {
    throw Error(report, error);
  } catch (const std::bad_alloc&) {
    throw Error::ofMemory(report);
  } catch (...) {
    throw Error(report, currentFault(), 0);
  }
}

Fault currentFault() noexcept {
  try {
    throw;
  } catch (const Error& error) {
    return error.fault();
  } catch (const std::bad_alloc&) {
    return faults::OutOfMemory;
  } catch (const std::length_error&) {
    return faults::OutOfMemory;
  } catch (...) {
    return faults::Internal;
  }
}

}  // namespace orvex::inline ORVEX_COUNTS

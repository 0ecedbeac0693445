#include "orvex/automation/texts.h"

#include <algorithm>
#include <new>

#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS::automation {

std::string textOf(BSTR text) {
  return utf8FromUtf16(std::u16string(text, text + SysStringLen(text)));
}

BSTR newText(std::string_view text) {
  const std::u16string units = utf16FromUtf8(text);
  const BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(units.size()));
  if (result == nullptr) throw std::bad_alloc();
  std::copy(units.begin(), units.end(), result);
  return result;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation

#pragma once

#include "orvex/automation/platform.h"
#include "orvex/catalogue/description.h"

/// The loaded DLL.
namespace orvex::inline ORVEX_COUNTS::automation {

/// Counts what keeps the DLL in use: objects and locks, on whatever threads.
void lockModule() noexcept;
void unlockModule() noexcept;
bool moduleInUse() noexcept;

/// The full path of the DLL; empty where it cannot be told.
std::wstring modulePath();

/// The type library that the DLL carries, without a look at the registry.
HRESULT loadTypeLibrary(ITypeLib** result) noexcept;
/// One of its types. REQUIRES: an object of the DLL asks.
HRESULT typeInfo(const GUID& id, ITypeInfo** result) noexcept;

constexpr GUID guidOf(const catalogue::Guid& id) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned long>(id.bytes[i]); };
  GUID result{byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3),
              static_cast<unsigned short>(byte(4) << 8 | byte(5)),
              static_cast<unsigned short>(byte(6) << 8 | byte(7)),
              {}};
  for (std::size_t i = 0; i < 8; ++i) result.Data4[i] = id.bytes[8 + i];
  return result;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation

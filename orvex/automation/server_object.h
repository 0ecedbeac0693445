#pragma once

#include <memory>

#include "orvex/automation/platform.h"
#include "orvex/catalogue/description.h"
#include "orvex/data/binding_slot.h"

namespace orvex::inline ORVEX_COUNTS::automation {

class ServerObject;

/// What a host calls through the first seven entries of every dual interface.
namespace entries {
HRESULT STDMETHODCALLTYPE queryInterface(ServerObject* self, const IID* id, void** result) noexcept;
ULONG STDMETHODCALLTYPE addReference(ServerObject* self) noexcept;
ULONG STDMETHODCALLTYPE release(ServerObject* self) noexcept;
HRESULT STDMETHODCALLTYPE typeInfoCount(ServerObject* self, UINT* count) noexcept;
HRESULT STDMETHODCALLTYPE typeInfo(ServerObject* self, UINT index, LCID locale, ITypeInfo** result) noexcept;
HRESULT STDMETHODCALLTYPE namesToIds(ServerObject* self, const IID* reserved, LPOLESTR* names, UINT count, LCID locale,
                                     DISPID* ids) noexcept;
HRESULT STDMETHODCALLTYPE invoke(ServerObject* self, DISPID id, const IID* reserved, LCID locale, WORD flags,
                                 DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                 UINT* argument) noexcept;
}  // namespace entries

/// Those entries, in the order of IDispatch.
struct DispatchSlots {
  decltype(&entries::queryInterface) queryInterface = &entries::queryInterface;
  decltype(&entries::addReference) addReference = &entries::addReference;
  decltype(&entries::release) release = &entries::release;
  decltype(&entries::typeInfoCount) typeInfoCount = &entries::typeInfoCount;
  decltype(&entries::typeInfo) typeInfo = &entries::typeInfo;
  decltype(&entries::namesToIds) namesToIds = &entries::namesToIds;
  decltype(&entries::invoke) invoke = &entries::invoke;
};

/// What the server knows of a class beside its description.
struct ServerClass {
  const catalogue::Class& description;
  GUID interfaceId;
  const void* table;  // of the dual interface; begins with `DispatchSlots`
  /// A wrapper around a new object, with one reference.
  ServerObject* (*make)();
};

/// An object of the library as automation sees it: its dual interface, error and type information. A host holds a
/// pointer to it as to any interface, so its first member is the virtual table, which is made from the catalogue and
/// not by the compiler.
///
/// References are counted plainly: the objects live in apartments, whose thread alone calls them.
class ServerObject {
 public:
  /// Begins with one reference. `slot` is where the library's object keeps its wrapper, or null.
  ServerObject(const ServerClass& served, std::shared_ptr<void> object, BindingSlot* slot) noexcept;
  ServerObject(const ServerObject&) = delete;
  ServerObject& operator=(const ServerObject&) = delete;

  const ServerClass& served() const noexcept { return served_; }
  const std::shared_ptr<void>& object() const noexcept { return object_; }
  IDispatch* dispatch() noexcept { return reinterpret_cast<IDispatch*>(this); }

  HRESULT queryInterface(const IID& id, void** result) noexcept;
  ULONG addReference() noexcept { return ++references_; }
  ULONG release() noexcept;

 private:
  /// Tells which interfaces leave error information.
  struct ErrorSupport final : ISupportErrorInfo {
    explicit ErrorSupport(ServerObject& object) noexcept : owner(object) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return owner.addReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner.release(); }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;
    ServerObject& owner;
  };

  /// Tells which coclass the object is one of.
  struct ClassInformation final : IProvideClassInfo {
    explicit ClassInformation(ServerObject& object) noexcept : owner(object) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return owner.addReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner.release(); }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** result) override;
    ServerObject& owner;
  };

  ~ServerObject();

  const void* table_;
  const ServerClass& served_;
  ULONG references_ = 1;
  std::shared_ptr<void> object_;
  BindingSlot* slot_;
  ErrorSupport errorSupport_{*this};
  ClassInformation classInformation_{*this};
};

/// A reference to a wrapper for as long as a call needs it, whatever the host lets go of meanwhile.
class Hold {
 public:
  explicit Hold(ServerObject* object) noexcept : object_(object) { object_->addReference(); }
  ~Hold() { object_->release(); }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  ServerObject* object_;
};

/// The wrapper behind an interface pointer, without a reference; null for null and for objects of other servers, such
/// as another copy of this DLL in the process: the virtual tables of this one are nobody else's.
ServerObject* ownObject(IUnknown* any) noexcept;

/// Defined where the typed tables are made.
template <class C>
const ServerClass& serverClassOf() noexcept;

/// The one wrapper of an object of the library, with a new reference; null for null.
template <class C>
ServerObject* wrap(const std::shared_ptr<C>& object) {
  if (object == nullptr) return nullptr;
  BindingSlot& slot = object->binding;
  if (slot.wrapper == nullptr) return new ServerObject(serverClassOf<C>(), object, &slot);
  auto* known = static_cast<ServerObject*>(slot.wrapper);
  known->addReference();
  return known;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation

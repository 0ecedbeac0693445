#include "orvex/automation/server_object.h"

#include <algorithm>
#include <utility>

#include "orvex/automation/dispatch.h"
#include "orvex/automation/module.h"
#include "orvex/automation/server_classes.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace entries {

HRESULT STDMETHODCALLTYPE queryInterface(ServerObject* self, const IID* id, void** result) noexcept {
  return id == nullptr ? E_INVALIDARG : self->queryInterface(*id, result);
}

ULONG STDMETHODCALLTYPE addReference(ServerObject* self) noexcept {
  return self->addReference();
}

ULONG STDMETHODCALLTYPE release(ServerObject* self) noexcept {
  return self->release();
}

HRESULT STDMETHODCALLTYPE typeInfoCount(ServerObject*, UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE typeInfo(ServerObject* self, UINT index, LCID, ITypeInfo** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return automation::typeInfo(self->served().interfaceId, result);
}

HRESULT STDMETHODCALLTYPE namesToIds(ServerObject* self, const IID* reserved, LPOLESTR* names, UINT count, LCID,
                                     DISPID* ids) noexcept {
  if (reserved != nullptr && *reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  return findNames(self->served().description, {names, count}, {ids, count});
}

HRESULT STDMETHODCALLTYPE invoke(ServerObject* self, DISPID id, const IID* reserved, LCID, WORD flags,
                                 DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                 UINT* argument) noexcept {
  if (reserved != nullptr && *reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr || (parameters->cArgs > 0 && parameters->rgvarg == nullptr) ||
      (parameters->cNamedArgs > 0 && parameters->rgdispidNamedArgs == nullptr)) {
    return E_INVALIDARG;
  }
  const Hold hold(self);
  return invokeLate(*self, id, flags, *parameters, result, exception, argument);
}

}  // namespace entries

ServerObject::ServerObject(const ServerClass& served, std::shared_ptr<void> object, BindingSlot* slot) noexcept
    : table_(served.table), served_(served), object_(std::move(object)), slot_(slot) {
  lockModule();
  if (slot_ != nullptr) slot_->wrapper = this;
}

ServerObject::~ServerObject() {
  if (slot_ != nullptr) slot_->wrapper = nullptr;
  // Before the DLL may go: the library's object may hold others.
  object_ = nullptr;
  unlockModule();
}

HRESULT ServerObject::queryInterface(const IID& id, void** result) noexcept {
  if (result == nullptr) return E_POINTER;
  if (id == IID_IUnknown || id == IID_IDispatch || id == served_.interfaceId) {
    *result = this;
  } else if (id == IID_ISupportErrorInfo) {
    *result = static_cast<ISupportErrorInfo*>(&errorSupport_);
  } else if (id == IID_IProvideClassInfo) {
    *result = static_cast<IProvideClassInfo*>(&classInformation_);
  } else {
    *result = nullptr;
    return E_NOINTERFACE;
  }
  addReference();
  return S_OK;
}

ULONG ServerObject::release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ServerObject::ErrorSupport::QueryInterface(REFIID id, void** result) {
  return owner.queryInterface(id, result);
}

HRESULT ServerObject::ErrorSupport::InterfaceSupportsErrorInfo(REFIID id) {
  return id == owner.served_.interfaceId ? S_OK : S_FALSE;
}

HRESULT ServerObject::ClassInformation::QueryInterface(REFIID id, void** result) {
  return owner.queryInterface(id, result);
}

HRESULT ServerObject::ClassInformation::GetClassInfo(ITypeInfo** result) {
  if (result == nullptr) return E_POINTER;
  return typeInfo(guidOf(owner.served_.description.classId), result);
}

ServerObject* ownObject(IUnknown* any) noexcept {
  void* found = nullptr;
  if (any == nullptr || FAILED(any->QueryInterface(IID_IUnknown, &found))) return nullptr;
  static_cast<IUnknown*>(found)->Release();
  const void* const table = *static_cast<const void* const*>(found);
  const auto all = serverClasses();
  const bool own = std::any_of(all.begin(), all.end(), [&](const ServerClass* one) { return one->table == table; });
  return own ? static_cast<ServerObject*>(found) : nullptr;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation

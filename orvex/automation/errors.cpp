#include "orvex/automation/errors.h"

#include "orvex/automation/texts.h"

namespace orvex::inline ORVEX_COUNTS::automation {

HRESULT report(const Fault& fault, const IID& reporter) noexcept {
  ICreateErrorInfo* information = nullptr;
  if (SUCCEEDED(CreateErrorInfo(&information))) {
    try {
      information->SetGUID(reporter);
      // Without texts the number still tells what happened.
      const BSTR source = newText(fault.source);
      information->SetSource(source);
      SysFreeString(source);
      const BSTR description = newText(fault.description);
      information->SetDescription(description);
      SysFreeString(description);
    } catch (...) {
    }
    IErrorInfo* error = nullptr;
    if (SUCCEEDED(information->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&error)))) {
      SetErrorInfo(0, error);
      error->Release();
    }
    information->Release();
  }
  return resultOf(fault);
}

HRESULT report(const Fault& fault, EXCEPINFO* where) noexcept {
  if (where != nullptr) {
    *where = {};
    where->scode = resultOf(fault);
    try {
      where->bstrSource = newText(fault.source);
      where->bstrDescription = newText(fault.description);
    } catch (...) {
    }
  }
  return DISP_E_EXCEPTION;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation

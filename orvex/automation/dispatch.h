#pragma once

#include <span>

#include "orvex/automation/platform.h"
#include "orvex/automation/server_object.h"
#include "orvex/catalogue/description.h"

/// Late binding by the catalogue's description. The platform's own dispatcher cannot serve by-reference arguments: it
/// takes no script variable for one, and fails on one that is left out.
namespace orvex::inline ORVEX_COUNTS::automation {

/// The identifiers of a method's name and, after it, of names of its arguments. All that are known are told;
/// DISP_E_UNKNOWNNAME if one is not.
HRESULT findNames(const catalogue::Class& owner, std::span<const LPOLESTR> names, std::span<DISPID> ids) noexcept;

/// Calls a method with the host's arguments, by place and by name. An argument that the method writes back changes in
/// the host's variable, also if the call then fails; those that it leaves alone stay of the type that they have there.
HRESULT invokeLate(ServerObject& object, DISPID id, WORD flags, const DISPPARAMS& parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* argumentAtFault) noexcept;

}  // namespace orvex::inline ORVEX_COUNTS::automation

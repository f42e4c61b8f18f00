#pragma once
// IEnumVARIANT over a core enumerator: what For Each and JScript's Enumerator walk.

#include <windows.h>
#include <oaidl.h>

#include "automation/enumerator.hpp"

namespace celdo::com {

// A new enumerator object with reference count zero.
IUnknown* make_enum_variant(automation::Ref<automation::Enumerator> items);

}  // namespace celdo::com

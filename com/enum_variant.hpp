#pragma once
// IEnumVARIANT over a core enumerator: what For Each and JScript's Enumerator walk.

#include <windows.h>
#include <oaidl.h>

#include "automation/enumerator.hpp"
#include "com/owners.hpp"

namespace celdo::com {

com_ptr<IUnknown> make_enum_variant(automation::Ref<automation::Enumerator> items);

}  // namespace celdo::com

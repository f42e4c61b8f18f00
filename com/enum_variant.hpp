#pragma once
// IEnumVARIANT over a core enumerator: what For Each and JScript's Enumerator walk.

#include <windows.h>
#include <oaidl.h>

#include "automation/enumerator.hpp"
#include "com/owners.hpp"

namespace celdo::com {

com_ptr<IUnknown> make_enum_variant(automation::Ref<automation::Enumerator> items);

// A host's enumerator (what a host collection's NewEnum hands out, such as a form's Controls)
// as a core enumerator, so that the library walks host collections as For Each does.
automation::Ref<automation::Enumerator> host_enumerator(com_ptr<IEnumVARIANT> items);

}  // namespace celdo::com

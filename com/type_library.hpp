#pragma once
// The type library embedded in the module as resource TYPELIB 1.

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace celdo::com {

// Loaded once and kept for the life of the process; null if the resource cannot be read.
ITypeLib* module_type_library() noexcept;

// Full path of this module.
std::wstring module_path();

}  // namespace celdo::com

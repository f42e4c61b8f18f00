#include "com/type_library.hpp"

#include "com/class_registry.hpp"

namespace celdo::com {

std::wstring module_path() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        DWORD n = GetModuleFileNameW(module_handle(), path.data(), static_cast<DWORD>(path.size()));
        if (n == 0) return {};
        if (n < path.size()) {
            path.resize(n);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

ITypeLib* module_type_library() noexcept {
    static ITypeLib* library = [] {
        ITypeLib* loaded = nullptr;
        std::wstring path = module_path();
        if (path.empty() || FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &loaded))) return static_cast<ITypeLib*>(nullptr);
        return loaded;
    }();
    return library;
}

}  // namespace celdo::com

#include "com/type_library.hpp"

#include <atomic>
#include <new>

#include "com/class_registry.hpp"
#include "com/owners.hpp"

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
    // Kept once loaded; a failure (out of memory among them) is not kept, so a later call tries again.
    static std::atomic<ITypeLib*> kept{nullptr};
    if (ITypeLib* library = kept.load()) return library;
    com_ptr<ITypeLib> loaded;
    try {
        const std::wstring path = module_path();
        if (path.empty() || FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, loaded.put()))) return nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    ITypeLib* expected = nullptr;
    // Another thread may have loaded it meanwhile: theirs is kept, this one released.
    if (!kept.compare_exchange_strong(expected, loaded.get())) return expected;
    return loaded.detach();
}

}  // namespace celdo::com

#include "com/class_registry.hpp"

#include <atomic>

#include "automation/error.hpp"
#include "automation/lifetime.hpp"
#include "com/dual_object.hpp"
#include "com/private_iids.hpp"

namespace celdo::com {

// {132753A1-BA7C-4C58-A5C2-EEB8AFE7D29A}
const IID IID_ICeldoCore = {0x132753a1, 0xba7c, 0x4c58, {0xa5, 0xc2, 0xee, 0xb8, 0xaf, 0xe7, 0xd2, 0x9a}};

namespace {
std::atomic<long> g_objects{0};
std::atomic<long> g_locks{0};
HMODULE g_module = nullptr;
}  // namespace

const ComClass* find_class(REFCLSID clsid) {
    for (const ComClass& c : classes()) {
        if (*c.clsid == clsid) return &c;
    }
    return nullptr;
}

const ComClass* find_class(const automation::ClassInfo& info) {
    for (const ComClass& c : classes()) {
        if (&c.info() == &info) return &c;
    }
    return nullptr;
}

com_ptr<IUnknown> com_object_for(automation::Component& core) {
    if (auto* existing = dynamic_cast<DualObjectBase*>(core.peer())) return com_ptr<IUnknown>::copy(existing->identity());
    const ComClass* cls = find_class(core.class_info());
    if (!cls) throw automation::AutomationError(automation::StdError::TypeMismatch);
    return com_ptr<IUnknown>::copy(cls->make(automation::Ref<automation::Component>(&core)));
}

void object_created() noexcept { ++g_objects; }
void object_destroyed() noexcept { --g_objects; }
void lock_module(bool lock) noexcept {
    if (lock) ++g_locks;
    else --g_locks;
}
void object_released() noexcept {
    if (!automation::OutsideCall::none()) return;
    auto& registry = automation::ObjectRegistry::current();
    if (g_objects == 0) registry.collect();
    else registry.collect_if_due();
}

bool module_in_use() noexcept { return g_objects > 0 || g_locks > 0 || automation::live_objects() > 0; }

HRESULT can_unload() noexcept {
    if (automation::OutsideCall::none()) automation::ObjectRegistry::current().collect();
    return module_in_use() ? S_FALSE : S_OK;
}

void report_lifetime() noexcept {
    wchar_t path[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(L"CELDO_LIFETIME_REPORT", path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return;
    char line[160];
    const int size = wsprintfA(line, "live objects %lu, COM objects %ld, locks %ld, DllCanUnloadNow %s\r\n",
                               static_cast<unsigned long>(automation::live_objects()), g_objects.load(),
                               g_locks.load(), module_in_use() ? "S_FALSE" : "S_OK");
    HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(file, line, static_cast<DWORD>(size), &written, nullptr);
    CloseHandle(file);
}

HMODULE module_handle() noexcept { return g_module; }
void set_module_handle(HMODULE module) noexcept { g_module = module; }

}  // namespace celdo::com

// Linked into CeldoFaults.dll only: the component with every allocation counted, so that a
// client can make the Nth one fail and walk every out-of-memory path. Everything the library
// allocates goes through operator new (the DLL carries its own C++ runtime) or, for BSTRs,
// SAFEARRAYs and error objects, through the COM layer's allocation hook.

#include <windows.h>

#include <cstdlib>
#include <new>

#include "com/owners.hpp"

namespace {

long g_fail_at = 0;  // the allocation that fails, counting from 1 since armed; 0: none
bool g_after = false;  // whether every allocation after it fails too
long g_made = 0;       // allocations asked for since armed
long g_live = 0;       // blocks from operator new not yet freed

bool refuse() noexcept {
    if (g_fail_at == 0) return false;
    ++g_made;
    return g_made == g_fail_at || (g_after && g_made > g_fail_at);
}

const bool g_installed = (celdo::com::allocation_hook = &refuse, true);

}  // namespace

void* operator new(std::size_t size) {
    if (refuse()) throw std::bad_alloc();
    void* p = std::malloc(size ? size : 1);
    if (!p) throw std::bad_alloc();
    ++g_live;
    return p;
}
void operator delete(void* p) noexcept {
    if (!p) return;
    --g_live;
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept { operator delete(p); }

// The walk's controls, exported undecorated (plain C calls) so that both architectures find
// them by name. Arms the walk: the `n`th allocation from now fails (and, with `after`, every
// one after it); 0 disarms it.
extern "C" __declspec(dllexport) void CeldoFailAllocation(long n, BOOL after) {
    g_fail_at = n;
    g_after = after != FALSE;
    g_made = 0;
}
// Allocations asked for since the walk was armed: fewer than its N means none failed.
extern "C" __declspec(dllexport) long CeldoAllocationsMade() { return g_made; }
extern "C" __declspec(dllexport) long CeldoLiveAllocations() { return g_live; }

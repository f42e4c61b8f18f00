// tlbconst: writes the enumerations of a type library as script constants, which is what
// <reference> does for .wsf files on Windows. Wine's script host has no .wsf support, so the
// harness puts this output before a script to let it use exUpdate, exText and the rest.
//
//   tlbconst <library.dll|.tlb> vbs|js
#include <windows.h>
#include <oleauto.h>
#include <shellapi.h>

#include <cstdio>
#include <string>

namespace {

std::wstring name_of(ITypeInfo* info, MEMBERID id) {
    BSTR name = nullptr;
    if (FAILED(info->GetDocumentation(id, &name, nullptr, nullptr, nullptr)) || !name) return {};
    std::wstring text(name, SysStringLen(name));
    SysFreeString(name);
    return text;
}

}  // namespace

int main() {
    int argc = 0;
    LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    if (argc != 3) {
        fwprintf(stderr, L"usage: tlbconst <library.dll|.tlb> vbs|js\n");
        return 2;
    }
    const bool js = _wcsicmp(argv[2], L"js") == 0;
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(argv[1], REGKIND_NONE, &library))) {
        fwprintf(stderr, L"tlbconst: cannot read a type library from %ls\n", argv[1]);
        return 1;
    }
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        TYPEKIND kind;
        if (FAILED(library->GetTypeInfoType(i, &kind)) || kind != TKIND_ENUM) continue;
        ITypeInfo* info = nullptr;
        if (FAILED(library->GetTypeInfo(i, &info))) continue;
        TYPEATTR* attr = nullptr;
        info->GetTypeAttr(&attr);
        wprintf(js ? L"// %ls\n" : L"' %ls\n", name_of(info, MEMBERID_NIL).c_str());
        for (WORD v = 0; v < attr->cVars; ++v) {
            VARDESC* var = nullptr;
            if (FAILED(info->GetVarDesc(v, &var))) continue;
            const std::wstring name = name_of(info, var->memid);
            const long value = V_I4(var->lpvarValue);
            if (js) wprintf(L"var %ls = %ld;\n", name.c_str(), value);
            else wprintf(L"Const %ls = %ld\n", name.c_str(), value);
            info->ReleaseVarDesc(var);
        }
        info->ReleaseTypeAttr(attr);
        info->Release();
    }
    library->Release();
    LocalFree(argv);
    return 0;
}

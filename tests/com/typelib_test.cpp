// Reads the type library back from the built DLL: the published vocabulary against the table
// that host code was written for, letter for letter and value for value, the library's
// identity, the help strings and the service's fixed dispatch ids.
#include <map>
#include <string_view>

#include "tests/com/com_test.hpp"
#include "tests/support/cells.hpp"

namespace celdo::testing {
namespace {

// The published enumerations as "name<tab>members" rows (published_enumerations.tsv).
constexpr std::string_view kEnumerations =
#include "published_enumerations.inc"
    ;

// The table's rows: each enumeration with its members as "name=value name=value ...".
std::map<std::wstring, std::wstring> published() {
    std::map<std::wstring, std::wstring> rows;
    for_each_row(kEnumerations, "enumeration\t", [&](int, const std::vector<std::string_view>& row) {
        rows[std::wstring(row.at(0).begin(), row.at(0).end())] = std::wstring(row.at(1).begin(), row.at(1).end());
    });
    return rows;
}

class TypeLibrary : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(LoadTypeLibEx(dll_path().c_str(), REGKIND_NONE, library_.put()), S_OK)
            << "the DLL carries no readable type library";
    }
    // Calls `visit` with every type the library holds, by name, with its attributes.
    template <class F>
    void for_each_type(F visit) {
        for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
            ComPtr<ITypeInfo> info;
            TYPEATTR* attr = nullptr;
            ASSERT_EQ(library_->GetTypeInfo(i, info.put()), S_OK);
            ASSERT_EQ(info->GetTypeAttr(&attr), S_OK);
            visit(info.get(), doc(info.get()), *attr);
            info->ReleaseTypeAttr(attr);
        }
    }
    ComPtr<ITypeLib> library_;
};

TEST_F(TypeLibrary, PublishesEveryEnumerationWithItsMembersInOrder) {
    std::map<std::wstring, std::wstring> found;
    for_each_type([&](ITypeInfo* info, const std::wstring& type, const TYPEATTR& attr) {
        if (attr.typekind != TKIND_ENUM) return;
        std::wstring& members = found[type];
        for (WORD v = 0; v < attr.cVars; ++v) {
            VARDESC* var = nullptr;
            info->GetVarDesc(v, &var);
            EXPECT_EQ(var->varkind == VAR_CONST && V_VT(var->lpvarValue) == VT_I4, true);
            members += (members.empty() ? L"" : L" ") + doc(info, var->memid) + L"=" + std::to_wstring(V_I4(var->lpvarValue));
            info->ReleaseVarDesc(var);
        }
    });
    const auto expected = published();
    EXPECT_EQ(found.size(), expected.size());
    for (const auto& [name, members] : expected) EXPECT_EQ(found[name], members) << std::string(name.begin(), name.end());
}

TEST_F(TypeLibrary, CarriesItsIdentity) {
    TLIBATTR* attr = nullptr;
    Bstr name;
    ASSERT_EQ(library_->GetLibAttr(&attr), S_OK);
    library_->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr);
    EXPECT_TRUE(IsEqualGUID(attr->guid, LIBID_Celdo));
    EXPECT_EQ(name.str() + L" " + std::to_wstring(attr->wMajorVerNum) + L"." + std::to_wstring(attr->wMinorVerNum), L"Celdo 1.0");
    EXPECT_EQ(attr->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    library_->ReleaseTLibAttr(attr);
}

// Object browsers and IntelliSense show the help strings: every enumeration, class, interface
// and member has one, in the member's own words (a sample is compared letter for letter). Hosts
// compiled against the service bind its members by dispatch id and vtable slot: the interface is
// complete from its first release, so members built later never move.
TEST_F(TypeLibrary, EveryTypeAndMemberDescribesItselfAndTheServiceKeepsItsIds) {
    std::map<std::wstring, std::wstring> sample;
    std::map<MEMBERID, std::wstring> service;
    size_t members = 0, service_slots = 0;
    for_each_type([&](ITypeInfo* info, const std::wstring& type, const TYPEATTR& attr) {
        sample[type] = doc(info, MEMBERID_NIL, true);
        EXPECT_NE(sample[type], L"") << std::string(type.begin(), type.end());
        if (type == L"_ISService") service_slots = attr.cFuncs;
        for (WORD f = 0; attr.typekind == TKIND_DISPATCH && f < attr.cFuncs; ++f) {
            FUNCDESC* func = nullptr;
            ASSERT_EQ(info->GetFuncDesc(f, &func), S_OK);
            // The seven members of IUnknown and IDispatch are the platform's.
            if (func->oVft >= static_cast<SHORT>(7 * sizeof(void*)) || !(attr.wTypeFlags & TYPEFLAG_FDUAL)) {
                const std::wstring member = type + L"." + doc(info, func->memid);
                sample[member] = doc(info, func->memid, true);
                EXPECT_NE(sample[member], L"") << std::string(member.begin(), member.end());
                if (type == L"_ISService") service[func->memid] = doc(info, func->memid);
                ++members;
            }
            info->ReleaseFuncDesc(func);
        }
    });
    EXPECT_GT(members, 200u);
    EXPECT_EQ(sample[L"clsCeldo"], L"A field: a column, a parameter or a node of a field tree, with its metadata and value");
    EXPECT_EQ(sample[L"_clsCeldo.Value"], L"The value, validated and converted to the field's type");
    EXPECT_EQ(sample[L"__Apuntadores.Requery"], L"Asks the host for the page of rows after (or from) the primary key in PK");
    EXPECT_EQ(sample[L"ExDataType"], L"Logical data type of a field");
    EXPECT_EQ(service_slots, 60u) << "50 members, three of them properties with Get and Let, after the seven of IDispatch";
    EXPECT_EQ(service[1] + L" " + service[13] + L" " + service[14] + L" " + service[19] + L" " + service[26] + L" " +
                  service[31] + L" " + service[37] + L" " + service[42] + L" " + service[48] + L" " + service[50],
              L"Ex IsControl AddNode FillForm FillFlexGrid AddListItem ExecFillListDB FillToolBar SawpListView FillGrid");
}

}  // namespace
}  // namespace celdo::testing

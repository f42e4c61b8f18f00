// Reads the type library back from the built DLL and checks the published vocabulary against
// the table that host code was written for, letter for letter and value for value.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

struct Member {
    std::wstring name;
    long value;
    friend bool operator==(const Member&, const Member&) = default;
};

struct Enumeration {
    std::wstring name;
    std::vector<Member> members;
};

// Written out independently of the declarations the DLL is built from: a typo in either shows.
const std::vector<Enumeration>& expected() {
    static const std::vector<Enumeration> table = {
        {L"ExDataType",
         {{L"exBoolean", 1001}, {L"exByte", 1002}, {L"exInteger", 1003}, {L"exLong", 1004},
          {L"exCurrency", 1005}, {L"exSingle", 1006}, {L"exDouble", 1007}, {L"exFloat", 1008},
          {L"exDecimal", 1009}, {L"exTimeStamp", 1010}, {L"exDate", 1011}, {L"exChar", 1012},
          {L"exTime", 1013}, {L"exText", 1014}, {L"exMemo", 1015}, {L"exDateNumber", 1016},
          {L"exTimeNumber", 1017}, {L"exAutoNumeric", 1018}, {L"exDataTime", 1019},
          {L"exDateTime", 1019}, {L"exBigInt", 1020}, {L"exSmallCurrency", 1021},
          {L"exExpresion", 1022}, {L"exPositeveInteger", 1023}, {L"exgYear", 1025},
          {L"exdtmExpresion", 1029}, {L"exnumExpresion", 1030}, {L"exImagen", 1031},
          {L"exObject", 1032}, {L"exAttribute", 1039}, {L"exClass", 1033}, {L"exField", 1035},
          {L"exFields", 1034}}},
        {L"exDirection",
         {{L"exParamInput", 2000}, {L"exParamInputOutput", 2001}, {L"exParamOutput", 2002},
          {L"exParamReturnValue", 2003}, {L"exParamUndefined", 2004}, {L"exOrderAscending", 2008},
          {L"exOrderDescending", 2010}, {L"exDAIzquierda", 2020}, {L"exDADerecha", 2022}}},
        {L"exRowSourceType",
         {{L"exQuery", 5380}, {L"exValueList", 5381}, {L"exClipText", 5382},
          {L"exSPReturnValues", 5383}, {L"exExQuery", 5384}}},
        {L"ExDisplayControl",
         {{L"exTextBox", 5390}, {L"exComboBox", 5391}, {L"exListBox", 5392}, {L"exOptionButton", 5393},
          {L"exBuilder", 5394}, {L"exCheckBox", 5395}, {L"exNoDisplayControl", 5396},
          {L"exHelpButton", 5397}, {L"exDatePicker", 5398}}},
        {L"XMLNodeTypes",
         {{L"xntUnknown", 0}, {L"xntNode", 1}, {L"xntEmpty", 2}, {L"xntText", 3}, {L"xntCDATA", 4},
          {L"xntComment", 5}, {L"xntDOCTYPE", 6}}},
        {L"TypeOperator", {{L"exDefault", 0}, {L"exLoad", 1}, {L"exFind", 2}, {L"exFilter", 3}}},
        {L"exEdit",
         {{L"exInsert", 5380}, {L"exUpdate", 5381}, {L"exDelete", 5382}, {L"exProperties", 5383},
          {L"exEditNone", 5384}}},
        {L"exTypeRs",
         {{L"exOpenDynamic", 5270}, {L"exOpenKeyset", 5271}, {L"exOpenForwardOnly", 5272},
          {L"exOpenStatic", 5273}}},
        {L"exCorrelationalTable", {{L"exctNone", 0}, {L"exctTable", 1}, {L"exctAliasName", 2}}},
        {L"exJoinType", {{L"exInnerJoin", 5370}, {L"exLeftLoin", 5371}, {L"exRightJoin", 5372}}},
        {L"exTagPosition",
         {{L"exPosClaseName", 1}, {L"exPosField", 2}, {L"exPosBarText", 3}, {L"exPosModify", 4},
          {L"exPosOldValue", 5}, {L"exPosTypeField", 6}}},
        {L"exVarias", {{L"exSeparador", 187}}},
        {L"exMsgBoxIcon",
         {{L"exCritical", 16}, {L"exQuestion", 32}, {L"exExclamacion", 48}, {L"exInformacion", 64}}},
        {L"exMsgBoxButtons",
         {{L"exOKOnly", 0}, {L"exOkCancel", 1}, {L"exAbortRetryIgnore", 2}, {L"exYesNoCancel", 3},
          {L"exYesNo", 4}, {L"exRetryCancel", 5}}},
        {L"exMsgBoxButton",
         {{L"exOk", 1}, {L"exCancel", 2}, {L"exAbort", 3}, {L"exRetry", 4}, {L"exIgnore", 5},
          {L"exYes", 6}, {L"exNo", 7}}},
        {L"exMsgBoxDefaultButton",
         {{L"exDefaultButton1", 0}, {L"exDefaultButton2", 256}, {L"exDefaultButton3", 512},
          {L"exDefaultButton4", 768}}},
        {L"exEnviron", {{L"exDAO", 5200}, {L"exRDO", 5201}, {L"exADO", 5202}}},
        {L"ExExecute", {{L"exExecDirect", 5211}, {L"exFailOnError", 5212}}},
        {L"exConexion", {{L"exJet", 5230}, {L"exODBC", 5231}, {L"exDirect", 5232}}},
        {L"exTypeQry",
         {{L"exQAction", 5250}, {L"exQAppend", 5251}, {L"exQCompound", 5252}, {L"exQCrosstab", 5253},
          {L"exQDDL", 5254}, {L"exQDelete", 5255}, {L"exQMakeTable", 5256}, {L"exQProcedure", 5257},
          {L"exQSelect", 5258}, {L"exQSetOperation", 5259}, {L"exQSPTBulk", 5260},
          {L"exQSQLPassThrough", 5261}, {L"exQUpdate", 5262}}},
        {L"ssTypeForm", {{L"ssMenu", 5370}, {L"ssOption", 5371}}},
        {L"SSAccess",
         {{L"SSAcOpen", 1}, {L"SSAcSelect", 2}, {L"SSAcPrint", 3}, {L"SSAcUpdate", 4}, {L"SSAcInsert", 5},
          {L"SSAcDelete", 6}, {L"SSaCFind", 7}, {L"SSAcSort", 8}, {L"SSAcFilter", 9},
          {L"SSAcOrderBy", 10}, {L"SSAcSave", 11}, {L"SSAcCopy", 12}}},
        {L"SSAtributoAcceso",
         {{L"SSEstados", 17}, {L"SSMaxPermiso", 131072}, {L"ssOpen", 2}, {L"SSSelect", 4},
          {L"SSPrint", 8}, {L"SSUpdate", 16}, {L"SSInsert", 32}, {L"SSDelete", 64}, {L"SSFind", 128},
          {L"SSSort", 256}, {L"SSFilters", 512}, {L"SSOrderBy", 1024}, {L"SSSave", 2048},
          {L"SSCopy", 4096}, {L"SSFilter", 8192}, {L"SSRemoveFilter", 16384},
          {L"SSFmtNumeric", 32768}, {L"SSSendMail", 65536}, {L"SSColAdjustmen", 131072}}},
        {L"SSAction", {{L"SSAttrAdd", 5390}, {L"SSAttrRemove", 5391}}},
        {L"ssAllowEdit",
         {{L"ssEmpty", 5350}, {L"ssReadOnly", 5351}, {L"ssNotAdd", 5352}, {L"SSAdd", 5353},
          {L"ssEdit", 5354}}},
        {L"ssSourcePath",
         {{L"ssNone", 5360}, {L"ssAppPath", 5361}, {L"ssWinPath", 5362}, {L"ssWinSysPath", 5363},
          {L"ssTemp", 5364}, {L"ssProgramFiles", 5365}, {L"ssCommonFiles", 5366}}},
        {L"ssEjecution", {{L"ssSingleUser", 1}, {L"ssMultiUser", 2}}},
        {L"ssAutenticationLevel",
         {{L"ssAutenticationNone", 1}, {L"ssAutenticationFull", 2}, {L"ssAutenticationWin", 3}}},
        {L"ssOFFlags",
         {{L"ssOFPermissionsTree", 0}, {L"ssOFPermissions", 1}, {L"ssOFUsers", 2},
          {L"ssOFChangePassword", 3}}},
    };
    return table;
}

std::wstring text(BSTR b) {
    std::wstring s = b ? std::wstring(b, SysStringLen(b)) : std::wstring();
    SysFreeString(b);
    return s;
}

class TypeLibrary : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(LoadTypeLibEx(dll_path().c_str(), REGKIND_NONE, library_.out()), S_OK)
            << "the DLL carries no readable type library";
    }

    std::wstring name_of(ITypeInfo* info, MEMBERID id) {
        BSTR name = nullptr;
        info->GetDocumentation(id, &name, nullptr, nullptr, nullptr);
        return text(name);
    }

    // Every enumeration of the library with its members in declaration order.
    std::map<std::wstring, std::vector<Member>> enumerations() {
        std::map<std::wstring, std::vector<Member>> found;
        for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
            TYPEKIND kind;
            library_->GetTypeInfoType(i, &kind);
            if (kind != TKIND_ENUM) continue;
            ComPtr<ITypeInfo> info;
            library_->GetTypeInfo(i, info.out());
            TYPEATTR* attr = nullptr;
            info->GetTypeAttr(&attr);
            std::vector<Member> members;
            for (WORD v = 0; v < attr->cVars; ++v) {
                VARDESC* var = nullptr;
                info->GetVarDesc(v, &var);
                EXPECT_EQ(var->varkind, VAR_CONST);
                EXPECT_EQ(V_VT(var->lpvarValue), VT_I4);
                members.push_back({name_of(info.get(), var->memid), V_I4(var->lpvarValue)});
                info->ReleaseVarDesc(var);
            }
            info->ReleaseTypeAttr(attr);
            found[name_of(info.get(), MEMBERID_NIL)] = members;
        }
        return found;
    }

    ComPtr<ITypeLib> library_;
};

TEST_F(TypeLibrary, PublishesEveryEnumerationWithItsMembersInOrder) {
    auto found = enumerations();
    EXPECT_EQ(found.size(), 29u);
    size_t members = 0;
    for (const Enumeration& e : expected()) {
        SCOPED_TRACE(std::string(e.name.begin(), e.name.end()));
        auto it = found.find(e.name);
        ASSERT_NE(it, found.end()) << "enumeration missing or misspelt";
        ASSERT_EQ(it->second.size(), e.members.size());
        for (size_t i = 0; i < e.members.size(); ++i) {
            EXPECT_EQ(it->second[i].name, e.members[i].name) << "member " << i;
            EXPECT_EQ(it->second[i].value, e.members[i].value) << "member " << i;
        }
        members += it->second.size();
    }
    EXPECT_EQ(members, 187u);
}

TEST_F(TypeLibrary, CarriesTheLibraryIdentity) {
    TLIBATTR* attr = nullptr;
    ASSERT_EQ(library_->GetLibAttr(&attr), S_OK);
    EXPECT_TRUE(IsEqualGUID(attr->guid, LIBID_Celdo));
    EXPECT_EQ(attr->wMajorVerNum, 1);
    EXPECT_EQ(attr->wMinorVerNum, 0);
#ifdef _WIN64
    EXPECT_EQ(attr->syskind, SYS_WIN64);
#else
    EXPECT_EQ(attr->syskind, SYS_WIN32);
#endif
    library_->ReleaseTLibAttr(attr);
    BSTR name = nullptr;
    library_->GetDocumentation(-1, &name, nullptr, nullptr, nullptr);
    EXPECT_EQ(text(name), L"Celdo");
}

TEST_F(TypeLibrary, ConstantsIsACreatableClassWithADualInterface) {
    ComPtr<ITypeInfo> coclass;
    ASSERT_EQ(library_->GetTypeInfoOfGuid(CLSID_Constants, coclass.out()), S_OK);
    EXPECT_EQ(name_of(coclass.get(), MEMBERID_NIL), L"Constants");
    TYPEATTR* attr = nullptr;
    coclass->GetTypeAttr(&attr);
    EXPECT_EQ(attr->typekind, TKIND_COCLASS);
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FCANCREATE);
    coclass->ReleaseTypeAttr(attr);

    // A dual interface has two views: the dispatch one and the vtable one behind it.
    ComPtr<ITypeInfo> dispatch;
    ASSERT_EQ(library_->GetTypeInfoOfGuid(IID__Constants, dispatch.out()), S_OK);
    dispatch->GetTypeAttr(&attr);
    EXPECT_EQ(attr->typekind, TKIND_DISPATCH);
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FDUAL);
    dispatch->ReleaseTypeAttr(attr);
    HREFTYPE vtable_ref = 0;
    ASSERT_EQ(dispatch->GetRefTypeOfImplType(-1, &vtable_ref), S_OK);
    ComPtr<ITypeInfo> vtable;
    ASSERT_EQ(dispatch->GetRefTypeInfo(vtable_ref, vtable.out()), S_OK);
    vtable->GetTypeAttr(&attr);
    EXPECT_EQ(attr->typekind, TKIND_INTERFACE);
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FOLEAUTOMATION);
    vtable->ReleaseTypeAttr(attr);
}

// Object browsers and IntelliSense show the help strings: every enumeration, class, interface
// and member has one, in the member's own words (a sample is compared letter for letter).
TEST_F(TypeLibrary, EveryTypeAndMemberDescribesItself) {
    const auto help_of = [](ITypeInfo* info, MEMBERID id) {
        BSTR help = nullptr;
        info->GetDocumentation(id, nullptr, &help, nullptr, nullptr);
        return text(help);
    };
    std::map<std::wstring, std::wstring> sample;
    size_t members = 0;
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        library_->GetTypeInfo(i, info.out());
        const std::wstring type = name_of(info.get(), MEMBERID_NIL);
        EXPECT_FALSE(help_of(info.get(), MEMBERID_NIL).empty()) << std::string(type.begin(), type.end());
        sample[type] = help_of(info.get(), MEMBERID_NIL);
        TYPEATTR* attr = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attr), S_OK);
        for (WORD f = 0; attr->typekind == TKIND_DISPATCH && f < attr->cFuncs; ++f) {
            FUNCDESC* func = nullptr;
            if (info->GetFuncDesc(f, &func) != S_OK) { ADD_FAILURE() << std::string(type.begin(), type.end()) << " " << f; continue; }
            // The seven members of IUnknown and IDispatch are the platform's.
            if (func->oVft >= static_cast<SHORT>(7 * sizeof(void*)) || !(attr->wTypeFlags & TYPEFLAG_FDUAL)) {
                const std::wstring member = type + L"." + name_of(info.get(), func->memid);
                EXPECT_FALSE(help_of(info.get(), func->memid).empty()) << std::string(member.begin(), member.end());
                sample[member] = help_of(info.get(), func->memid);
                ++members;
            }
            info->ReleaseFuncDesc(func);
        }
        info->ReleaseTypeAttr(attr);
    }
    EXPECT_GT(members, 200u);
    EXPECT_EQ(sample[L"clsCeldo"], L"A field: a column, a parameter or a node of a field tree, with its metadata and value");
    EXPECT_EQ(sample[L"_clsCeldo.Value"], L"The value, validated and converted to the field's type");
    EXPECT_EQ(sample[L"__Apuntadores.Requery"], L"Asks the host for the page of rows after (or from) the primary key in PK");
    EXPECT_EQ(sample[L"ExDataType"], L"Logical data type of a field");
}

TEST_F(TypeLibrary, AliasesShareTheirValue) {
    ComPtr<ITypeComp> comp;
    ASSERT_EQ(library_->GetTypeComp(comp.out()), S_OK);
    auto value_of = [&](const wchar_t* name) -> long {
        DESCKIND kind = DESCKIND_NONE;
        BINDPTR bound{};
        ComPtr<ITypeInfo> info;
        std::wstring n(name);
        if (FAILED(comp->Bind(n.data(), LHashValOfNameSys(SYS_WIN32, LOCALE_NEUTRAL, n.c_str()), 0, info.out(),
                              &kind, &bound)) ||
            kind != DESCKIND_VARDESC)
            return -1;
        long v = V_I4(bound.lpvardesc->lpvarValue);
        info->ReleaseVarDesc(bound.lpvardesc);
        return v;
    };
    EXPECT_EQ(value_of(L"exDataTime"), 1019);
    EXPECT_EQ(value_of(L"exDateTime"), 1019);
    EXPECT_EQ(value_of(L"SSMaxPermiso"), 131072);
    EXPECT_EQ(value_of(L"SSColAdjustmen"), 131072);
}

}  // namespace
}  // namespace celdo::testing

namespace celdo::testing {
namespace {

// Hosts compiled against the service bind its members by dispatch id and vtable slot: the
// interface is complete from its first release, so members built later never move.
TEST_F(TypeLibrary, TheServiceInterfaceIsCompleteAndItsIdsStay) {
    ComPtr<ITypeInfo> dispatch;
    ASSERT_EQ(library_->GetTypeInfoOfGuid(IID__ISService, dispatch.out()), S_OK);
    TYPEATTR* attr = nullptr;
    dispatch->GetTypeAttr(&attr);
    // 50 members, three of them properties with Get and Let, after the seven of IDispatch.
    EXPECT_EQ(attr->cFuncs, 60);
    dispatch->ReleaseTypeAttr(attr);
    const std::pair<const wchar_t*, MEMBERID> members[] = {
        {L"Ex", 1},           {L"IsControl", 13},    {L"AddNode", 14},          {L"FillForm", 19},
        {L"FillFlexGrid", 26}, {L"AddListItem", 31}, {L"ExecFillListDB", 37},   {L"FillToolBar", 42},
        {L"SawpListView", 48}, {L"FillGrid", 50},
    };
    for (const auto& [name, id] : members) EXPECT_EQ(name_of(dispatch.get(), id), name) << id;
}

}  // namespace
}  // namespace celdo::testing

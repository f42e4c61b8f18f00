// Reads the type library back from the built DLL: the published vocabulary against the table
// that host code was written for, letter for letter and value for value, the library's
// identity, the help strings and the service's fixed dispatch ids.
#include <map>
#include <sstream>

#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// Written out independently of the declarations the DLL is built from, so that a typo in either
// shows. As in a VB Enum, a member without "=value" is one more than the member before it.
const std::pair<const wchar_t*, const wchar_t*> kEnumerations[] = {
    {L"ExDataType", L"exBoolean=1001 exByte exInteger exLong exCurrency exSingle exDouble exFloat exDecimal "
                    L"exTimeStamp exDate exChar exTime exText exMemo exDateNumber exTimeNumber exAutoNumeric "
                    L"exDataTime exDateTime=1019 exBigInt exSmallCurrency exExpresion exPositeveInteger "
                    L"exgYear=1025 exdtmExpresion=1029 exnumExpresion exImagen exObject exAttribute=1039 "
                    L"exClass=1033 exField=1035 exFields=1034"},
    {L"exDirection", L"exParamInput=2000 exParamInputOutput exParamOutput exParamReturnValue exParamUndefined "
                     L"exOrderAscending=2008 exOrderDescending=2010 exDAIzquierda=2020 exDADerecha=2022"},
    {L"exRowSourceType", L"exQuery=5380 exValueList exClipText exSPReturnValues exExQuery"},
    {L"ExDisplayControl", L"exTextBox=5390 exComboBox exListBox exOptionButton exBuilder exCheckBox "
                          L"exNoDisplayControl exHelpButton exDatePicker"},
    {L"XMLNodeTypes", L"xntUnknown=0 xntNode xntEmpty xntText xntCDATA xntComment xntDOCTYPE"},
    {L"TypeOperator", L"exDefault=0 exLoad exFind exFilter"}, {L"exEdit", L"exInsert=5380 exUpdate exDelete exProperties exEditNone"},
    {L"exTypeRs", L"exOpenDynamic=5270 exOpenKeyset exOpenForwardOnly exOpenStatic"},
    {L"exCorrelationalTable", L"exctNone=0 exctTable exctAliasName"}, {L"exJoinType", L"exInnerJoin=5370 exLeftLoin exRightJoin"},
    {L"exTagPosition", L"exPosClaseName=1 exPosField exPosBarText exPosModify exPosOldValue exPosTypeField"},
    {L"exVarias", L"exSeparador=187"}, {L"exMsgBoxIcon", L"exCritical=16 exQuestion=32 exExclamacion=48 exInformacion=64"},
    {L"exMsgBoxButtons", L"exOKOnly=0 exOkCancel exAbortRetryIgnore exYesNoCancel exYesNo exRetryCancel"},
    {L"exMsgBoxButton", L"exOk=1 exCancel exAbort exRetry exIgnore exYes exNo"},
    {L"exMsgBoxDefaultButton", L"exDefaultButton1=0 exDefaultButton2=256 exDefaultButton3=512 exDefaultButton4=768"},
    {L"exEnviron", L"exDAO=5200 exRDO exADO"}, {L"ExExecute", L"exExecDirect=5211 exFailOnError"},
    {L"exConexion", L"exJet=5230 exODBC exDirect"}, {L"ssTypeForm", L"ssMenu=5370 ssOption"},
    {L"exTypeQry", L"exQAction=5250 exQAppend exQCompound exQCrosstab exQDDL exQDelete exQMakeTable exQProcedure "
                   L"exQSelect exQSetOperation exQSPTBulk exQSQLPassThrough exQUpdate"},
    {L"SSAccess", L"SSAcOpen=1 SSAcSelect SSAcPrint SSAcUpdate SSAcInsert SSAcDelete SSaCFind SSAcSort SSAcFilter "
                  L"SSAcOrderBy SSAcSave SSAcCopy"},
    {L"SSAtributoAcceso", L"SSEstados=17 SSMaxPermiso=131072 ssOpen=2 SSSelect=4 SSPrint=8 SSUpdate=16 SSInsert=32 "
                          L"SSDelete=64 SSFind=128 SSSort=256 SSFilters=512 SSOrderBy=1024 SSSave=2048 SSCopy=4096 "
                          L"SSFilter=8192 SSRemoveFilter=16384 SSFmtNumeric=32768 SSSendMail=65536 SSColAdjustmen=131072"},
    {L"SSAction", L"SSAttrAdd=5390 SSAttrRemove"}, {L"ssAllowEdit", L"ssEmpty=5350 ssReadOnly ssNotAdd SSAdd ssEdit"},
    {L"ssSourcePath", L"ssNone=5360 ssAppPath ssWinPath ssWinSysPath ssTemp ssProgramFiles ssCommonFiles"},
    {L"ssEjecution", L"ssSingleUser=1 ssMultiUser"}, {L"ssAutenticationLevel", L"ssAutenticationNone=1 ssAutenticationFull ssAutenticationWin"},
    {L"ssOFFlags", L"ssOFPermissionsTree=0 ssOFPermissions ssOFUsers ssOFChangePassword"},
};

// The members as "name=value name=value ...", every value written out.
std::wstring spelt_out(const wchar_t* members) {
    std::wistringstream in(members);
    std::wstring member, out;
    long value = -1;
    while (in >> member) {
        const size_t equals = member.find(L'=');
        value = equals == std::wstring::npos ? value + 1 : std::stol(member.substr(equals + 1));
        out += (out.empty() ? L"" : L" ") + member.substr(0, equals) + L"=" + std::to_wstring(value);
    }
    return out;
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
    EXPECT_EQ(found.size(), std::size(kEnumerations));
    for (const auto& [name, members] : kEnumerations) EXPECT_EQ(found[name], spelt_out(members));
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

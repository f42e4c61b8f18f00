#include "collections/CeldosSeguimiento.hpp"

#include "automation/textops.hpp"

namespace celdo::collections {

using automation::Variant;

bool is_audit_name(std::u16string_view name) {
    for (std::u16string_view audit : kAuditNames) {
        if (automation::equal_text(name, audit)) return true;
    }
    return false;
}

namespace {

// Who: a profile name of up to 15 characters, "Admin" unless told otherwise.
automation::Ref<fields::clsCeldo> profile(std::u16string_view name) {
    auto f = automation::make_ref<fields::clsCeldo>();
    f->let_Name(std::u16string(name));
    f->let_SourceName(u"str" + std::u16string(name));
    f->let_Size(15);
    f->let_Required(true);
    f->let_DefaultValue(Variant(u"Admin"));
    return f;
}

// When: a date and time, now unless told otherwise.
automation::Ref<fields::clsCeldo> moment(std::u16string_view name) {
    auto f = automation::make_ref<fields::clsCeldo>();
    f->let_Name(std::u16string(name));
    f->let_SourceName(u"dtm" + std::u16string(name));
    f->let_DataType(fields::exDateTime);
    f->let_Required(true);
    f->let_DefaultValue(Variant(u"Now()"));
    return f;
}

}  // namespace

CeldosSeguimiento::CeldosSeguimiento()
    : n_profile_(profile(kAuditNames[0])), u_profile_(profile(kAuditNames[1])), n_fecha_(moment(kAuditNames[2])),
      u_fecha_(moment(kAuditNames[3])) {}

automation::Ref<clsCeldos> CeldosSeguimiento::Registro() const {
    auto row = automation::make_ref<clsCeldos>();
    const Variant none = Variant::missing();
    for (const Field& f : {n_profile_, u_profile_, n_fecha_, u_fecha_}) row->Append(f, none, none, u"");
    return row;
}

}  // namespace celdo::collections

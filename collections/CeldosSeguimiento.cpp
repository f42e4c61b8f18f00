#include "collections/CeldosSeguimiento.hpp"

namespace celdo::collections {

using automation::Variant;

namespace {

// Who: a profile name of up to 15 characters, "Admin" unless told otherwise.
automation::Ref<fields::clsCeldo> profile(const std::u16string& name) {
    auto f = automation::make_ref<fields::clsCeldo>();
    f->let_Name(name);
    f->let_SourceName(u"str" + name);
    f->let_Size(15);
    f->let_Required(true);
    f->let_DefaultValue(Variant(u"Admin"));
    return f;
}

// When: a date and time, now unless told otherwise.
automation::Ref<fields::clsCeldo> moment(const std::u16string& name) {
    auto f = automation::make_ref<fields::clsCeldo>();
    f->let_Name(name);
    f->let_SourceName(u"dtm" + name);
    f->let_DataType(fields::exDateTime);
    f->let_Required(true);
    f->let_DefaultValue(Variant(u"Now()"));
    return f;
}

}  // namespace

CeldosSeguimiento::CeldosSeguimiento()
    : n_profile_(profile(u"NProfile")), u_profile_(profile(u"UProfile")), n_fecha_(moment(u"NFecha")),
      u_fecha_(moment(u"UFecha")) {}

automation::Ref<clsCeldos> CeldosSeguimiento::Registro() const {
    auto row = automation::make_ref<clsCeldos>();
    const Variant none = Variant::missing();
    for (const Field& f : {n_profile_, u_profile_, n_fecha_, u_fecha_}) row->Append(f, none, none, u"");
    return row;
}

}  // namespace celdo::collections

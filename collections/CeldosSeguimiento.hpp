#pragma once
// CeldosSeguimiento: the four audit-trail fields, created with fixed metadata and replaceable
// through their properties (plain references: no copy, no check).

#include <array>
#include <string_view>

#include "automation/component.hpp"
#include "collections/CeldosSeguimiento.gen.hpp"
#include "collections/clsCeldos.hpp"

namespace celdo::collections {

// The audit fields' names, in the order Registro lists them: who made the row and who changed
// it last, then when each happened.
inline constexpr std::array<std::u16string_view, 4> kAuditNames{u"NProfile", u"UProfile", u"NFecha", u"UFecha"};
// Whether a field's name is one of them, in any case (a row's own audit fields are never
// overwritten by a position-based assignment).
bool is_audit_name(std::u16string_view name);

class CeldosSeguimiento final : public automation::Declared<CeldosSeguimiento> {
public:
    using Field = automation::Ref<fields::clsCeldo>;

    CeldosSeguimiento();

    Field get_NProfile() const { return n_profile_; }
    void set_NProfile(Field value) { n_profile_ = std::move(value); }
    Field get_UProfile() const { return u_profile_; }
    void set_UProfile(Field value) { u_profile_ = std::move(value); }
    Field get_NFecha() const { return n_fecha_; }
    void set_NFecha(Field value) { n_fecha_ = std::move(value); }
    Field get_UFecha() const { return u_fecha_; }
    void set_UFecha(Field value) { u_fecha_ = std::move(value); }
    // A new collection on every call, of the same four field objects.
    automation::Ref<clsCeldos> Registro() const;

    // Not published: the fields it holds, for the cycle collector.
    void visit_references(automation::ReferenceVisitor& visitor) const override {
        for (const Field* f : {&n_profile_, &u_profile_, &n_fecha_, &u_fecha_}) visitor.visit(f->get());
    }
    void drop_references() override { n_profile_ = u_profile_ = n_fecha_ = u_fecha_ = nullptr; }

private:
    Field n_profile_;
    Field u_profile_;
    Field n_fecha_;
    Field u_fecha_;
};

}  // namespace celdo::collections

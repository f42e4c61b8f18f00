// The collection's state operations: one field operation over every field in order, values
// moved in from another row by position or by name, and the required check before a save.
#include "automation/error.hpp"
#include "collections/CeldosSeguimiento.hpp"
#include "collections/clsCeldos.hpp"

namespace celdo::collections {

using automation::Variant;

// Each walk takes a snapshot first, so that a field operation that reaches back into this
// collection (through a Chance handler) cannot disturb the walk.
void clsCeldos::Initialize() {
    for (const Ref<Field>& f : items_.snapshot()) f->Initialize(Variant::missing());
}

void clsCeldos::Clear() {
    for (const Ref<Field>& f : items_.snapshot()) f->Clear();
}

void clsCeldos::SetNew() {
    for (const Ref<Field>& f : items_.snapshot()) f->SetNew();
}

void clsCeldos::Updated() {
    for (const Ref<Field>& f : items_.snapshot()) f->let_Updated(true);
}

void clsCeldos::CancelUpdate() {
    for (const Ref<Field>& f : items_.snapshot()) f->cancel_update();
}

void clsCeldos::let_Direction(fields::exDirection value) {
    for (const Ref<Field>& f : items_.snapshot()) f->let_Direction(value);
}

void clsCeldos::ChangeOperator(fields::TypeOperator vOperator) {
    if (vOperator != fields::exLoad && vOperator != fields::exFind) return;
    for (const Ref<Field>& f : items_.snapshot()) {
        // A search compares every type but Boolean with Like; the ">=" that the choice seems to
        // offer was never reached, and searches rely on Like.
        const bool equals = vOperator == fields::exLoad || f->get_DataType() == fields::exBoolean;
        f->let_Operator(equals ? u"=" : u"Like");
    }
}

void clsCeldos::Assing(Ref<clsCeldos>& Values) {
    if (!Values) throw automation::AutomationError(automation::StdError::ObjectVariableNotSet);
    const std::vector<Ref<Field>> mine = items_.snapshot();
    const std::vector<Ref<Field>> theirs = Values->items_.snapshot();
    // Positions pair up; an audit field here skips its partner there too.
    for (size_t i = 0; i < mine.size() && i < theirs.size(); ++i) {
        if (is_audit_name(mine[i]->get_Name())) continue;
        mine[i]->let_Value(theirs[i]->get_Value());
        mine[i]->let_DefaultValue(theirs[i]->get_DefaultValue());
    }
}

void clsCeldos::Update(Ref<clsCeldos>& Values, const std::u16string& Property) {
    if (!Values) throw automation::AutomationError(automation::StdError::ObjectVariableNotSet);
    for (const Ref<Field>& source : Values->items_.snapshot()) {
        if (const Ref<Field> target(find(source->get_Name())); target) target->let_Value(source->Item(Property));
    }
}

bool clsCeldos::ValidateRequired(std::u16string& Msg, fields::exEdit oEditMode) {
    if (oEditMode == fields::exUpdate || oEditMode == fields::exInsert) {
        // A check that fails ends the walk; the answer comes from the messages gathered so far.
        automation::resume_next([&] {
            for (const Ref<Field>& f : items_.snapshot()) {
                if (oEditMode == fields::exUpdate && !f->get_Updated()) continue;
                f->ValidateRequired(Msg, oEditMode);
            }
        });
    }
    // A message passed in counts as a failure too: callers pass an empty one.
    return Msg.empty();
}

}  // namespace celdo::collections

#include "collections/clsCeldos.hpp"

#include <algorithm>

#include "automation/convert.hpp"
#include "automation/enumerator.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/textops.hpp"
#include "fields/data_types.hpp"
#include "fields/errors.hpp"

namespace celdo::collections {

using automation::AutomationError;
using automation::StdError;
using automation::Variant;
using automation::VarType;

namespace {

[[noreturn]] void invalid_call() { throw AutomationError(StdError::InvalidCall); }

// An optional Before or After counts as given unless it was left out (or is Empty).
bool given(const Variant& v) { return !v.is_missing() && !v.is_empty(); }

}  // namespace

std::optional<size_t> clsCeldos::position_of(const Variant& index) const {
    if (index.is_string()) return items_.position_of_key(index.as_string());
    if (!index.is_number()) return std::nullopt;
    const int64_t position = automation::to_long(index);
    if (position < 1 || position > static_cast<int64_t>(items_.size())) return std::nullopt;
    return static_cast<size_t>(position - 1);
}

std::optional<size_t> clsCeldos::anchor(const Variant& Before, const Variant& After) const {
    if (given(Before)) return position_of(Before);
    if (given(After)) {
        auto at = position_of(After);
        if (!at) return std::nullopt;
        return *at + 1;
    }
    return items_.size();
}

void clsCeldos::Append(Ref<Field> Celdo, const Variant& Before, const Variant& After, const std::u16string& Key) {
    if (!Celdo) return;
    // Every step goes on after a failure: a position beyond the 16-bit range stays -1.
    automation::resume_next([&] {
        if (Celdo->get_Position() == -1) Celdo->let_Position(automation::to_integer(Variant(get_Count())));
    });
    const std::u16string key = Key.empty() ? std::u16string(automation::trim(Celdo->get_Name())) : Key;
    std::optional<size_t> at;
    automation::resume_next([&] { at = anchor(Before, After); });
    if (!at) return;
    // A name already in use keeps the field, unkeyed: reachable by position and enumeration.
    if (items_.insert(*at, Celdo, key) == KeyedList<Ref<Field>>::Result::DuplicateKey)
        items_.insert(*at, Celdo, std::nullopt);
}

automation::Ref<fields::clsCeldo> clsCeldos::Add(const std::u16string& Name, const std::u16string& SourceName,
                                                 int16_t DataType, int32_t Size, int16_t Position, bool Required,
                                                 const std::u16string& Description,
                                                 const std::u16string& ValidationText, const Variant& Value,
                                                 const Variant& OldValue, const Variant& Before, const Variant& After) {
    auto field = automation::make_ref<Field>();
    field->let_Name(Name);
    field->let_DataType(static_cast<fields::ExDataType>(DataType));
    if (fields::facts_of(field->get_DataType()).expression) field->let_Expresion(SourceName);
    else field->let_SourceName(SourceName);
    field->let_Position(Position != -1 ? Position : automation::to_integer(Variant(get_Count())));
    // Typed optional arguments left out carry the field's own defaults, so setting them is the
    // same as leaving them alone.
    field->let_Size(Size);
    field->let_Required(Required);
    field->let_Description(Description);
    field->let_ValidationText(ValidationText);
    if (!Value.is_missing()) field->let_Value(Value);
    if (!OldValue.is_missing()) {
        // OldValue has no Let: the value it reads receives the argument through its default
        // member, which needs an object there.
        const Variant old = field->get_OldValue();
        if (!old.is_object() || !old.as_object()) throw AutomationError(StdError::ObjectRequired);
        automation::Argument assigned{OldValue};
        old.as_object()->invoke(automation::kDefaultMember, automation::kLet, {&assigned, 1});
    }
    Append(field, Before, After, Name);
    return field;
}

void clsCeldos::AddParameter(const std::u16string& Name, int16_t DataType, const Variant& Value,
                             const std::u16string& Operador, int32_t Size, const std::u16string& SourceName,
                             fields::exDirection Direction, const Variant& Before, const Variant& After) {
    auto field = automation::make_ref<Field>();
    field->let_Name(Name);
    field->let_DataType(static_cast<fields::ExDataType>(DataType));
    field->let_Value(Value);
    if (Size != 0) field->let_Size(Size);
    // Parameters carry their operator text in Description, as callers read it there.
    if (!Operador.empty()) field->let_Description(Operador);
    if (!SourceName.empty()) {
        if (fields::facts_of(field->get_DataType()).expression) field->let_Expresion(SourceName);
        else field->let_SourceName(SourceName);
    }
    field->let_Direction(Direction);
    field->let_Position(automation::to_integer(Variant(get_Count())));
    Append(field, Before, After, Name);
}

automation::Ref<fields::clsCeldo> clsCeldos::get_Item(Variant& vntIndexKey) const {
    // Only a value that is not numeric is a key: it is trimmed, and the caller sees the trim.
    if (!automation::lang::IsNumeric(vntIndexKey)) {
        const bool text = vntIndexKey.is_string();
        const std::u16string read = text ? std::u16string() : automation::to_string(vntIndexKey);
        const std::u16string& whole = text ? vntIndexKey.as_string() : read;
        const std::u16string_view trimmed = automation::trim(whole);
        if (!text || trimmed.size() != whole.size()) vntIndexKey = Variant(trimmed);
    }
    if (vntIndexKey.is_string()) {
        const Ref<Field>* found = items_.find(vntIndexKey.as_string());
        if (!found) invalid_call();
        return *found;
    }
    auto at = position_of(automation::value_of(vntIndexKey));
    if (!at) invalid_call();
    return items_.at(*at);
}

void clsCeldos::Remove(Variant& Index) {
    if (Index.type() == VarType::Integer) {
        const int16_t position = Index.as_integer();
        if (items_.empty() || position > get_Count()) return;
        if (position < 1) invalid_call();
        items_.erase(static_cast<size_t>(position - 1));
        return;
    }
    if (Index.is_string()) {
        auto at = items_.position_of_key(Index.as_string());
        if (!at) invalid_call();
        items_.erase(*at);
    }
    // Any other type removes nothing, deliberately.
}

automation::Ref<automation::Object> clsCeldos::get_NewEnum() const {
    std::vector<Variant> items;
    items.reserve(items_.size());
    for (size_t i = 0; i < items_.size(); ++i) items.emplace_back(items_.at(i));
    return automation::make_ref<automation::SnapshotEnumerator>(std::move(items));
}

bool clsCeldos::Exist(const std::u16string& Name) const { return items_.find(Name) != nullptr; }

fields::clsCeldo* clsCeldos::find(std::u16string_view key) const {
    const Ref<Field>* found = items_.find(key);
    return found ? found->get() : nullptr;
}

void clsCeldos::renumber_last(const Field& field) {
    Field* named = find(field.get_Name());
    if (named) named->let_Position(automation::to_integer(Variant(get_Count() - 1)));
}

void clsCeldos::Appends(Ref<clsCeldos> Celdos, const Variant& Before, const Variant& After, const std::u16string& Key) {
    if (!Celdos) return;
    // The same objects, shared: a change through one collection shows through the other.
    for (const Ref<Field>& field : Celdos->items_.snapshot()) {
        automation::resume_next([&] {
            Append(field, Before, After, Key);
            renumber_last(*field);
        });
    }
}

void clsCeldos::AppendsAs(Ref<clsCeldos> Celdos, const Variant& Before, const Variant& After) {
    if (!Celdos) return;
    for (Ref<Field> field : Celdos->items_.snapshot()) {
        automation::resume_next([&] {
            std::u16string no_name;
            Variant no_value = Variant::missing();
            Ref<Field> copy = Duplicate(field, no_name, no_value);
            Append(copy, Before, After, u"");
            renumber_last(*copy);
        });
    }
}

void clsCeldos::AppendAs(Ref<Field>& rOriginal, const std::u16string& oNewName, Variant& oNewValue,
                         const Variant& Before, const Variant& After) {
    std::u16string name = oNewName;
    Append(Duplicate(rOriginal, name, oNewValue), Before, After, u"");
}

automation::Ref<fields::clsCeldo> clsCeldos::Duplicate(Ref<Field>& rOriginal, std::u16string& oNewName,
                                                       Variant& oNewValue) const {
    if (!rOriginal) throw AutomationError(StdError::ObjectVariableNotSet);
    const Field& original = *rOriginal;
    Ref<Field> copy = original.copy(oNewName, oNewValue);
    copy->let_Updated(true);
    if (original.get_HasChildren()) copy_children(original, *copy);
    return copy;
}

namespace {

// The fields whose children are being copied, outermost first, on this thread.
struct CopyWalk {
    std::vector<const fields::clsCeldo*> path;
    bool too_deep = false;
};
thread_local CopyWalk* g_copy_walk = nullptr;

}  // namespace

// A deep copy follows Children like the writers do: a tree deeper than they write, or one that
// holds a field among its own descendants (a cycle, endlessly deep), is refused as a whole by
// the outermost Duplicate, since AppendsAs would otherwise pass over the failing child silently.
void clsCeldos::copy_children(const Field& original, Field& copy) {
    CopyWalk outermost;
    const bool top = g_copy_walk == nullptr;
    if (top) g_copy_walk = &outermost;
    CopyWalk& walk = *g_copy_walk;
    const bool cycle = std::find(walk.path.begin(), walk.path.end(), &original) != walk.path.end();
    if (cycle || walk.path.size() >= static_cast<size_t>(Field::kMaxNesting)) walk.too_deep = true;
    if (!walk.too_deep) {
        walk.path.push_back(&original);
        try {
            copy.get_Children()->AppendsAs(original.get_Children(), Variant::missing(), Variant::missing());
        } catch (...) {
            walk.path.pop_back();
            if (top) g_copy_walk = nullptr;
            throw;
        }
        walk.path.pop_back();
    }
    if (!top) return;
    g_copy_walk = nullptr;
    if (walk.too_deep) throw AutomationError(fields::kObjectError, u"Celdo.Duplicate", u"Nesting too deep");
}

}  // namespace celdo::collections

#include "automation/dispatch.hpp"

#include <array>
#include <vector>

#include "automation/convert.hpp"
#include "automation/error.hpp"

namespace celdo::automation {

namespace {

// Member and parameter names are ASCII identifiers; hosts may spell them in any case.
bool same_name(std::u16string_view a, const char16_t* b) noexcept {
    size_t i = 0;
    for (; i < a.size(); ++i) {
        char16_t x = a[i];
        char16_t y = b[i];
        if (y == 0) return false;
        if (x >= u'A' && x <= u'Z') x = static_cast<char16_t>(x + 32);
        if (y >= u'A' && y <= u'Z') y = static_cast<char16_t>(y + 32);
        if (x != y) return false;
    }
    return b[i] == 0;
}

VarType var_type_of(ParamType type) {
    switch (type) {
    case ParamType::String: return VarType::String;
    case ParamType::Integer: return VarType::Integer;
    case ParamType::Long: return VarType::Long;
    case ParamType::Byte: return VarType::Byte;
    case ParamType::Boolean: return VarType::Boolean;
    case ParamType::Single: return VarType::Single;
    case ParamType::Double: return VarType::Double;
    case ParamType::Currency: return VarType::Currency;
    case ParamType::Date: return VarType::Date;
    default: return VarType::Variant;
    }
}

// Brings an argument to its declared type, as the language does when it passes a value to a
// typed parameter; an impossible conversion is the caller's "Type mismatch".
void coerce(Variant& value, ParamType type, const ClassInfo& (*cls)()) {
    switch (type) {
    case ParamType::Variant:
        return;
    case ParamType::Object:
    case ParamType::Unknown:
    case ParamType::Class:
        // JScript has no Nothing: its null stands for it.
        if (value.is_null()) value = Variant::nothing();
        if (!value.is_object()) throw AutomationError(StdError::TypeMismatch);
        if (type == ParamType::Class && !is_instance(value, cls())) throw AutomationError(StdError::TypeMismatch);
        return;
    default:
        value = change_type(value, var_type_of(type));
        return;
    }
}

// Chooses the accessor that a call reaches. Script hosts are loose about the flags: JScript
// reads properties as methods and assigns objects with Let and Set together, VBScript reads
// functions as properties.
uint16_t choose_accessor(const MemberInfo& m, uint16_t call, const Variant* assigned) {
    if (call & (kLet | kSet)) {
        bool object = assigned && (assigned->is_object() || assigned->is_null());
        if ((call & kSet) && (m.calls & kSet) && object) return kSet;
        if ((call & kLet) && (m.calls & kLet)) return kLet;
        if ((call & kSet) && (m.calls & kSet)) return kSet;
        if ((m.calls & kSet) && object) return kSet;
        return 0;
    }
    if ((call & kMethod) && (m.calls & kMethod)) return kMethod;
    if ((call & (kGet | kMethod)) && (m.calls & kGet)) return kGet;
    if ((call & kGet) && (m.calls & kMethod)) return kMethod;
    return 0;
}

// `obj.Prop(i)` on a property without parameters reads the property, then indexes the result:
// the default member of an object, or the element of an array.
Variant apply_index(const Variant& value, std::span<Argument> args) {
    if (value.is_object() && value.as_object()) {
        return value.as_object()->invoke(kDefaultMember, kGet | kMethod, args);
    }
    if (value.is_array()) {
        const Array& a = value.as_array();
        if (static_cast<int>(args.size()) != a.dimensions())
            throw AutomationError(StdError::SubscriptOutOfRange);
        std::array<int32_t, 2> index{};
        if (args.size() > index.size()) throw AutomationError(StdError::SubscriptOutOfRange);
        for (size_t i = 0; i < args.size(); ++i) index[i] = change_type(args[i].value, VarType::Long).as_long();
        return args.size() == 1 ? a.at(index[0]) : a.at(index[0], index[1]);
    }
    throw BindError(StdError::WrongArgumentCount);
}

}  // namespace

Variant Literal::materialise(ParamType type) const {
    Variant v;
    switch (kind) {
    case Kind::None: return Variant::missing();
    case Kind::Integer: v = Variant(static_cast<double>(integer)); break;
    case Kind::Real: v = Variant(real); break;
    case Kind::Text: v = Variant(text); break;
    case Kind::Boolean: v = Variant(integer != 0); break;
    case Kind::Nothing: return Variant::nothing();
    }
    if (type == ParamType::Variant) {
        // A Variant default keeps the literal's own subtype: whole numbers are Integer or
        // Long as the language would type them.
        if (kind == Kind::Integer) {
            if (integer >= INT16_MIN && integer <= INT16_MAX) return Variant(static_cast<int16_t>(integer));
            return Variant(static_cast<int32_t>(integer));
        }
        return v;
    }
    coerce(v, type, nullptr);
    return v;
}

const MemberInfo* find_member(const ClassInfo& cls, std::u16string_view name) noexcept {
    for (const MemberInfo& m : cls.members) {
        if (same_name(name, m.name)) return &m;
    }
    return nullptr;
}

const MemberInfo* find_member(const ClassInfo& cls, int32_t id) noexcept {
    for (const MemberInfo& m : cls.members) {
        if (m.id == id) return &m;
    }
    return nullptr;
}

std::optional<int> find_param(const MemberInfo& member, std::u16string_view name) noexcept {
    for (size_t i = 0; i < member.params.size(); ++i) {
        if (same_name(name, member.params[i].name)) return static_cast<int>(i);
    }
    return std::nullopt;
}

bool is_instance(const Variant& value, const ClassInfo& cls) noexcept {
    if (!value.is_object()) return false;
    Object* o = value.as_object();
    if (!o) return true;
    auto* c = dynamic_cast<Component*>(o);
    return c && &c->class_info() == &cls;
}

Variant invoke_member(Component& self, const MemberInfo& m, uint16_t call,
                      std::span<Argument> args) {
    const bool assigning = (call & (kLet | kSet)) != 0;
    if (assigning && args.empty()) throw BindError(StdError::WrongArgumentCount);
    const uint16_t chosen = choose_accessor(m, call, assigning ? &args.back().value : nullptr);
    if (!chosen) throw BindError(StdError::MemberNotFound);

    std::span<Argument> given = assigning ? args.first(args.size() - 1) : args;
    if (given.size() > m.params.size()) {
        if (chosen == kGet && m.params.empty()) {
            return apply_index(m.thunk(self, kGet, {}), given);
        }
        throw BindError(StdError::WrongArgumentCount);
    }

    const size_t count = m.params.size() + (assigning ? 1 : 0);
    std::array<Argument, 16> inline_buffer;
    std::vector<Argument> heap_buffer;
    std::span<Argument> bound;
    if (count <= inline_buffer.size()) {
        bound = std::span<Argument>(inline_buffer.data(), count);
    } else {
        heap_buffer.resize(count);
        bound = heap_buffer;
    }

    for (size_t i = 0; i < m.params.size(); ++i) {
        const ParamInfo& p = m.params[i];
        Argument& b = bound[i];
        b.by_ref = p.by_ref;
        if (i >= given.size() || given[i].value.is_missing()) {
            if (!p.optional) throw BindError(StdError::ArgumentNotOptional);
            b.value = p.fallback.materialise(p.type);
            continue;
        }
        b.value = given[i].value;
        try {
            coerce(b.value, p.type, p.cls);
        } catch (const AutomationError& e) {
            throw ArgumentError(e, static_cast<int>(i));
        }
    }
    if (assigning) {
        Argument& b = bound.back();
        b.value = args.back().value;
        // Set assigns a reference: a value that is no object has nothing to refer to.
        if (chosen == kSet && !b.value.is_object() && !b.value.is_null())
            throw BindError(StdError::ObjectRequired);
        try {
            coerce(b.value, m.type, m.type_cls);
        } catch (const AutomationError& e) {
            throw ArgumentError(e, static_cast<int>(args.size() - 1));
        }
    }

    Variant result = m.thunk(self, chosen, bound);

    for (size_t i = 0; i < given.size() && i < m.params.size(); ++i) {
        if (given[i].by_ref && m.params[i].by_ref) given[i].value = std::move(bound[i].value);
    }
    return result;
}

// ------------------------------------------------------------------------------ components

std::u16string Component::type_name() const { return class_info().name; }

std::optional<int32_t> Component::member_id(std::u16string_view name) {
    const MemberInfo* m = find_member(class_info(), name);
    if (!m) return std::nullopt;
    return m->id;
}

Variant Component::invoke(int32_t member, uint16_t call, std::span<Argument> args) {
    const MemberInfo* m = find_member(class_info(), member);
    if (!m) throw BindError(StdError::MemberNotFound);
    return invoke_member(*this, *m, call, args);
}

void Component::raise_event(int32_t event, std::span<Argument> args) {
    if (peer_) peer_->raise_event(event, args);
}

}  // namespace celdo::automation

#pragma once
// Member tables of the library's classes and the late-bound call through them. The tables are
// generated from each class's .api declaration; the same declaration produces the IDL, so what
// late binding accepts and what the type library publishes cannot drift apart.

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "automation/component.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

// The declared type of a parameter, property or result.
enum class ParamType : uint8_t {
    Variant,
    String,
    Integer,
    Long,  // enumerations travel as Long
    Byte,
    Boolean,
    Single,
    Double,
    Currency,
    Date,
    Object,      // any object, Nothing allowed
    Unknown,     // an enumerator handed out by NewEnum
    Class,       // an object of one of the library's classes, Nothing allowed
};

// A default value written in a declaration.
struct Literal {
    enum class Kind : uint8_t { None, Integer, Real, Text, Boolean, Nothing };
    Kind kind = Kind::None;
    int64_t integer = 0;
    double real = 0;
    const char16_t* text = nullptr;

    Variant materialise(ParamType type) const;
};

struct ParamInfo {
    const char16_t* name;
    ParamType type;
    const ClassInfo& (*cls)();  // for ParamType::Class
    bool by_ref;
    bool optional;
    Literal fallback;  // used when an optional argument is omitted
};

// Accessors a member offers, as Call flags: kMethod for a Sub or Function; kGet, kLet and kSet
// for the Property procedures that exist.
struct MemberInfo {
    const char16_t* name;
    int32_t id;
    uint16_t calls;
    std::span<const ParamInfo> params;  // for properties: the index parameters only
    ParamType type;                     // result of a function or Get; value of a Let or Set
    const ClassInfo& (*type_cls)();     // for ParamType::Class
    bool has_result;                    // false for a Sub
    Variant (*thunk)(Component& self, uint16_t call, std::span<Argument> args);
};

struct EventInfo {
    const char16_t* name;
    int32_t id;
    std::span<const ParamInfo> params;
};

struct ClassInfo {
    const char16_t* name;
    std::span<const MemberInfo> members;
    std::span<const EventInfo> events;
    Ref<Component> (*create)();  // null for a class that hosts cannot create
};

const MemberInfo* find_member(const ClassInfo& cls, std::u16string_view name) noexcept;
const MemberInfo* find_member(const ClassInfo& cls, int32_t id) noexcept;
// Index of a parameter by name (for named arguments), counting from 0.
std::optional<int> find_param(const MemberInfo& member, std::u16string_view name) noexcept;

// A late-bound call on a component. `args` are in source order, as long as the caller gave
// them (Missing where an optional argument was skipped); for Let and Set the last one is the
// value. By-reference arguments come back changed when the member changed them.
Variant invoke_member(Component& self, const MemberInfo& member, uint16_t call,
                      std::span<Argument> args);

// Whether an object belongs to a class (Nothing does, as the language allows).
bool is_instance(const Variant& value, const ClassInfo& cls) noexcept;

}  // namespace celdo::automation

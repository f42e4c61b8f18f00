#pragma once
// Late-bound calls by member name on any Object, as the language makes them on an Object
// variable: the library's own classes and host objects (controls, the data-access object)
// alike. Arguments are values, or variables passed by reference with ByRef(variable), which
// receive what the callee leaves in them.

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/object.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

struct ByRef {
    Variant& variable;
};

class Arg {
public:
    Arg(Variant value) : value_(std::move(value)) {}
    Arg(ByRef ref) : value_(ref.variable), ref_(&ref.variable) {}
    template <class T>
    Arg(T value) : value_(Variant(value)) {}

private:
    friend Variant invoke_with(Object&, int32_t, uint16_t, std::initializer_list<Arg>);
    Variant value_;
    Variant* ref_ = nullptr;
};

// The general form: `call` takes the kinds of call (kGet, kLet, kSet, kMethod, combined).
// An unknown member raises error 438.
Variant late_call(Object& object, std::u16string_view member, uint16_t call, std::initializer_list<Arg> args);
// The same with the member already resolved (Object::member_id).
Variant invoke_with(Object& object, int32_t member, uint16_t call, std::initializer_list<Arg> args);

// A property read asks for the property alone: some script objects take the method flag on a
// plain property as a call of its value.
inline Variant get(Object& object, std::u16string_view member, std::initializer_list<Arg> args = {}) {
    return late_call(object, member, kGet, args);
}
inline Variant call(Object& object, std::u16string_view member, std::initializer_list<Arg> args = {}) {
    return late_call(object, member, kMethod | kGet, args);
}
// Let and Set take the index arguments first and the assigned value last.
inline void let(Object& object, std::u16string_view member, std::initializer_list<Arg> args) {
    late_call(object, member, kLet, args);
}
inline void set(Object& object, std::u16string_view member, std::initializer_list<Arg> args) {
    late_call(object, member, kSet, args);
}

// The items of a collection as For Each walks them: the elements of an array, or what an
// object's enumerator (its NewEnum member) hands out. Anything else is error 451 (object not
// a collection), as For Each reports it.
std::vector<Variant> items_of(const Variant& collection);

// An object reached by many calls in a row, as a control is during one fill: each member name
// is resolved once and remembered, as a compiled host keeps its dispatch ids, so that a grid
// of a million cells costs a million calls and not a million name look-ups besides. Nothing
// (a null object) is error 91 on every call, as the language reports a call on Nothing.
class LateBound {
public:
    LateBound() = default;
    explicit LateBound(Ref<Object> object) : object_(std::move(object)) {}
    // The object a Variant holds; Nothing for anything else.
    explicit LateBound(const Variant& value) : object_(value.object()) {}

    Variant get(std::u16string_view member, std::initializer_list<Arg> args = {}) {
        return invoke_with(target(), id_of(member), kGet, args);
    }
    Variant call(std::u16string_view member, std::initializer_list<Arg> args = {}) {
        return invoke_with(target(), id_of(member), kMethod | kGet, args);
    }
    void let(std::u16string_view member, std::initializer_list<Arg> args) {
        invoke_with(target(), id_of(member), kLet, args);
    }
    void set(std::u16string_view member, std::initializer_list<Arg> args) {
        invoke_with(target(), id_of(member), kSet, args);
    }
    // The object's default member, as `object(args)` reads it in the language.
    Variant value(std::initializer_list<Arg> args = {}) {
        return invoke_with(target(), kDefaultMember, kGet, args);
    }
    // Whether the object has a member of that name, without calling it.
    bool has(std::u16string_view member);

    Object* object() const noexcept { return object_.get(); }
    const Ref<Object>& ref() const noexcept { return object_; }
    explicit operator bool() const noexcept { return static_cast<bool>(object_); }

private:
    Object& target() const;
    // The member's id, remembered once found; none when the object has no such member.
    std::optional<int32_t> lookup(std::u16string_view member);
    int32_t id_of(std::u16string_view member);

    Ref<Object> object_;
    std::vector<std::pair<std::u16string, int32_t>> ids_;
};

}  // namespace celdo::automation

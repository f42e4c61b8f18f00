#pragma once
// Late-bound calls by member name on any Object, as the language makes them on an Object
// variable: the library's own classes and host objects (controls, the data-access object)
// alike. Arguments are values, or variables passed by reference with ByRef(variable), which
// receive what the callee leaves in them.

#include <initializer_list>
#include <string_view>

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
    friend Variant late_call(Object&, std::u16string_view, uint16_t, std::initializer_list<Arg>);
    Variant value_;
    Variant* ref_ = nullptr;
};

// The general form: `call` takes the kinds of call (kGet, kLet, kSet, kMethod, combined).
// An unknown member raises error 438.
Variant late_call(Object& object, std::u16string_view member, uint16_t call, std::initializer_list<Arg> args);

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

}  // namespace celdo::automation

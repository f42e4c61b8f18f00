#pragma once
// The field model's own errors: numbers in the object-error range, sources and descriptions
// as hosts see them.

#include <cstdint>

namespace celdo::fields {

// The object-error base: a value a field cannot store, and the XML reader's and writer's errors.
inline constexpr int32_t kObjectError = -2147221504;  // 0x80040000
// A refused format.
inline constexpr int32_t kFormatError = -2147221503;  // 0x80040001

}  // namespace celdo::fields

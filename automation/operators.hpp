#pragma once
// The language's operators on Variants: comparison, + and &, with Null propagation.

#include "automation/variant.hpp"

namespace celdo::automation {

enum class Ordering { Less, Equal, Greater, Null };
enum class CompareMode { Binary, Text };  // Option Compare Binary / Text

// Variant comparison: Null on either side gives Null; Empty stands for 0 beside a number and
// for "" beside a text; a number is less than any text; texts compare by code unit (Binary) or
// ignoring case (Text); objects compare through their default member.
Ordering compare(const Variant& a, const Variant& b, CompareMode mode = CompareMode::Binary);

// A Variant beside a typed (non-Variant) operand, as in `w < 0` or `w = "x"`: beside a number,
// numeric text compares as its number and other text is a type mismatch; beside a text, the
// Variant compares as its text. Null still gives Null.
Ordering compare_to_typed(const Variant& value, const Variant& typed, CompareMode mode = CompareMode::Binary);

// a + b: Null propagates; two texts concatenate; a number and numeric text add; the result
// takes the wider subtype and integer sums that overflow widen (Byte, Integer, Long, Double).
Variant add(const Variant& a, const Variant& b);

// a & b: Null only when both are Null; otherwise both as text, Null and Empty as "".
Variant concat(const Variant& a, const Variant& b);

}  // namespace celdo::automation

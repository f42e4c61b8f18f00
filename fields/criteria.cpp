// Criteria: the operator and the conjunction a field brings to a search filter.
#include "automation/error.hpp"
#include "automation/textops.hpp"
#include "fields/clsCeldo.hpp"
#include "fields/errors.hpp"

namespace celdo::fields {

namespace {

enum class Stored { AsGiven, UpperCase, IsNull, NotIsNull };

struct OperatorWord {
    std::u16string_view word;
    Stored stored;
};

// The accepted operators, in the order they are tried; the first match decides what is stored.
constexpr OperatorWord kOperators[] = {
    {u"=", Stored::AsGiven},          {u">", Stored::AsGiven},          {u">=", Stored::AsGiven},
    {u"<", Stored::AsGiven},          {u"<=", Stored::AsGiven},         {u"<>", Stored::AsGiven},
    {u"LIKE", Stored::UpperCase},     {u"NOT LIKE", Stored::UpperCase}, {u"NOT LIKES", Stored::UpperCase},
    {u"IN", Stored::UpperCase},       {u"NOT IN", Stored::UpperCase},   {u"INLIKE", Stored::UpperCase},
    {u"IN LIKE", Stored::UpperCase},  {u"NOT INLIKE", Stored::UpperCase}, {u"BETWEEN", Stored::UpperCase},
    {u"LIKES", Stored::UpperCase},    {u"INLIKES", Stored::UpperCase},  {u"IN LIKES", Stored::UpperCase},
    {u"NOT INLIKES", Stored::UpperCase},
    {u"IS NULL", Stored::IsNull},     {u"ISNULL", Stored::IsNull},
    {u"NOT IS NULL", Stored::NotIsNull}, {u"NOT ISNULL", Stored::NotIsNull}, {u"NOTISNULL", Stored::NotIsNull},
};

}  // namespace

void clsCeldo::let_Operator(const std::u16string& value) {
    const std::u16string word = automation::upper_case(automation::trim(value));
    for (const OperatorWord& op : kOperators) {
        if (word != op.word) continue;
        switch (op.stored) {
        case Stored::AsGiven: operator_ = value; break;
        case Stored::UpperCase: operator_ = automation::upper_case(value); break;
        case Stored::IsNull: operator_ = u"IS NULL"; break;
        case Stored::NotIsNull: operator_ = u"NOT IS NULL"; break;
        }
        return;
    }
    throw automation::AutomationError(kObjectError, automation::kComponentName, u"Operator no valido para el campo " + get_Caption());
}

void clsCeldo::let_Conjunction(const std::u16string& value) {
    const std::u16string word = automation::upper_case(automation::trim(value));
    if (word != u"AND" && word != u"OR" && !word.empty())
        throw automation::AutomationError(kObjectError, automation::kComponentName, u"Conjunción no valida " + get_Caption());
    conjunction_ = value;
}

}  // namespace celdo::fields

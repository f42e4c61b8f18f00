#include "automation/error.hpp"

#include "automation/text.hpp"

namespace celdo::automation {

std::u16string_view describe(StdError error) noexcept {
    switch (error) {
    case StdError::InvalidCall: return u"Invalid procedure call or argument";
    case StdError::Overflow: return u"Overflow";
    case StdError::OutOfMemory: return u"Out of memory";
    case StdError::SubscriptOutOfRange: return u"Subscript out of range";
    case StdError::DivisionByZero: return u"Division by zero";
    case StdError::TypeMismatch: return u"Type mismatch";
    case StdError::ObjectVariableNotSet: return u"Object variable or With block variable not set";
    case StdError::InvalidUseOfNull: return u"Invalid use of Null";
    case StdError::ObjectRequired: return u"Object required";
    case StdError::MemberNotFound: return u"Object doesn't support this property or method";
    case StdError::ArgumentNotOptional: return u"Argument not optional";
    case StdError::NotACollection: return u"Object not a collection";
    case StdError::WrongArgumentCount:
        return u"Wrong number of arguments or invalid property assignment";
    case StdError::DuplicateKey:
        return u"This key is already associated with an element of this collection";
    }
    return u"Application-defined or object-defined error";
}

AutomationError::AutomationError(int32_t number, std::u16string source, std::u16string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {
    what_ = "error " + std::to_string(number_) + " (" + utf16_to_utf8(source_) +
            "): " + utf16_to_utf8(description_);
}

AutomationError::AutomationError(StdError error, std::u16string source)
    : AutomationError(static_cast<int32_t>(error), std::move(source),
                      std::u16string(describe(error))) {}

}  // namespace celdo::automation

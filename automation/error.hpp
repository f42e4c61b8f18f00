#pragma once
// Automation errors: what a host sees in Err.Number, Err.Source and Err.Description.

#include <cstdint>
#include <exception>
#include <string>

namespace celdo::automation {

// The runtime errors of the automation language that this library raises or passes through.
enum class StdError : int32_t {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    ObjectVariableNotSet = 91,
    InvalidUseOfNull = 94,
    ObjectRequired = 424,
    MemberNotFound = 438,
    ArgumentNotOptional = 449,
    WrongArgumentCount = 450,
    NotACollection = 451,
    DuplicateKey = 457,
};

// The source that standard errors carry when this library raises them.
inline constexpr char16_t kComponentName[] = u"Celdo";

class AutomationError : public std::exception {
public:
    AutomationError(int32_t number, std::u16string source, std::u16string description);
    // A standard runtime error with its usual English description.
    explicit AutomationError(StdError error, std::u16string source = kComponentName);

    int32_t number() const noexcept { return number_; }
    const std::u16string& source() const noexcept { return source_; }
    const std::u16string& description() const noexcept { return description_; }
    bool is(StdError error) const noexcept { return number_ == static_cast<int32_t>(error); }

    // UTF-8 rendering of number, source and description, for logs and test failures.
    const char* what() const noexcept override { return what_.c_str(); }

private:
    int32_t number_;
    std::u16string source_;
    std::u16string description_;
    std::string what_;
};

// The description the language gives a standard error ("Type mismatch", ...).
std::u16string_view describe(StdError error) noexcept;

// Raised by the late-bound call machinery itself before a member runs (no such accessor,
// missing or extra arguments), as opposed to errors that members raise while they run.
class BindError : public AutomationError {
public:
    using AutomationError::AutomationError;
    explicit BindError(const AutomationError& cause) : AutomationError(cause) {}
};

// An argument that could not be brought to its declared type: `index` counts from 0 in
// declaration order, so that callers can report which argument was refused.
class ArgumentError : public BindError {
public:
    ArgumentError(const AutomationError& cause, int index) : BindError(cause), index_(index) {}
    int index() const noexcept { return index_; }

private:
    int index_;
};

// The language's On Error Resume Next around one step, for the places whose behaviour is to
// go on after an error: runs `step`, and an automation error it raises ends the step without
// reaching the caller. Only automation errors are absorbed; out of memory still reaches the
// host. Returns whether the step ran to its end.
template <class F>
bool resume_next(F&& step) {
    try {
        step();
        return true;
    } catch (const AutomationError&) {
        return false;
    }
}

// The same for a step that answers: its answer, or `fallback` when it raises an automation
// error.
template <class T, class F>
T resume_with(T fallback, F&& step) {
    try {
        return step();
    } catch (const AutomationError&) {
        return fallback;
    }
}

}  // namespace celdo::automation

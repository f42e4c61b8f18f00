#pragma once
// Counted objects and the late-bound interface: everything a host can hand the library (its
// controls, its data-access object) and everything the library hands out is an Object.

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace celdo::automation {

class Variant;
struct Argument;
class ObjectRegistry;

// Kinds of a late-bound call; the values are those of IDispatch so they cross unchanged.
enum Call : uint16_t {
    kMethod = 1,
    kGet = 2,
    kLet = 4,
    kSet = 8,
};

// Member ids with a meaning of their own.
inline constexpr int32_t kDefaultMember = 0;
inline constexpr int32_t kNewEnumMember = -4;

class Object;

// Receives the events an object raises, by name (see Object::listen).
class EventSink {
public:
    virtual void on_event(std::u16string_view name) = 0;

protected:
    ~EventSink() = default;
};

// Keeps a sink listening for as long as it lives.
class Subscription {
public:
    virtual ~Subscription() = default;
};

// Receives the objects that another object holds strong references to (see
// Object::visit_references).
class ReferenceVisitor {
public:
    virtual void visit(const Object* target) = 0;
    void visit(const Variant& value);  // the object a Variant holds, if any (arrays are not entered)

protected:
    ~ReferenceVisitor() = default;
};

// Reference counts are plain integers: objects live in one apartment and are only ever
// touched from the thread that created them. Every object is registered with its thread's
// registry (automation/lifetime.hpp), which counts them and collects the cycles that reference
// counting alone would leak. Releasing the last reference destroys the object, and whatever
// that releases in turn is destroyed in a loop rather than by recursion, so that a long chain
// of objects cannot exhaust the stack.
class Object {
public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    void add_ref() const noexcept { ++refs_; }
    void release() const noexcept {
        if (--refs_ == 0) destroy();
    }
    uint32_t ref_count() const noexcept { return refs_; }

    // What TypeName reports for the object.
    virtual std::u16string type_name() const = 0;
    // Resolves a member name once, as GetIDsOfNames does; names compare case-insensitively.
    virtual std::optional<int32_t> member_id(std::u16string_view name) = 0;
    // Calls a member. Arguments come in source order; a by-reference argument may be changed
    // and the caller copies it back. Failures throw AutomationError.
    virtual Variant invoke(int32_t member, uint16_t call, std::span<Argument> args) = 0;
    // Delivers the events the object raises to `sink` until the answer is destroyed (the sink
    // outlives it); an object that raises none answers null.
    virtual std::unique_ptr<Subscription> listen(EventSink&) { return nullptr; }

    // For the cycle collector: every strong reference this object holds to another object,
    // each exactly once. An object that reports none is never part of a collected cycle (the
    // safe default: what it holds simply stays alive while it does).
    virtual void visit_references(ReferenceVisitor&) const {}
    // Drops every reference visit_references reports. Called only on objects the collector has
    // found unreachable, just before they are released; they are never used again.
    virtual void drop_references() {}

protected:
    Object();
    virtual ~Object();

private:
    friend class ObjectRegistry;
    void destroy() const noexcept;

    mutable uint32_t refs_ = 0;
    // The registry's slot, the queue of objects being destroyed, and the collector's scratch.
    ObjectRegistry* registry_ = nullptr;
    size_t slot_ = 0;
    Object* next_ = nullptr;
    int64_t gc_refs_ = 0;
    bool reachable_ = false;
};

// An owning reference to a counted object; null stands for Nothing.
template <class T>
class Ref {
public:
    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {}
    explicit Ref(T* p) noexcept : p_(p) {
        if (p_) p_->add_ref();
    }
    Ref(const Ref& other) noexcept : Ref(other.p_) {}
    Ref(Ref&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    // Only where a U* converts to a T* by itself: never a silent downcast.
    template <class U>
        requires std::convertible_to<U*, T*>
    Ref(const Ref<U>& other) noexcept : Ref(other.get()) {}
    template <class U>
        requires std::convertible_to<U*, T*>
    Ref(Ref<U>&& other) noexcept : p_(other.detach()) {}
    ~Ref() {
        if (p_) p_->release();
    }
    Ref& operator=(Ref other) noexcept {
        std::swap(p_, other.p_);
        return *this;
    }

    T* get() const noexcept { return p_; }
    T* operator->() const noexcept { return p_; }
    T& operator*() const noexcept { return *p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }
    T* detach() noexcept { return std::exchange(p_, nullptr); }

    friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.p_ == b.p_; }

private:
    T* p_ = nullptr;
};

template <class T, class... Args>
Ref<T> make_ref(Args&&... args) {
    return Ref<T>(new T(std::forward<Args>(args)...));
}

}  // namespace celdo::automation

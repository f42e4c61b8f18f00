#pragma once
// The lifetime of the library's objects on a thread: how many are alive, and the collector of
// the reference cycles that the object model lets hosts form (a field among its own children,
// a collection inside its own field's children, a field holding itself as its value).
//
// Collection is a trial deletion over the thread's objects: the references objects hold to
// one another are discounted from their counts; an object with references left is held from
// outside (by a host, or by a local variable of running code) and is a root, as is an object
// nobody counts (one on the stack). What no root reaches is garbage: its references are
// dropped and it is released. Collections run only where no library code is running on the
// thread (see OutsideCall), so nothing unaccounted can still be using an object.

#include <cstddef>
#include <vector>

#include "automation/object.hpp"

namespace celdo::automation {

class ObjectRegistry {
public:
    // The registry of the calling thread (objects belong to the thread that made them).
    static ObjectRegistry& current() noexcept;
    // For a thread that ends: the registry outlives it, so with no object of the thread left
    // the storage of its list is given back here rather than left behind.
    static void thread_ending() noexcept;

    size_t live() const noexcept { return objects_.size(); }
    // Frees every unreachable object and returns how many were freed. A collection asked for
    // while one runs (from a destructor that calls out) does nothing.
    size_t collect() noexcept;
    // Collects once as many objects were made since the last collection as were alive after
    // it (and at least kMinimumRound), so that the work stays proportional to what is made.
    size_t collect_if_due() noexcept;

    static constexpr size_t kMinimumRound = 10000;

private:
    friend class Object;
    void add(Object* o);
    void remove(Object* o) noexcept;

    // Dense, so that a collection's passes read it in order rather than chasing pointers
    // through memory: on large heaps the passes are bound by memory latency.
    std::vector<Object*> objects_;
    size_t made_since_collection_ = 0;
    size_t live_after_collection_ = 0;
    bool collecting_ = false;
};

// Objects alive on every thread, for the module's answer to whether it can be unloaded.
size_t live_objects() noexcept;

// Marks a call from a host into the library on this thread for as long as it lasts.
class OutsideCall {
public:
    OutsideCall() noexcept { ++depth_; }
    ~OutsideCall() { --depth_; }
    OutsideCall(const OutsideCall&) = delete;
    OutsideCall& operator=(const OutsideCall&) = delete;

    // Whether this is the outermost call (no library code below it on the thread).
    static bool outermost() noexcept { return depth_ == 1; }
    // Whether no call is running on this thread.
    static bool none() noexcept { return depth_ == 0; }

private:
    static thread_local int depth_;
};

}  // namespace celdo::automation

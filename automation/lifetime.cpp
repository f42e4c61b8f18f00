#include "automation/lifetime.hpp"

#include <atomic>
#include <new>
#include <vector>

#include "automation/variant.hpp"

namespace celdo::automation {

namespace {

std::atomic<size_t> g_live{0};

}  // namespace

thread_local int OutsideCall::depth_ = 0;

size_t live_objects() noexcept { return g_live.load(std::memory_order_relaxed); }

ObjectRegistry& ObjectRegistry::current() noexcept {
    // Never destroyed: objects may outlive the thread's own teardown and still unregister.
    // Built in place rather than allocated, so that finding it never runs out of memory.
    alignas(ObjectRegistry) thread_local unsigned char storage[sizeof(ObjectRegistry)];
    thread_local ObjectRegistry* registry = new (storage) ObjectRegistry;
    return *registry;
}

void ObjectRegistry::thread_ending() noexcept {
    ObjectRegistry& registry = current();
    if (registry.objects_.empty()) std::vector<Object*>().swap(registry.objects_);
}

void ObjectRegistry::add(Object* o) {
    objects_.push_back(o);
    o->registry_ = this;
    o->slot_ = objects_.size() - 1;
    ++made_since_collection_;
    g_live.fetch_add(1, std::memory_order_relaxed);
}

void ObjectRegistry::remove(Object* o) noexcept {
    Object* last = objects_.back();
    objects_[o->slot_] = last;
    last->slot_ = o->slot_;
    objects_.pop_back();
    o->registry_ = nullptr;
    g_live.fetch_sub(1, std::memory_order_relaxed);
}

size_t ObjectRegistry::collect_if_due() noexcept {
    const size_t round = live_after_collection_ > kMinimumRound ? live_after_collection_ : kMinimumRound;
    return made_since_collection_ >= round ? collect() : 0;
}

size_t ObjectRegistry::collect() noexcept {
    if (collecting_) return 0;
    collecting_ = true;
    size_t freed = 0;
    try {
        // Discount the references held between objects of this registry.
        for (Object* o : objects_) {
            o->gc_refs_ = o->refs_;
            o->reachable_ = false;
        }
        struct Discount final : ReferenceVisitor {
            ObjectRegistry* self;
            void visit(const Object* target) override {
                if (target && target->registry_ == self) --const_cast<Object*>(target)->gc_refs_;
            }
        } discount;
        discount.self = this;
        for (Object* o : objects_) o->visit_references(discount);

        // Roots: what is held from outside, or not counted at all; then all they reach. A
        // count below zero would be a visit that overstates, and is kept as a root.
        std::vector<Object*> work;
        for (Object* o : objects_) {
            if (o->refs_ == 0 || o->gc_refs_ != 0) {
                o->reachable_ = true;
                work.push_back(o);
            }
        }
        struct Mark final : ReferenceVisitor {
            ObjectRegistry* self;
            std::vector<Object*>* work;
            void visit(const Object* target) override {
                if (!target || target->registry_ != self || target->reachable_) return;
                auto* t = const_cast<Object*>(target);
                t->reachable_ = true;
                work->push_back(t);
            }
        } mark;
        mark.self = this;
        mark.work = &work;
        while (!work.empty()) {
            Object* o = work.back();
            work.pop_back();
            o->visit_references(mark);
        }

        // Held while their references are dropped, so that none goes before the others are done.
        std::vector<Ref<Object>> garbage;
        for (Object* o : objects_) {
            if (!o->reachable_) garbage.emplace_back(o);
        }
        for (const Ref<Object>& g : garbage) g->drop_references();
        freed = garbage.size();
        garbage.clear();
    } catch (...) {
        // Out of memory while collecting: the objects stay as they were, to be tried again.
    }
    made_since_collection_ = 0;
    live_after_collection_ = objects_.size();
    collecting_ = false;
    return freed;
}

Object::Object() { ObjectRegistry::current().add(this); }

Object::~Object() {
    if (registry_) registry_->remove(this);
}

void Object::destroy() const noexcept {
    // What the destructor releases is queued here instead of being destroyed inside it.
    thread_local Object* pending = nullptr;
    thread_local bool draining = false;
    auto* self = const_cast<Object*>(this);
    if (self->registry_) self->registry_->remove(self);
    self->next_ = pending;
    pending = self;
    if (draining) return;
    draining = true;
    while (pending) {
        Object* o = pending;
        pending = o->next_;
        delete o;
    }
    draining = false;
}

void ReferenceVisitor::visit(const Variant& value) {
    if (value.is_object()) visit(value.as_object());
}

}  // namespace celdo::automation

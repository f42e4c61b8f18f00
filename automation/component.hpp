#pragma once
// The library's own classes: objects whose public members are described by a generated
// ClassInfo table, so that late-bound calls, the COM type library and the COM vtables all come
// from one declaration of each member.

#include <cstdint>
#include <span>
#include <string>

#include "automation/object.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

struct ClassInfo;

// The binding that gives a component its outside identity (its COM object on Windows, a
// recorder in tests). Events reach the host through it.
class Peer {
public:
    virtual void raise_event(int32_t event, std::span<Argument> args) = 0;

protected:
    ~Peer() = default;
};

class Component : public Object {
public:
    virtual const ClassInfo& class_info() const = 0;

    std::u16string type_name() const override;
    std::optional<int32_t> member_id(std::u16string_view name) override;
    Variant invoke(int32_t member, uint16_t call, std::span<Argument> args) override;

    Peer* peer() const noexcept { return peer_; }
    void attach_peer(Peer* peer) noexcept { peer_ = peer; }
    void detach_peer(const Peer* peer) noexcept {
        if (peer_ == peer) peer_ = nullptr;
    }

protected:
    // Raises an event of the class's event interface; nobody listening is not an error.
    void raise_event(int32_t event, std::span<Argument> args = {});

private:
    Peer* peer_ = nullptr;
};

// Specialised by the generated table of each declared class.
template <class T>
const ClassInfo& class_info_of();

template <class T>
class Declared : public Component {
public:
    const ClassInfo& class_info() const final { return class_info_of<T>(); }
};

}  // namespace celdo::automation

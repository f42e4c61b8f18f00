#pragma once
// Constants carries the published enumerations into the type library; it has no members,
// no state and no behaviour. The enumerations themselves come from Constants.api.

#include "automation/component.hpp"
#include "fields/Constants.gen.hpp"

namespace celdo::fields {

class Constants final : public automation::Declared<Constants> {};

}  // namespace celdo::fields

#pragma once
// The platform's standard picture loader (OleLoadPicturePath, as LoadPicture uses it), for the
// services' forms.

#include <string>

#include "automation/variant.hpp"

namespace celdo::com {

// The picture in a file as a picture object, or an empty picture for the empty name.
automation::Variant load_picture(const std::u16string& file);

}  // namespace celdo::com

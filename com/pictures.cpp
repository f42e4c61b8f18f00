#include "com/pictures.hpp"

#include <olectl.h>

#include "com/bridge.hpp"
#include "com/errors.hpp"

namespace celdo::com {

automation::Variant load_picture(const std::u16string& file) {
    com_ptr<IPictureDisp> picture;
    HRESULT hr;
    if (file.empty()) {
        // LoadPicture("") clears a control's picture: an empty picture, not Nothing.
        PICTDESC none{};
        none.cbSizeofstruct = sizeof none;
        none.picType = PICTYPE_NONE;
        hr = OleCreatePictureIndirect(&none, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(picture.put()));
    } else {
        // A relative name is read from the current folder, as LoadPicture reads it.
        const auto* name = reinterpret_cast<const wchar_t*>(file.c_str());
        std::wstring path(MAX_PATH, L'\0');
        DWORD length = GetFullPathNameW(name, static_cast<DWORD>(path.size()), path.data(), nullptr);
        if (length >= path.size()) {
            path.resize(length);
            length = GetFullPathNameW(name, static_cast<DWORD>(path.size()), path.data(), nullptr);
        }
        path.resize(length);
        if (path.empty()) path = name;
        hr = OleLoadPicturePath(path.data(), nullptr, 0, 0, IID_IPictureDisp, reinterpret_cast<void**>(picture.put()));
    }
    if (FAILED(hr) || !picture) throw error_from_call(FAILED(hr) ? hr : E_POINTER, nullptr, nullptr);
    return from_object(picture.get());
}

}  // namespace celdo::com

#include "services/clipboard.hpp"

#include "automation/error.hpp"

#ifdef _WIN32
#include <windows.h>

#include <cstring>
#endif

namespace celdo::services {
namespace {

#ifdef _WIN32
class WindowsClipboard final : public Clipboard {
public:
    void put_text(const std::u16string& text) override {
        // The platform owns the memory once SetClipboardData takes it; until then it is ours.
        const size_t bytes = (text.size() + 1) * sizeof(char16_t);
        HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
        if (!memory) throw std::bad_alloc();
        if (void* p = GlobalLock(memory)) {
            std::memcpy(p, text.c_str(), bytes);
            GlobalUnlock(memory);
        }
        if (!OpenClipboard(nullptr)) {
            GlobalFree(memory);
            throw unavailable();
        }
        EmptyClipboard();
        const bool taken = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
        CloseClipboard();
        if (!taken) {
            GlobalFree(memory);
            throw unavailable();
        }
    }

private:
    static automation::AutomationError unavailable() {
        return automation::AutomationError(521, automation::kComponentName, u"Can't open Clipboard");
    }
};
#else
class ProcessClipboard final : public Clipboard {
public:
    void put_text(const std::u16string& text) override { text_ = text; }

private:
    std::u16string text_;
};
#endif

}  // namespace

Clipboard& system_clipboard() {
#ifdef _WIN32
    static WindowsClipboard clipboard;
#else
    static ProcessClipboard clipboard;
#endif
    return clipboard;
}

}  // namespace celdo::services

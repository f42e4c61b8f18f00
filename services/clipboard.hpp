#pragma once
// The system clipboard, as far as the services use it: replaced wholesale by one plain text.

#include <string>

namespace celdo::services {

class Clipboard {
public:
    // Empties the clipboard and leaves `text` on it as Unicode text. Failures are automation
    // errors (the clipboard may be held by another program).
    virtual void put_text(const std::u16string& text) = 0;

protected:
    ~Clipboard() = default;
};

// The platform's clipboard on Windows; elsewhere a clipboard private to the process.
Clipboard& system_clipboard();

}  // namespace celdo::services

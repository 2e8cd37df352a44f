#pragma once

#include <memory>

#include "framework/core/text/GString.h"

/// PWin32KernelObject: what named mutexes and file mappings have in common.
class PWin32KernelObject {
public:
    static constexpr long cMaxNameSize = 260;

    /// A SECURITY_ATTRIBUTES that grants everybody full access (a null DACL) and is not inherited. That
    /// is what lets a service and a user's process share an object.
    class OpenToEverybody {
    public:
        /// Throws GExceptionID::cGeneral when the system refuses.
        OpenToEverybody();
        ~OpenToEverybody();
        void* GetAttributes() noexcept;

    private:
        struct Content;
        std::unique_ptr<Content> mContent;
    };

    /// The system's text for an error number, in the user's language; the number in decimal when there
    /// is none.
    static GString GetError(unsigned long code);
    /// Throws GExceptionID::cGeneral with the text of the calling thread's last error.
    [[noreturn]] static void ThrowLastError();
    [[noreturn]] static void ThrowError(unsigned long code);
};

#pragma once

#include "framework/core/GExport.h"

/// GCallbackAssert: what a program may install to be told of assertions. The framework itself never
/// calls it. Set up at start-up, on one thread.
class QUILLON_EXPORT GCallbackAssert {
public:
    GCallbackAssert() = default;
    GCallbackAssert(const GCallbackAssert&) = delete;
    GCallbackAssert& operator=(const GCallbackAssert&) = delete;
    virtual ~GCallbackAssert();

    /// Null when none is installed.
    static GCallbackAssert* GetInstance() noexcept;
    /// Takes ownership and deletes the one before; null: none.
    static void SetInstance(GCallbackAssert* callback);
    /// Takes ownership. Installs the callback when nobody has ever installed one, even a null;
    /// otherwise deletes it.
    static void SetDefaultInstance(GCallbackAssert* callback);
};

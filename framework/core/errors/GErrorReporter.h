#pragma once

#include "framework/core/GExport.h"

class GString;

/// GErrorReporter: where the text of a handled failure goes.
///
/// The base class keeps silent. A program that wants to see errors installs a reporter of its own
/// at start-up; the instance is not locked. Report() may be called from every thread that handles
/// failures, and must not replace the reporter that it belongs to.
class QUILLON_EXPORT GErrorReporter {
public:
    GErrorReporter() = default;
    GErrorReporter(const GErrorReporter&) = delete;
    GErrorReporter& operator=(const GErrorReporter&) = delete;
    virtual ~GErrorReporter();

    /// Does nothing in the base class.
    virtual void Report(const GString& text) const;

    /// The installed reporter; a silent one is made when there is none. Never null.
    static GErrorReporter* GetInstance();
    /// Takes ownership of the new reporter and deletes the one before. Null, and the framework's end: back to
    /// silence.
    static void SetInstance(GErrorReporter* reporter);
};

#pragma once

/// HandOffScope: while it exists, the framework runs and messages from the port monitor can be
/// received. Made first and destroyed last, on the thread that owns everything in between.
class HandOffScope {
public:
    /// Throws a GException when the messaging cannot be started.
    HandOffScope();
    HandOffScope(const HandOffScope&) = delete;
    HandOffScope& operator=(const HandOffScope&) = delete;
    ~HandOffScope();
};

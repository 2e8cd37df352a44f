#pragma once

#include <utility>

/// GAtScopeEnd: runs an action at the end of its scope, also when an exception passes.
///
///     const GAtScopeEnd cleanup([this]() noexcept { CleanUp(); });
///
/// The action throws nothing.
template <class Action>
class GAtScopeEnd {
public:
    /// Takes the action over; it runs once.
    explicit GAtScopeEnd(Action action) : mAction(std::move(action)) {}
    GAtScopeEnd(const GAtScopeEnd&) = delete;
    GAtScopeEnd& operator=(const GAtScopeEnd&) = delete;
    ~GAtScopeEnd() { mAction(); }

private:
    Action mAction;
};

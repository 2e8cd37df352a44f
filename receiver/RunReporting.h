#pragma once

#include <exception>
#include <functional>
#include <string>

#include "framework/core/errors/GException.h"
#include "platform/win32/core/PWin32Wide.h"

/// Calls `body`, and `report` with a line about what it throws: a receiver goes on whatever happens. What
/// `report` throws passes.
template <class Body>
void RunReporting(const std::function<void(const std::wstring&)>& report, Body&& body) {
    try {
        body();
    } catch (const GException& failure) {
        report(AsWide(failure.GetFullDescription()));
    } catch (const std::exception&) {
        report(L"Memory ran out.");
    }
}

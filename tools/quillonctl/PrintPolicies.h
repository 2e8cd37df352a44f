#pragma once

#include <vector>

/// A setting of the machine or of its domain that keeps jobs from the port.
struct PrintPolicy {
    const char* key;        // below HKEY_LOCAL_MACHINE
    const char* value;      // in force when it is the number 1
    const wchar_t* effect;  // a sentence
    const wchar_t* remedy;
};

/// PrintPolicies: the settings of Windows that shut out port monitors or the drivers that feed them.
struct PrintPolicies {
    /// Throws a Failure when the registry refuses.
    static std::vector<PrintPolicy> GetInForce();
};

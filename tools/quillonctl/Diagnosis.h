#pragma once

#include <string>
#include <vector>

#include "tools/quillonctl/DoctorFacts.h"

/// What one check has found.
struct Finding {
    enum class State {
        cGood,
        cNote,   // all is well as far as is known; something was not tried
        cFault,  // or what could not be found out
    };

    const wchar_t* check = L"";
    State state = State::cGood;
    std::wstring text;
    std::wstring remedy;  // of what is not good
};

/// Diagnosis: what keeps jobs from arriving, and what to do about it. Decisions over facts alone; nothing
/// here asks the system.
class Diagnosis {
public:
    explicit Diagnosis(const DoctorFacts& facts);

    const std::vector<Finding>& GetFindings() const { return mFindings; }
    /// Whether there is no fault.
    bool IsWell() const;
    /// A finding a row, its remedy below it, and a last line with the count. Ends in a line end.
    std::wstring Format() const;
    /// One JSON object, ending in a line end.
    std::wstring FormatAsJson() const;

private:
    std::vector<Finding> mFindings;
};

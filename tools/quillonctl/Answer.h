#pragma once

#include <string>

#include "framework/core/errors/GException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"

/// An answer, or the reason why there is none.
template <class T>
struct Answer {
    T value{};
    std::wstring problem;  // empty when the value holds

    bool IsKnown() const { return problem.empty(); }
};

/// What the question gives, or what it throws as the reason.
template <class Question>
auto Ask(Question question) {
    Answer<decltype(question())> answer;
    try {
        answer.value = question();
    } catch (const Failure& failure) {
        answer.problem = failure.GetText();
    } catch (const GException& failure) {
        answer.problem = AsWide(failure.GetFullDescription());
    }
    return answer;
}

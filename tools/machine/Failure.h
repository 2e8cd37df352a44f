#pragma once

#include <exception>
#include <string>

/// Failure: ends a command with a message for the administrator, exit code 1.
class Failure : public std::exception {
public:
    explicit Failure(std::wstring text) : mText(std::move(text)) {}
    /// One or more lines without a line end behind the last.
    const std::wstring& GetText() const noexcept { return mText; }
    const char* what() const noexcept override { return "a failure"; }

private:
    std::wstring mText;
};

/// UsageFailure: the command line is wrong, exit code 2.
class UsageFailure : public Failure {
public:
    using Failure::Failure;
};

/// What the system calls the Win32 error `code`, with the number, and with advice where an
/// administrator can do something about it.
std::wstring DescribeSystemError(unsigned long code);

/// A Failure which says that `action` failed and why. The one-argument form takes the calling
/// thread's last error.
Failure SystemFailure(const std::wstring& action, unsigned long code);
Failure SystemFailure(const std::wstring& action);

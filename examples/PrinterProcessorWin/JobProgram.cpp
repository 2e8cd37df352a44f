#include "examples/PrinterProcessorWin/JobProgram.h"

#include <optional>
#include <utility>
#include <vector>

#include "examples/PrinterProcessorWin/JobVariables.h"
#include "examples/PrinterProcessorWin/ProgramCommand.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"

namespace {

std::optional<std::wstring> GetVariable(const std::wstring& name) {
    std::wstring value(32767, L'\0');
    ::SetLastError(ERROR_SUCCESS);
    value.resize(::GetEnvironmentVariableW(name.c_str(), value.data(), static_cast<DWORD>(value.size())));
    if (value.empty() && ::GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
    return value;
}

/// This process's environment, which a program inherits, with more variables as long as the object lives.
class WiderEnvironment {
public:
    explicit WiderEnvironment(const std::vector<std::pair<std::wstring, std::wstring>>& variables) {
        for (const auto& [name, value] : variables) {
            mBefore.emplace_back(name, GetVariable(name));
            if (!::SetEnvironmentVariableW(name.c_str(), value.c_str())) mIsWhole = false;
        }
    }
    WiderEnvironment(const WiderEnvironment&) = delete;
    WiderEnvironment& operator=(const WiderEnvironment&) = delete;
    ~WiderEnvironment() {
        for (const auto& [name, value] : mBefore)
            ::SetEnvironmentVariableW(name.c_str(), value ? value->c_str() : nullptr);
    }
    bool IsWhole() const { return mIsWhole; }

private:
    std::vector<std::pair<std::wstring, std::optional<std::wstring>>> mBefore;
    bool mIsWhole = true;
};

bool Start(GExternalProcess& process, const ProgramCommand& command, const JobVariables& variables) {
    const std::wstring& program = command.GetProgram();
    const GPathName path =
        GPathName::FromNative(NameFromWide(program.data(), static_cast<long>(program.size())));
    const GTable<GString> arguments = command.MakeArguments(variables);
    const WiderEnvironment environment(variables.GetEnvironment());
    // The program inherits this, and does not wait for somebody to read a message when it crashes.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    constexpr bool cShowWindow = false, cArePrepared = true;
    // Without an ID there is nothing that could be watched.
    return environment.IsWhole() && process.Run(path, arguments, cShowWindow, cArePrepared) &&
           process.GetProcessID() != 0;
}

}  // namespace

// Exceptions have the severity of an error or a warning, or are those of C++ itself; -1 is a usual exit code.
ProgramResult::Outcome ProgramResult::Judge(unsigned long exitCode) {
    const unsigned long severity = exitCode >> 28;
    if (exitCode == 0) return cSucceeded;
    return severity == 0x8 || severity == 0xC || severity == 0xE ? cCrashed : cFailed;
}

JobProgram::JobProgram(const ProgramCommand& command, Job job)
    : mJob(std::move(job)), mStart(::GetTickCount64()) {
    ::SetLastError(ERROR_SUCCESS);
    if (Start(mProcess, command, JobVariables(mJob))) {
        // The process object holds the ID.
        mEnd.Reset(::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(mProcess.GetProcessID())));
        return;
    }
    const DWORD error = ::GetLastError();
    mResult.outcome = ProgramResult::cNotStarted;
    mResult.problem = error == ERROR_SUCCESS ? L"it cannot be run" : DescribeSystemError(error);
}

bool JobProgram::HasEnded() {
    if (mResult.outcome != ProgramResult::cStillRunning) return true;
    if (!mProcess.WaitForEnd(0)) return false;
    mResult.exitCode = static_cast<unsigned long>(mProcess.GetReturnValue());
    mResult.outcome = ProgramResult::Judge(mResult.exitCode);
    mResult.milliseconds = ::GetTickCount64() - mStart;
    return true;
}

ProgramResult JobProgram::GetResult() const {
    ProgramResult result = mResult;
    if (result.outcome == ProgramResult::cStillRunning) result.milliseconds = ::GetTickCount64() - mStart;
    return result;
}

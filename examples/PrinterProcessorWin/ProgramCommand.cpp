#include "examples/PrinterProcessorWin/ProgramCommand.h"

#include <algorithm>
#include <utility>

#include "examples/PrinterProcessorWin/JobVariables.h"
#include "framework/system/GExternalProcess.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"

#include <shellapi.h>

namespace {

std::vector<std::wstring> TakeApart(const std::wstring& text) {
    const std::size_t start = text.find_first_not_of(L" \t");
    if (start == text.npos) throw UsageFailure(L"--run needs a program.");
    int count = 0;
    wchar_t** const parts = ::CommandLineToArgvW(text.c_str() + start, &count);
    const PWin32ScopedHandle<PWin32LocalBlock> block(parts);
    if (parts == nullptr) throw SystemFailure(L"The command of --run cannot be read.");
    return std::vector<std::wstring>(parts, parts + count);
}

std::wstring GetSystemFolder() {
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(::GetSystemDirectoryW(folder.data(), MAX_PATH));
    return folder;
}

std::wstring GetSearchPath() {
    std::wstring path(32768, L'\0');
    path.resize(::GetEnvironmentVariableW(L"PATH", path.data(), static_cast<DWORD>(path.size())));
    return GetSystemFolder() + L';' + path;
}

bool HasEnding(const std::wstring& path, std::initializer_list<const wchar_t*> endings) {
    const std::size_t dot = std::min(path.find_last_of(L'.'), path.size());
    return std::ranges::any_of(endings, [&](const wchar_t* ending) {
        return ::CompareStringOrdinal(path.c_str() + dot, -1, ending, -1, TRUE) == CSTR_EQUAL;
    });
}

// In the system's folder and along PATH. Left to itself the system would begin in the current folder.
std::wstring Search(const std::wstring& name) {
    const std::wstring places = GetSearchPath();
    std::wstring found(32768, L'\0');
    const DWORD units = ::SearchPathW(places.c_str(), name.c_str(), L".exe", static_cast<DWORD>(found.size()),
                                      found.data(), nullptr);
    found.resize(units < found.size() ? units : 0);
    return found;
}

std::wstring MakeFullPath(const std::wstring& path) {
    std::wstring full(32768, L'\0');
    const DWORD units =
        ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    full.resize(units < full.size() ? units : 0);
    if (full.find(L'.', full.find_last_of(L'\\') + 1) == full.npos) full += L".exe";
    return full;
}

std::wstring FindProgram(const std::wstring& name) {
    const bool hasFolder = name.find_first_of(L"\\/:") != name.npos;
    const std::wstring path = hasFolder ? MakeFullPath(name) : Search(name);
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        throw UsageFailure(L"--run: there is no program " + name + L'.');
    return path;
}

// No quoting keeps the command interpreter from taking '%' and '"' in an argument for its own.
void CheckKind(const std::wstring& program) {
    if (HasEnding(program, {L".bat", L".cmd"})) {
        throw UsageFailure(
            L"--run starts no batch file, as no title could safely be given to it. Write cmd /c "
            L"in front, and let the batch file read QUILLON_JOB_PATH.");
    }
    if (!HasEnding(program, {L".exe", L".com"}))
        throw UsageFailure(L"--run: " + program + L" is no program (.exe).");
}

std::wstring ExpandProgram(const std::wstring& text) {
    const GVariableMgr folders(false, GVariableMgr::cPaths);
    GString expanded;
    if (!folders.ExpandVars(NameFromWide(text.data(), static_cast<long>(text.size())), expanded)) {
        throw UsageFailure(L"--run: the program " + text + L" may hold no other variables than folders.");
    }
    return AsWide(expanded);
}

void CheckArgument(const GString& argument) {
    const Job none;
    const JobVariables variables(none);
    GTable<GString> names;
    GString value;
    variables.ExtractVars(argument, names);
    for (const GString& name : names) {
        if (!variables.GetVar(name, value))
            throw UsageFailure(L"--run knows no variable " + std::wstring(AsWide(name)) + L'.');
    }
    if (variables.ExpandVars(argument, value)) return;
    throw UsageFailure(L"--run: a percent sign has no partner in " + std::wstring(AsWide(argument)) +
                       L"\nWrite %% for one, and an argument with blanks in quotes.");
}

// What the user wrote stays bare if it may: some programs know "/c" only without quotes.
bool MayStayBare(const GString& argument) {
    constexpr std::wstring_view cPlain =
        L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-+_.,:/\\=@#";
    const std::wstring_view text = AsWide(argument);
    return !text.empty() && text.find_first_not_of(cPlain) == text.npos;
}

}  // namespace

ProgramCommand::ProgramCommand(const std::wstring& text) {
    std::vector<std::wstring> parts = TakeApart(text);
    const std::wstring name = ExpandProgram(parts[0]);
    if (HasEnding(name, {L".bat", L".cmd"})) CheckKind(name);
    mProgram = FindProgram(name);
    CheckKind(mProgram);
    for (std::size_t i = 1; i < parts.size(); ++i) {
        mArguments.push_back(NameFromWide(parts[i].data(), static_cast<long>(parts[i].size())));
        CheckArgument(mArguments.back());
    }
}

GTable<GString> ProgramCommand::MakeArguments(const JobVariables& variables) const {
    GTable<GString> arguments;
    for (const GString& argument : mArguments) {
        GString expanded;
        variables.ExpandVars(argument, expanded);
        arguments.Append(MayStayBare(argument) ? argument : GExternalProcess::PrepareArgument(expanded));
    }
    return arguments;
}

std::wstring ProgramCommand::GetWarning() const {
    const std::wstring interpreter = GetSystemFolder() + L"\\cmd.exe";
    const bool hasVariables =
        std::ranges::any_of(mArguments, [](const GString& a) { return a.FindFirst('%') >= 0; });
    if (!hasVariables ||
        ::CompareStringOrdinal(mProgram.c_str(), -1, interpreter.c_str(), -1, TRUE) != CSTR_EQUAL)
        return {};
    return L"cmd replaces what it takes for variables in a title. Let the batch file read QUILLON_JOB_PATH "
           L"instead.";
}

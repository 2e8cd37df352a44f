#include "framework/system/GExternalProcess.h"

#include "framework/core/errors/GException.h"
#include "framework/core/text/GStringSupport.h"
#include "framework/system/GExternalProcessImp.h"
#include "framework/system/GProcessInfo.h"

namespace {

constexpr unsigned short cBackslash = '\\';
constexpr unsigned short cQuote = '"';

GString Quoted(GString text) {
    GStringSupport::QuoteString(text);
    return text;
}

void AppendBackslashes(GString& text, long count) {
    for (long i = 0; i < count; ++i) text += cBackslash;
}

}  // namespace

GExternalProcessImp::~GExternalProcessImp() = default;

GExternalProcess::GExternalProcess() : GExternalProcess(0) {}

GExternalProcess::GExternalProcess(long processID) : mImp(GExternalProcessImp::Create(processID)) {}

GExternalProcess::~GExternalProcess() = default;

bool GExternalProcess::Run(const GPathName& program, const GTable<GString>& arguments, bool showWindow,
                           bool argumentsPrepared, const GPathName& workingFolder) {
    return mImp->Run(program, arguments, showWindow, argumentsPrepared, workingFolder);
}

bool GExternalProcess::IsRunning() {
    return mImp->IsRunning();
}

bool GExternalProcess::WaitForEnd(long milliseconds) {
    return mImp->WaitForEnd(milliseconds);
}

long GExternalProcess::GetReturnValue() const {
    return mImp->GetReturnValue();
}

long GExternalProcess::GetProcessID() const {
    return mImp->GetProcessID();
}

GTable<std::int32_t> GExternalProcess::GetChildProcessIDs() const {
    try {
        return GProcessInfo::GetInstance()->GetChildProcessIDs(GetProcessID());
    } catch (const GException&) {
        return {};
    }
}

bool GExternalProcess::SetPriority(long priority) {
    return mImp->SetPriority(priority);
}

bool GExternalProcess::TerminateProcess() {
    return mImp->TerminateProcess();
}

void GExternalProcess::DetachProcess() {
    mImp->DetachProcess();
}

GString GExternalProcess::PrepareArgument(const GString& argument) {
    // Quoted in any case: some run-time libraries expand '*' and '?' where they stand without quotes.
    GString prepared("\"");
    long backslashes = 0;
    for (long i = 0; i < argument.GetLength(); ++i) {
        const unsigned short unit = argument[i];
        // In front of a quotation mark, each backslash and the mark itself needs one more.
        if (unit == cQuote) AppendBackslashes(prepared, backslashes + 1);
        backslashes = unit == cBackslash ? backslashes + 1 : 0;
        prepared += unit;
    }
    AppendBackslashes(prepared, backslashes);
    prepared += cQuote;
    return prepared;
}

GString GExternalProcess::MakeCommandLine(const GString& nativeProgram, const GTable<GString>& arguments,
                                          bool argumentsPrepared) {
    const GString blank(" ");
    GString line = Quoted(nativeProgram) + blank;
    for (const GString& argument : arguments) {
        line += argumentsPrepared ? argument : Quoted(argument);
        line += blank;
    }
    return line;
}

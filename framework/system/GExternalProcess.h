#pragma once

#include <cstdint>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"

class GExternalProcessImp;

/// GExternalProcess: another program that this one starts, or a running process, by its ID.
///
/// Programs run in the session and with the rights of the caller, inherit its environment and none of
/// its handles. Nothing here throws: what the system refuses is false, or "not running". The process
/// goes on when the object ends. One thread at a time. There is no implementation in the native build.
///
/// Arguments. A program is given one line of text and takes it apart by itself. Run() quotes with
/// GStringSupport::QuoteString, which escapes every backslash, while Windows programs read a backslash as
/// one unless a quotation mark follows: `C:\a b` reaches them as `C:\\a b`, and a tab as `\t`. For arguments
/// that must arrive unchanged, pass what PrepareArgument() makes of them and say that they are prepared. No
/// quoting reaches a batch file unchanged: the command interpreter expands percent signs even inside quotes,
/// and takes a quotation mark in an argument for the end of a quoted part. Give batch files nothing that
/// others have chosen.
class QUILLON_EXPORT GExternalProcess {
public:
    /// Any number may be given; those without a name here are cNormal.
    enum Priority {
        cRealTime = -20,
        cHigh = -19,
        cAboveNormal = -10,
        cNormal = 0,
        cBelowNormal = 10,
        cIdle = 20,
    };

    GExternalProcess();
    /// Attached to a running process, which is looked for when it is first asked about.
    explicit GExternalProcess(long processID);
    GExternalProcess(const GExternalProcess&) = delete;
    GExternalProcess& operator=(const GExternalProcess&) = delete;
    ~GExternalProcess();

    /// Starts a program, in a console of its own if it needs one, and lets go of what was held before.
    /// An empty `workingFolder` is the caller's current one. A program with the extension "bat",
    /// in any letter case, is run by the system's command interpreter. False as well for a text with
    /// a zero in it, which would end the line there.
    bool Run(const GPathName& program, const GTable<GString>& arguments, bool showWindow = false,
             bool argumentsPrepared = false, const GPathName& workingFolder = GPathName::cEmptyPathName);
    /// False also for a process that cannot be opened. A program that has ended with the code 259
    /// counts as running, as that is what the system says of one that runs; WaitForEnd() is not fooled.
    bool IsRunning();
    /// True when the process has ended by then; 0 only asks. False for one that cannot be opened.
    bool WaitForEnd(long milliseconds);
    /// The exit code, once IsRunning() was false or WaitForEnd() true; 0 before. One that
    /// TerminateProcess() has ended has 0, too.
    long GetReturnValue() const;
    /// 0: none.
    long GetProcessID() const;
    /// Of the processes that it has started and that run now, as GProcessInfo; none when the system does not
    /// tell.
    GTable<std::int32_t> GetChildProcessIDs() const;
    /// A Priority or another number; false when the system refuses.
    bool SetPriority(long priority);
    /// Ends the process on the spot.
    bool TerminateProcess();
    /// Lets go of the process, which keeps running. The ID stays.
    void DetachProcess();

    /// The argument in quotes, as Windows programs take it apart (CommandLineToArgvW and the C
    /// run-time library alike).
    static GString PrepareArgument(const GString& argument);
    /// The line that Run() hands over: the program quoted and a blank, then each argument, quoted
    /// unless it is prepared, and a blank.
    static GString MakeCommandLine(const GString& nativeProgram, const GTable<GString>& arguments,
                                   bool argumentsPrepared);

private:
    std::unique_ptr<GExternalProcessImp> mImp;
};

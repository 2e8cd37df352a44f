// The main program of the tests that load the DLL. Started with an argument of its own it does what a host
// of the monitor does, for the tests to watch from outside.

#include "tests/monitor/dll/MonitorLibrary.h"
#include "tests/monitor/dll/TraceCapture.h"

namespace {

/// Ends in the middle of a job, with the library loaded and another thread inside a callback.
int EndWithTheLibraryLoaded() {
    TraceCapture::EchoToOutput();
    auto* library = new MonitorLibrary;
    library->Open();
    library->Start(L"unfinished.txt");
    std::thread([library] {
        for (;;) library->Write("more");
    }).detach();
    ::Sleep(50);
    ::ExitProcess(23);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string(argv[1]) == "--end-with-library") return EndWithTheLibraryLoaded();
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "platform/win32/ipc/PWin32SharedMemory.h"

#include "platform/win32/ipc/PWin32IPEventImp.h"
#include "platform/win32/ipc/PWin32IPMutexImp.h"
#include "platform/win32/ipc/PWin32KernelObject.h"
#include "tests/WindowsTesting.h"
#include "tests/ipc/IPCTestSupport.h"

#include <aclapi.h>

namespace {

using Handle = PWin32ScopedHandle<PWin32KernelHandle>;

/// True for an object whose list of rights is there, but null: everybody may do anything.
bool IsOpenToEverybody(HANDLE object) {
    PACL list = reinterpret_cast<PACL>(1);
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ::GetSecurityInfo(object, SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                      &descriptor);
    const PWin32ScopedHandle<PWin32LocalBlock> owned(descriptor);
    BOOL isPresent = FALSE, isDefaulted = FALSE;
    return descriptor != nullptr &&
           ::GetSecurityDescriptorDacl(descriptor, &isPresent, &list, &isDefaulted) && isPresent &&
           list == nullptr;
}

/// A mapping somebody else has made in its own way, under the name "Global\QulShDTestOdd".
Handle MakeMapping(HANDLE file, DWORD protection, DWORD size) {
    return Handle(::CreateFileMappingA(file, nullptr, protection, 0, size, "Global\\QulShDTestOdd"));
}

long OpenAndGetLength() {
    return ThrownBy([] { PWin32SharedMemory("Global\\", "QulShDTestOdd").GetLength(); });
}
long OpenOrCreate(long size) {
    bool created = false;
    return ThrownBy([&] { PWin32SharedMemory("Global\\", "QulShDTestOdd", size, created); });
}

TEST(PWin32SharedMemory, IsOpenToEverybody) {
    bool created = false;
    const PWin32SharedMemory memory("Global\\", "QulShDTestOpen", 100, created);
    const PWin32IPMutexImp mutex("QulShLTestOpen");
    const Handle mapping(::OpenFileMappingA(READ_CONTROL, FALSE, "Global\\QulShDTestOpen"));
    const Handle lock(::OpenMutexA(READ_CONTROL, FALSE, "Global\\QulShLTestOpen"));
    EXPECT_TRUE(IsOpenToEverybody(mapping.Get()));
    EXPECT_TRUE(IsOpenToEverybody(lock.Get()));
}

TEST(PWin32SharedMemory, TouchesNoPagesThatAreOnlyReserved) {
    const Handle mapping = MakeMapping(INVALID_HANDLE_VALUE, PAGE_READWRITE | SEC_RESERVE, 65536);
    EXPECT_EQ(OpenAndGetLength(), 40163);
    EXPECT_EQ(OpenOrCreate(100), 40168);
    const auto view = RawSegment::Open("Global\\", "QulShDTestOdd");
    ASSERT_NE(::VirtualAlloc(view->GetBytes(), 4096, MEM_COMMIT, PAGE_READWRITE), nullptr);
    for (const auto& [claimed, thrown] : {std::pair(4096u, 0), {4097u, 40163}, {65536u, 40163}}) {
        view->SetWord(0, claimed);
        EXPECT_EQ(OpenAndGetLength(), thrown) << claimed;
    }
    EXPECT_EQ(OpenOrCreate(65532), 40168);
}

TEST(PWin32SharedMemory, TouchesNoFileThatSomebodyHasMappedHoweverLongItsName) {
    const TestFolder folder;
    std::filesystem::create_directory(folder.Standard(std::string(200, 'q')));
    for (const unsigned length : {1u, 100u, 200u}) {
        SCOPED_TRACE(length);
        const std::string name = std::string(200, 'q') + '/' + std::string(length, 'm');
        const std::wstring path = L"\\\\?\\" + folder.Standard(name).make_preferred().wstring();
        const PWin32ScopedHandle<PWin32FileHandle> file(
            ::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                          FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        const Handle mapping = MakeMapping(file.Get(), PAGE_READWRITE, 104);
        RawSegment::Open("Global\\", "QulShDTestOdd")->SetWord(0, 104);
        EXPECT_EQ(OpenAndGetLength(), 40163);
        EXPECT_EQ(OpenOrCreate(100), 40168);
    }
}

TEST(PWin32SharedMemory, WhatTheSystemRefusesIsTheGeneralException) {
    const Handle event(::CreateEventA(nullptr, FALSE, FALSE, "Global\\QulShDTestOdd"));
    EXPECT_EQ(OpenOrCreate(100), 2450);
    EXPECT_EQ(ThrownBy([] { PWin32IPMutexImp("QulShDTestOdd"); }), 2450);
    const std::string tooLong(300, 'x');
    EXPECT_EQ(ThrownBy([&] { PWin32IPMutexImp(BufferOf(tooLong)); }), 2450);
    EXPECT_EQ(ThrownBy([&] { PWin32SharedMemory("Global\\", BufferOf(tooLong)); }), 2450);
    EXPECT_EQ(PWin32SharedMemory::GetMaxIDSize(), 260);
}

TEST(PWin32SharedMemory, CarriesTheSystemsText) {
    char text[256] = "";
    ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_FILE_NOT_FOUND, 0x400, text, sizeof text,
                     nullptr);
    EXPECT_EQ(PWin32KernelObject::GetError(3999999999u), GString("3999999999"));
    EXPECT_EQ(FailureOf([] { PWin32SharedMemory("Global\\", "QulShDTestNone"); }), text);
}

TEST(PWin32IPEventImp, WakesOneWaitAndIsDoneWithoutWhereTheSystemRefusesIt) {
    using Event = PWin32IPEventImp;
    EXPECT_FALSE(Event("QulShETest", Event::Use::cOpen).IsThere());
    Event event("QulShETest", Event::Use::cOpenOrCreate);
    Event same("QulShETest", Event::Use::cOpen);
    const Handle handle(::OpenEventA(READ_CONTROL, FALSE, "Global\\QulShETest"));
    EXPECT_TRUE(IsOpenToEverybody(handle.Get()));
    EXPECT_FALSE(Event::WaitForEither(&event, nullptr, 0));
    same.Set();
    EXPECT_TRUE(Event::WaitForEither(nullptr, &event, 1000000));
    EXPECT_FALSE(Event::WaitForEither(&event, &event, 0));
    const PWin32IPMutexImp otherKind("QulShETestOdd");
    for (const Event::Use use : {Event::Use::cOpen, Event::Use::cOpenOrCreate}) {
        Event none("QulShETestOdd", use);
        EXPECT_FALSE(none.IsThere());
        none.Set();
        EXPECT_FALSE(Event::WaitForEither(&none, nullptr, 1));
    }
}

}  // namespace

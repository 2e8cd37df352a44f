#include "framework/core/GException.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "framework/core/GExceptionHandler.h"
#include "framework/core/GExceptionLocation.h"
#include "framework/core/GPathName.h"
#include "framework/core/GStringPool.h"
#include "tests/core/TestText.h"

namespace {

class GExceptionTest : public ::testing::Test {
protected:
    GExceptionTest() { GException::Initialize(); }
};

using GExceptionLocationTest = GExceptionTest;
using GExceptionHandlerTest = GExceptionTest;

std::u16string Full(const GException& exception) {
    return Plain(exception.GetFullDescription());
}

GPathName Path(std::u16string_view portable) {
    return GPathName(Text(portable));
}

/// A location whose description cannot be had for want of memory.
class HungryLocation : public GExceptionLocation {
protected:
    GLngString Describe() const override {
        sHandlerThen = std::get_new_handler();
        sHandlerThen();
        return GLngString(Text(u"not reached"));
    }

public:
    static std::new_handler sHandlerThen;
};

std::new_handler HungryLocation::sHandlerThen = nullptr;

void ProgramsOwnHandler() {
    FAIL() << "must not be asked while an exception is being built";
}

}  // namespace

TEST_F(GExceptionTest, HasTheMessagesOfAllPlatforms) {
    const struct {
        long id;
        std::u16string_view text;
    } rows[] = {
        {2450, u"General Exception"},
        {2459, u"Action has been canceled"},
        {2464, u"Could not write data to file"},
        {40000, u"File directory full"},
        {40008, u"Memory full (open) or file won't fit (load)"},
        {40014, u"Directory is not empty (or: One or more files are open or File is busy )"},
        {40041,
         u"A file reference number does not correspond to a fork opened with the FSOpenFork, "
         u"PBOpenForkSync , or PBOpenForkAsync functions"},
        {40066, u"Path is not relative"},
        {40073, u"A Win32 System Error has occurred"},
        {40079, u"Opening %1 in the application %2"},
        {40092, u"Internal error. Could not lock."},
        {40168, u"The specified shared memory was already created with another file size"},
        {40207, u"Could not release event"},
        {40255,
         u"System error, contact your System Administrator: \"Error creating thread: permission denied\""},
        {40270, u"Random generator already initialised"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.id);
        EXPECT_EQ(Plain(GSimpleException(row.id).GetDescription()), row.text);
    }
    const GString helped = GSimpleException(40091).GetDescription();
    EXPECT_EQ(helped.Find("Internal error. Files are not locked. "), 0);
    GString none;
    for (const long gap : {2449L, 2465L, 40080L, 40095L, 40208L, 40271L}) {
        SCOPED_TRACE(gap);
        EXPECT_FALSE(GStringPoolSupport::FindString(gap, none));
    }
}

TEST_F(GExceptionTest, EachClassHasItsNumberAndText) {
    const struct {
        const char* what;
        std::shared_ptr<GException> exception;
        long id;
        std::u16string_view text;
    } rows[] = {
        {"general", std::make_shared<GException>(), 2450, u"General Exception"},
        {"simple", std::make_shared<GSimpleException>(40068), 40068, u"Invalid path"},
        {"abort", std::make_shared<GAbortException>(), 2459, u"Action has been canceled"},
        {"memory", std::make_shared<GMemoryException>(), 2451, u"Out of memory"},
        {"custom without text", std::make_shared<GCustomException>(40092), 40092,
         u"Internal error. Could not lock."},
        {"custom with text", std::make_shared<GCustomException>(40092, Text(u"C:\\x")), 40092, u"C:\\x"},
        {"custom with empty text", std::make_shared<GCustomException>(40092, GString()), 40092, u""},
        {"language string", std::make_shared<GLngException>(GLngString(40100).AddParam(Text(u"A"))), 40100,
         u"Application A is not opened"},
        {"number and parameter", std::make_shared<GLngException>(40101, Text(u"B")), 40101,
         u"Could not determine process number for B"},
        {"plain language string", std::make_shared<GLngException>(GLngString(Text(u"plain"))), 0, u"plain"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.exception->GetExceptionID(), row.id);
        EXPECT_EQ(Plain(row.exception->GetDescription()), row.text);
        EXPECT_EQ(Full(*row.exception), row.text) << "no location, no colon";
    }
}

TEST_F(GExceptionTest, MemoryExceptionIsTheStandardOneToo) {
    try {
        throw GMemoryException();
    } catch (const std::bad_alloc& exception) {
        EXPECT_STREQ(exception.what(), "bad allocation");
    }
}

TEST_F(GExceptionTest, CopiesKeepTheirText) {
    auto first = std::make_unique<GCustomException>(40092, Text(u"text"));
    const GCustomException copy = *first;
    GCustomException assigned(2450);
    assigned = *first;
    first.reset();
    EXPECT_EQ(Full(copy), u"text");
    EXPECT_EQ(Full(assigned), u"text");
    EXPECT_EQ(assigned.GetExceptionID(), 40092);
    assigned = GCustomException(40093);
    EXPECT_EQ(Full(assigned), u"Internal error. The lock file is still in use.");
}

TEST_F(GExceptionLocationTest, SaysWhatTheThreadWasDoing) {
    const GExceptionLocation copying(40076, Path(u"C:/a/x.ps"), Path(u"//srv/s"));
    EXPECT_EQ(Full(GSimpleException(40010)),
              u"Copying C:\\a\\x.ps to \\\\srv\\s: File or directory not found or incomplete path name");
    EXPECT_EQ(Plain(GSimpleException(40010).GetDescription()),
              u"File or directory not found or incomplete path name");
}

TEST_F(GExceptionLocationTest, HasFourForms) {
    {
        const GExceptionLocation number(2454);
        EXPECT_EQ(Full(GSimpleException(40068)), u"Could not read data from file: Invalid path");
    }
    {
        const GExceptionLocation text(Text(u"100% %1"));
        EXPECT_EQ(Full(GSimpleException(40068)), u"100% %1: Invalid path");
    }
    {
        const GExceptionLocation path(Path(u"C:/dir/%1"));
        EXPECT_EQ(Full(GSimpleException(40068)), u"C:\\dir\\%1: Invalid path");
    }
    {
        const GExceptionLocation empty((GString()));
        EXPECT_EQ(Full(GSimpleException(40068)), u"Invalid path");
    }
    EXPECT_TRUE(GExceptionLocation::GetLngDescription().IsEmpty());
}

TEST_F(GExceptionLocationTest, ShowsTheInnermostOnly) {
    const GExceptionLocation outer(Text(u"outer"));
    {
        const GExceptionLocation inner(Text(u"inner"));
        EXPECT_EQ(Full(GSimpleException(40068)), u"inner: Invalid path");
    }
    EXPECT_EQ(Full(GSimpleException(40068)), u"outer: Invalid path");
}

TEST_F(GExceptionLocationTest, ExceptionsOutliveTheirScope) {
    std::unique_ptr<GException> kept;
    try {
        const GExceptionLocation where(Path(u"C:/x"));
        throw GSimpleException(40068);
    } catch (const GException& exception) {
        EXPECT_TRUE(GExceptionLocation::GetLngDescription().IsEmpty());
        kept = std::make_unique<GException>(exception);
    }
    EXPECT_EQ(Full(*kept), u"C:\\x: Invalid path");
}

TEST_F(GExceptionLocationTest, KeepsACopyOfWhatItWasGiven) {
    GPathName path = Path(u"C:/before");
    const GExceptionLocation where(path);
    path = Path(u"C:/after");
    EXPECT_EQ(Plain(GExceptionLocation::GetLngDescription().GetString()), u"C:\\before");
}

TEST_F(GExceptionLocationTest, IsReadInTheLanguageOfTheReader) {
    static constexpr GStringPoolRow cRows[] = {{2454, "Lesen"}, {40068, "Pfad"}};
    GStringPoolSupport::Register("deDE", "WinAnsiEncoding", cRows, 2);
    const GExceptionLocation where(2454);
    const GSimpleException exception(40068);
    GStringPoolSupport::SetCurrentLanguage("deDE");
    EXPECT_EQ(Full(exception), u"Lesen: Pfad");
    GStringPoolSupport::SetCurrentLanguage("enUS");
    EXPECT_EQ(Full(exception), u"Could not read data from file: Invalid path");
    GStringPoolSupport::Unregister(cRows);
}

TEST_F(GExceptionLocationTest, MayLeaveInAnyOrder) {
    auto first = std::make_unique<GExceptionLocation>(Text(u"first"));
    auto second = std::make_unique<GExceptionLocation>(Text(u"second"));
    auto third = std::make_unique<GExceptionLocation>(Text(u"third"));
    second.reset();
    EXPECT_EQ(Plain(GExceptionLocation::GetLngDescription().GetString()), u"third");
    third.reset();
    EXPECT_EQ(Plain(GExceptionLocation::GetLngDescription().GetString()), u"first");
    first.reset();
    EXPECT_TRUE(GExceptionLocation::GetLngDescription().IsEmpty());
}

TEST_F(GExceptionLocationTest, EachThreadHasItsOwn) {
    const GExceptionLocation here(Text(u"here"));
    std::u16string before;
    std::u16string there;
    std::thread([&] {
        before = Full(GSimpleException(40068));
        const GExceptionLocation location(Text(u"there"));
        there = Full(GSimpleException(40068));
    }).join();
    EXPECT_EQ(before, u"Invalid path");
    EXPECT_EQ(there, u"there: Invalid path");
    EXPECT_EQ(Full(GSimpleException(40068)), u"here: Invalid path");
}

TEST_F(GExceptionTest, IsBuiltWithoutALocationWhenMemoryRunsOut) {
    const std::new_handler before = std::set_new_handler(ProgramsOwnHandler);
    {
        const HungryLocation hungry;
        HungryLocation::sHandlerThen = nullptr;
        EXPECT_EQ(Full(GSimpleException(40068)), u"Invalid path");
        EXPECT_NE(HungryLocation::sHandlerThen, nullptr);
        EXPECT_NE(HungryLocation::sHandlerThen, &ProgramsOwnHandler);
        EXPECT_THROW(HungryLocation::sHandlerThen(), std::bad_alloc)
            << "what other threads would get meanwhile";
        EXPECT_EQ(std::get_new_handler(), &ProgramsOwnHandler);
    }
    EXPECT_EQ(std::set_new_handler(before), &ProgramsOwnHandler);
}

TEST_F(GExceptionTest, OutOfMemoryAsksForNoLocation) {
    const HungryLocation hungry;
    HungryLocation::sHandlerThen = nullptr;
    EXPECT_EQ(Full(GMemoryException()), u"Out of memory");
    EXPECT_EQ(Full(GSimpleException(2451)), u"Out of memory");
    EXPECT_EQ(HungryLocation::sHandlerThen, nullptr);
}

TEST_F(GExceptionTest, PutsTheNewHandlerBackWhenThreadsOverlap) {
    const std::new_handler before = std::set_new_handler(ProgramsOwnHandler);
    const auto build = [] {
        for (int i = 0; i < 20000; ++i) GSimpleException(40068);
    };
    std::thread other(build);
    build();
    other.join();
    EXPECT_EQ(std::set_new_handler(before), &ProgramsOwnHandler);
}

namespace {

class NotingHandler : public GExceptionHandler {
public:
    using GExceptionHandler::Handle;
    void Handle(const GSimpleException&) const override { mNote += "simple "; }
    void Handle(const GMemoryException&) const override { mNote += "memory "; }
    void Handle(const GException& exception) const override {
        mNote += "other" + std::to_string(exception.GetExceptionID()) + " ";
    }

    mutable std::string mNote;
};

class NotingReporter : public GErrorReporter {
public:
    explicit NotingReporter(std::u16string& note) : mNote(note) {}
    ~NotingReporter() override { mNote += u"[gone]"; }
    void Report(const GString& text) const override { mNote += Plain(text); }

private:
    std::u16string& mNote;
};

/// What a handler does with something thrown; "on" when it is thrown on.
template <class Thrown>
std::string Dispatch(const Thrown& thrown) {
    const NotingHandler handler;
    try {
        try {
            throw thrown;
        } catch (...) {
            handler.Handle();
        }
    } catch (const Thrown&) {
        return handler.mNote + "on";
    }
    return handler.mNote;
}

}  // namespace

TEST_F(GExceptionHandlerTest, DispatchesOnTheType) {
    EXPECT_EQ(Dispatch(GMemoryException()), "memory ");
    EXPECT_EQ(Dispatch(GSimpleException(2460)), "simple ");
    EXPECT_EQ(Dispatch(GException()), "other2450 ");
    EXPECT_EQ(Dispatch(GCustomException(40092)), "other40092 ");
    EXPECT_EQ(Dispatch(GLngException(40100, GString("x"))), "other40100 ");
    EXPECT_EQ(Dispatch(GAbortException()), "on");
    EXPECT_EQ(Dispatch(std::bad_alloc()), "on");
    EXPECT_EQ(Dispatch(42), "on");
}

TEST_F(GExceptionHandlerTest, DoesNothingWithoutAnException) {
    const NotingHandler handler;
    handler.Handle();
    EXPECT_EQ(handler.mNote, "");
}

TEST_F(GExceptionHandlerTest, TheDefaultHandlerReportsTheFullDescription) {
    std::u16string note;
    GErrorReporter::SetInstance(new NotingReporter(note));
    const GExceptionLocation where(Text(u"here"));
    const GDefaultExceptionHandler handler;
    handler.Handle(GSimpleException(40068));
    EXPECT_EQ(note, u"here: Invalid path");
    note.clear();
    handler.Handle(GMemoryException());
    EXPECT_EQ(note, u"Out of memory");
    note.clear();
    handler.Handle(GCustomException(2450, Text(u"own")));
    EXPECT_EQ(note, u"here: own");
    note.clear();
    try {
        throw GSimpleException(40067);
    } catch (...) {
        handler.Handle();
    }
    EXPECT_EQ(note, u"here: Path is not absolute");
    note.clear();
    EXPECT_THROW(
        {
            try {
                throw GAbortException();
            } catch (...) {
                handler.Handle();
            }
        },
        GAbortException);
    EXPECT_EQ(note, u"");
    GErrorReporter::SetInstance(nullptr);
    EXPECT_EQ(note, u"[gone]");
}

TEST_F(GExceptionHandlerTest, TheReporterIsReplacedAndOwned) {
    GErrorReporter* const silent = GErrorReporter::GetInstance();
    ASSERT_NE(silent, nullptr);
    silent->Report(Text(u"nobody hears"));
    EXPECT_EQ(GErrorReporter::GetInstance(), silent);
    std::u16string note;
    auto* const own = new NotingReporter(note);
    GErrorReporter::SetInstance(own);
    GErrorReporter::SetInstance(own);
    EXPECT_EQ(note, u"");
    EXPECT_EQ(GErrorReporter::GetInstance(), own);
    GErrorReporter::SetInstance(nullptr);
    EXPECT_EQ(note, u"[gone]");
    EXPECT_NE(GErrorReporter::GetInstance(), nullptr);
}

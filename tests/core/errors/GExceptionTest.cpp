#include "framework/core/errors/GException.h"

#include <cstdio>

#include "framework/core/errors/GExceptionHandler.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/core/errors/GStringPool.h"
#include "tests/core/encodings/EncodingForTests.h"
#include "tests/core/paths/PathForTests.h"

namespace {

std::u16string Full(const GException& exception) {
    return Plain(exception.GetFullDescription());
}

std::u16string DescribeInALocation() {
    const GExceptionLocation where(GString("Here"));
    return Full(GSimpleException(40068));
}

// Made before all static objects but the framework's first ones, and ended after them. It also registers the
// messages for all tests.
struct OuterObject {
    OuterObject() {
        GException::Initialize();
        mDescription = DescribeInALocation();
    }
    ~OuterObject() {
        GException::Initialize();
        if (DescribeInALocation() == u"Here: Invalid path") return;
        std::fputs("A static object's destructor could not describe a failure.\n", stderr);
        std::_Exit(EXIT_FAILURE);
    }
    std::string mEncodingName = BytesOf(GString("x").GetEncodingName());
    bool mIsOfItsType = WinAnsi()->IsOfType("WinAnsiEncoding");
    std::u16string mDescription;
};

const OuterObject sOuter __attribute__((init_priority(103)));

/// A location whose description cannot be had for want of memory.
struct HungryLocation : GExceptionLocation {
    GLngString Describe() const override {
        sHandlerThen = std::get_new_handler();
        sHandlerThen();
        return GLngString(Text(u"not reached"));
    }
    static inline std::new_handler sHandlerThen = nullptr;
};

bool sNoMemory = false;

void ProgramsOwnHandler() {
    FAIL() << "must not be asked while an exception is being built";
}

}  // namespace

// Not inlined: the compiler would complain about a mismatch with free().
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* const block = sNoMemory ? nullptr : std::malloc(size);
    return block != nullptr ? block : throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

// Their destructors come after the last test: the program fails then.
TEST(StaticObjects, UseEncodingsAndFailuresInTheirConstructors) {
    EXPECT_EQ(sOuter.mEncodingName, "ASCIIEncoding");
    EXPECT_TRUE(sOuter.mIsOfItsType);
    EXPECT_EQ(sOuter.mDescription, u"Here: Invalid path");
}

// That the table is sorted and each number stands once in it is checked when it is compiled.
TEST(GExceptionTest, HasTheMessagesOfAllPlatforms) {
    ForEachRow<2>({u"2450 -> General Exception", u"2464 -> Could not write data to file",
                   u"40000 -> File directory full", u"40079 -> Opening %1 in the application %2",
                   u"40270 -> Random generator already initialised", u"2449 -> Message 2449",
                   u"40080 -> Message 40080", u"40271 -> Message 40271", u"-1 -> Message -1",
                   u"0 -> Message 0", u"2147483647 -> Message 2147483647"},
                  [](auto id, auto text) { EXPECT_EQ(Full(GSimpleException(Text(id).GetInt32())), text); });
}

TEST(GExceptionTest, EachClassHasItsNumberAndText) {
    const std::tuple<const char*, std::shared_ptr<GException>, long, std::u16string_view> rows[] = {
        {"general", std::make_shared<GException>(), 2450, u"General Exception"},
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
        {"plain language string", std::make_shared<GLngException>(GLngString(Text(u"plain"))), 0, u"plain"}};
    for (const auto& [what, exception, id, text] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(exception->GetExceptionID(), id);
        EXPECT_EQ(Plain(exception->GetDescription()), text);
        EXPECT_EQ(Full(*exception), text) << "no location, no colon";
    }
    const GMemoryException memory;
    EXPECT_STREQ(static_cast<const std::bad_alloc&>(memory).what(), "bad allocation");
}

TEST(GExceptionTest, CopiesKeepTheirText) {
    auto first = std::make_unique<GCustomException>(40092, Text(u"text"));
    const GCustomException copy = *first;
    GCustomException assigned(2450);
    assigned = *first;
    first.reset();
    EXPECT_EQ(Full(copy) + Full(assigned), u"texttext");
    EXPECT_EQ(assigned.GetExceptionID(), 40092);
    assigned = GCustomException(40093);
    EXPECT_EQ(Full(assigned), u"Internal error. The lock file is still in use.");
    const std::u16string veryLong(1000000, u'x');
    EXPECT_EQ(Full(GCustomException(GCustomException(1, Text(veryLong)))), veryLong);
}

TEST(GExceptionTest, IsBuiltAndCopiedWithItsNumberWhenThereIsNoMemory) {
    const GString text = Text(u"own");
    const GCustomException original(40092, text);
    GCustomException assigned(2450, text);
    sNoMemory = true;
    const GCustomException custom(40092, text);
    const GCustomException copy(original);
    assigned = original;
    const GLngException language(40101, text);
    sNoMemory = false;
    for (const GCustomException& exception : {custom, copy, assigned})
        EXPECT_EQ(Full(exception), u"Internal error. Could not lock.");
    EXPECT_EQ(Full(language), u"Could not determine process number for %1");
}

TEST(GExceptionLocationTest, SaysWhatTheThreadWasDoingInnermost) {
    const GExceptionLocation copying(40076, Path(u"C:/a/x.ps"), Path(u"//srv/s"));
    EXPECT_EQ(Full(GSimpleException(40068)), u"Copying C:\\a\\x.ps to \\\\srv\\s: Invalid path");
    EXPECT_EQ(Plain(GSimpleException(40068).GetDescription()), u"Invalid path");
    const GExceptionLocation number(2454);
    EXPECT_EQ(Full(GSimpleException(40068)), u"Could not read data from file: Invalid path");
    GSimpleException kept(2450);
    {
        const GExceptionLocation text(Text(u"100% %1"));
        EXPECT_EQ(Full(GSimpleException(40068)), u"100% %1: Invalid path");
        GPathName path = Path(u"C:/dir/%1");
        const GExceptionLocation where(path);
        path = Path(u"C:/after");
        kept = GSimpleException(40068);
        const GExceptionLocation empty((GString()));
        EXPECT_EQ(Full(GSimpleException(40068)), u"Invalid path");
    }
    EXPECT_EQ(Full(kept), u"C:\\dir\\%1: Invalid path") << "it outlives its place, which keeps a copy";
    EXPECT_EQ(Full(GSimpleException(40068)), u"Could not read data from file: Invalid path");
}

TEST(GExceptionLocationTest, IsReadInTheLanguageOfTheReader) {
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

TEST(GExceptionLocationTest, MayLeaveInAnyOrderFromAnyDepth) {
    std::vector<std::unique_ptr<GExceptionLocation>> locations;
    for (const char16_t* const text : {u"first", u"second", u"third", u"fourth"})
        locations.push_back(std::make_unique<GExceptionLocation>(Text(text)));
    locations[1].reset();
    locations[3].reset();
    EXPECT_EQ(Full(GSimpleException(40068)), u"third: Invalid path");
    locations[2].reset();
    EXPECT_EQ(Full(GSimpleException(40068)), u"first: Invalid path");
    for (int i = 0; i < 100000; ++i) locations.push_back(std::make_unique<GExceptionLocation>(2454));
    for (; locations.size() > 1; locations.pop_back()) continue;
    EXPECT_EQ(Full(GSimpleException(40068)), u"first: Invalid path");
    locations.clear();
    EXPECT_TRUE(GExceptionLocation::GetLngDescription().IsEmpty());
}

TEST(GExceptionLocationTest, EachThreadHasItsOwnAlsoOneThatItsThreadHasLeftBehind) {
    const GExceptionLocation here(Text(u"here"));
    std::unique_ptr<GExceptionLocation> left;
    std::thread([&left] {
        EXPECT_EQ(Full(GSimpleException(40068)), u"Invalid path");
        left = std::make_unique<GExceptionLocation>(Text(u"left behind"));
        EXPECT_EQ(Full(GSimpleException(40068)), u"left behind: Invalid path");
    }).join();
    std::thread([] { EXPECT_EQ(Full(GSimpleException(40068)), u"Invalid path"); }).join();
    EXPECT_EQ(Full(GSimpleException(40068)), u"here: Invalid path");
    left.reset();
    EXPECT_EQ(Full(GSimpleException(40068)), u"here: Invalid path");
}

TEST(GExceptionTest, IsBuiltWithoutALocationWhenMemoryRunsOutAndPutsTheNewHandlerBack) {
    const std::new_handler before = std::set_new_handler(ProgramsOwnHandler);
    {
        const HungryLocation hungry;
        HungryLocation::sHandlerThen = nullptr;
        EXPECT_EQ(Full(GMemoryException()) + Full(GSimpleException(2451)), u"Out of memoryOut of memory");
        EXPECT_EQ(HungryLocation::sHandlerThen, nullptr) << "out of memory asks for no location";
        EXPECT_EQ(Full(GSimpleException(40068)), u"Invalid path");
        EXPECT_NE(HungryLocation::sHandlerThen, nullptr);
        EXPECT_NE(HungryLocation::sHandlerThen, &ProgramsOwnHandler);
        EXPECT_THROW(HungryLocation::sHandlerThen(), std::bad_alloc) << "what others would get meanwhile";
        EXPECT_EQ(std::get_new_handler(), &ProgramsOwnHandler);
    }
    const auto build = [] {
        for (int i = 0; i < 20000; ++i) GSimpleException(40068);
    };
    { const std::jthread threads[] = {std::jthread(build), std::jthread(build)}; }
    EXPECT_EQ(std::set_new_handler(before), &ProgramsOwnHandler);
}

namespace {

struct NotingHandler : GExceptionHandler {
    using GExceptionHandler::Handle;
    void Handle(const GSimpleException&) const override { mNote += "simple "; }
    void Handle(const GMemoryException&) const override { mNote += "memory "; }
    void Handle(const GException& exception) const override {
        mNote += "other" + std::to_string(exception.GetExceptionID()) + " ";
    }
    mutable std::string mNote;
};

struct NotingReporter : GErrorReporter {
    ~NotingReporter() override { sNote += u"[gone]"; }
    void Report(const GString& text) const override { sNote += Plain(text); }
    static inline std::u16string sNote;
};

/// What leaves a handler that is handed each of these: "on" for the thing itself.
template <class... Thrown>
std::string Dispatch(const GExceptionHandler& handler, const Thrown&... all) {
    std::string left;
    const auto dispatch = [&]<class One>(const One& thrown) {
        try {
            try {
                throw thrown;
            } catch (...) {
                handler.Handle();
            }
        } catch (const One&) {
            left += "on ";
        } catch (const long instead) {
            left += std::to_string(instead) + " ";
        }
    };
    (dispatch(all), ...);
    return left;
}

}  // namespace

TEST(GExceptionHandlerTest, DispatchesOnTheType) {
    const NotingHandler handler;
    handler.Handle();
    EXPECT_EQ(handler.mNote, "") << "no exception to handle";
    const std::string left =
        Dispatch(handler, GMemoryException(), GSimpleException(2460), GAbortException(), GException(),
                 GCustomException(40092), std::bad_alloc(), GLngException(40100, GString("x")), 42);
    EXPECT_EQ(left, "on on on ");
    EXPECT_EQ(handler.mNote, "memory simple other2450 other40092 other40100 ");
}

TEST(GExceptionHandlerTest, TheDefaultHandlerReportsTheFullDescriptionToAReporterThatIsOwned) {
    GErrorReporter::GetInstance()->Report(Text(u"nobody hears"));
    NotingReporter::sNote.clear();
    auto* const reporter = new NotingReporter;
    GErrorReporter::SetInstance(reporter);
    GErrorReporter::SetInstance(reporter);
    const GExceptionLocation where(Text(u"here"));
    EXPECT_EQ(Dispatch(GDefaultExceptionHandler(), GSimpleException(40068), GMemoryException(),
                       GCustomException(2450, Text(u"own")), GAbortException()),
              "on ");
    EXPECT_EQ(NotingReporter::sNote, u"here: Invalid pathOut of memoryhere: own");
    GErrorReporter::SetInstance(nullptr);
    EXPECT_TRUE(NotingReporter::sNote.ends_with(u"[gone]"));
    EXPECT_NE(GErrorReporter::GetInstance(), nullptr);
}

TEST(GExceptionHandlerTest, TheDefaultHandlersOverloadsMeetInOneThatMayBeReplacedAndMayThrow) {
    struct Translating : GDefaultExceptionHandler {
        using GDefaultExceptionHandler::Handle;
        void Handle(const GException& exception) const override { throw exception.GetExceptionID(); }
    };
    EXPECT_EQ(Dispatch(Translating(), GSimpleException(40068), GMemoryException()), "40068 2451 ");
}

// What static objects may use before and after all others of the program.
#include <cstdio>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "tests/core/encodings/EncodingForTests.h"

namespace {

std::u16string DescribeInALocation() {
    const GExceptionLocation where(GString("Here"));
    return Plain(GSimpleException(GExceptionID::cInvalidPath).GetFullDescription());
}

// Made before all static objects but the framework's first ones, and ended after them.
struct OuterObject {
    OuterObject()
        : mEncodingName(BytesOf(GString("x").GetEncodingName())),
          mIsOfItsType(WinAnsi()->IsOfType("WinAnsiEncoding")) {
        GException::Initialize();
        mDescription = DescribeInALocation();
    }
    ~OuterObject() {
        GException::Initialize();
        if (DescribeInALocation() == u"Here: Invalid path") return;
        std::fputs("A static object's destructor could not describe a failure.\n", stderr);
        std::_Exit(EXIT_FAILURE);
    }
    std::string mEncodingName;
    bool mIsOfItsType;
    std::u16string mDescription;
};

const OuterObject sOuter __attribute__((init_priority(103)));

}  // namespace

// Their destructors come after the last test: the program fails then.
TEST(StaticObjects, UseEncodingsAndFailuresInTheirConstructors) {
    EXPECT_EQ(sOuter.mEncodingName, "ASCIIEncoding");
    EXPECT_TRUE(sOuter.mIsOfItsType);
    EXPECT_EQ(sOuter.mDescription, u"Here: Invalid path");
}

#include "framework/core/GValue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "framework/core/GString.h"
#include "tests/core/TextForTests.h"

TEST(GValue, ConvertsBetweenKinds) {
    const struct {
        const char* what;
        GValue value;
        GValue::Type type;
        bool asBool;
        long long asInteger;
        double asReal;
        std::string asBytes;
    } rows[] = {
        {"none", GValue(), GValue::cNone, false, 0, 0, ""},
        {"true", GValue(true), GValue::cBool, true, 1, 1, "1"},
        {"false", GValue(false), GValue::cBool, false, 0, 0, "0"},
        {"integer", GValue(-5), GValue::cInteger, true, -5, -5, "-5"},
        {"zero", GValue(0LL), GValue::cInteger, false, 0, 0, "0"},
        {"real", GValue(-2.75), GValue::cReal, true, -2, -2.75, "-2.75"},
        {"large real", GValue(1e19), GValue::cReal, true, INT64_MAX, 1e19, "10000000000000000000"},
        {"real beyond the other end", GValue(-9.3e18), GValue::cReal, true, INT64_MIN, -9.3e18,
         "-9300000000000000000"},
        {"bytes", GValue(GBuffer("12.5x")), GValue::cBuffer, true, 12, 12.5, "12.5x"},
        {"text", GValue(GString("7 up")), GValue::cString, true, 7, 7, "7 up"},
        {"no number", GValue(GString("up")), GValue::cString, false, 0, 0, "up"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.value.GetType(), row.type);
        EXPECT_EQ(row.value.GetBool(), row.asBool);
        EXPECT_EQ(row.value.GetInteger(), row.asInteger);
        EXPECT_EQ(row.value.GetReal(), row.asReal);
        EXPECT_EQ(BytesOf(row.value.GetBuffer()), row.asBytes);
        EXPECT_TRUE(row.value.GetList().IsEmpty());
        EXPECT_TRUE(row.value.GetDict().IsEmpty());
    }
    EXPECT_EQ(GValue(std::numeric_limits<double>::quiet_NaN()).GetInteger(), 0);
}

TEST(GValue, TextsAreUTF8AsBytes) {
    EXPECT_EQ(BytesOf(GValue(StringOf(u"Zo\xEB")).GetBuffer()), "Zo\xC3\xAB");
    EXPECT_EQ(UnitsOf(GValue(GBuffer("Zo\xC3\xAB")).GetString()), u"Zo\xEB");
    EXPECT_EQ(UnitsOf(GValue(12).GetString()), u"12");
}

TEST(GValue, HoldsListsAndDictionaries) {
    GTable<GValue> list;
    list.Append(GValue(1));
    list.Append(GValue(GBuffer("two")));
    GDict<GBuffer, GValue> dict;
    dict.Set("list", GValue(list));
    const GValue value(dict);
    EXPECT_EQ(value.GetType(), GValue::cDict);
    const GValue copy(value);
    ASSERT_NE(copy.GetDict().Find("list"), nullptr);
    const GTable<GValue>& inner = copy.GetDict().Find("list")->GetList();
    ASSERT_EQ(inner.GetCount(), 2);
    EXPECT_EQ(inner[1].GetBuffer(), "two");
    EXPECT_EQ(value.GetInteger(), 0);
    EXPECT_TRUE(value.GetBuffer().IsEmpty());
}

TEST(GValue, EqualityNeedsTheSameKind) {
    EXPECT_TRUE(GValue() == GValue());
    EXPECT_TRUE(GValue(1) == GValue(1LL));
    EXPECT_FALSE(GValue(1) == GValue(2));
    EXPECT_FALSE(GValue(1) == GValue(1.0));
    EXPECT_FALSE(GValue(0) == GValue());
    EXPECT_TRUE(GValue(GBuffer("a")) == GValue(GBuffer("a")));
    EXPECT_FALSE(GValue(GBuffer("a")) == GValue(GString("a")));
}

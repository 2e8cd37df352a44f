#include "framework/core/text/GValue.h"

#include "tests/core/TextForTests.h"

TEST(GValue, ConvertsBetweenKinds) {
    const double cNaN = std::numeric_limits<double>::quiet_NaN();
    const std::tuple<GValue, GValue::Type, bool, long long, double, std::string> rows[] = {
        {GValue(), GValue::cNone, false, 0, 0, ""},
        {GValue(true), GValue::cBool, true, 1, 1, "1"},
        {GValue(false), GValue::cBool, false, 0, 0, "0"},
        {GValue(-5), GValue::cInteger, true, -5, -5, "-5"},
        {GValue(0LL), GValue::cInteger, false, 0, 0, "0"},
        {GValue(-2.75), GValue::cReal, true, -2, -2.75, "-2.75"},
        {GValue(1e19), GValue::cReal, true, INT64_MAX, 1e19, "10000000000000000000"},
        {GValue(-9.3e18), GValue::cReal, true, INT64_MIN, -9.3e18, "-9300000000000000000"},
        {GValue(GBuffer("12.5x")), GValue::cBuffer, true, 12, 12.5, "12.5x"},
        {GValue(GString("7 up")), GValue::cString, true, 7, 7, "7 up"},
        {GValue(GString("up")), GValue::cString, false, 0, 0, "up"},
        {GValue(Text(u"Zo\xEB")), GValue::cString, false, 0, 0, "Zo\xC3\xAB"},
        {GValue(GBuffer("Zo\xC3\xAB")), GValue::cBuffer, false, 0, 0, "Zo\xC3\xAB"}};
    for (const auto& [value, type, asBool, asInteger, asReal, asBytes] : rows) {
        SCOPED_TRACE(asBytes);
        EXPECT_EQ(value.GetType(), type);
        EXPECT_EQ(value.GetBool(), asBool);
        EXPECT_EQ(value.GetInteger(), asInteger);
        EXPECT_EQ(value.GetReal(), asReal);
        EXPECT_EQ(BytesOf(value.GetBuffer()), asBytes);
        EXPECT_TRUE(value.GetString() == GString::FromUTF8(asBytes.c_str()));
        EXPECT_TRUE(value.GetList().IsEmpty());
        EXPECT_TRUE(value.GetDict().IsEmpty());
    }
    EXPECT_EQ(GValue(cNaN).GetInteger(), 0);
}

TEST(GValue, HoldsListsAndDictionaries) {
    const GTable<GValue> list{GValue(1), GValue(GBuffer("two"))};
    GDict<GBuffer, GValue> dict;
    dict.Set("list", GValue(list));
    const GValue value(dict), copy(value);
    EXPECT_EQ(copy.GetType(), GValue::cDict);
    EXPECT_TRUE(copy == value && copy.GetDict() == dict);
    EXPECT_TRUE(copy.GetDict().Find("list")->GetList() == list);
    EXPECT_TRUE(value.GetInteger() == 0 && value.GetBuffer().IsEmpty());
}

TEST(GValue, EqualityNeedsTheSameKind) {
    const GValue bytes(GBuffer("a"));
    EXPECT_TRUE(GValue() == GValue() && GValue(1) == GValue(1LL) && bytes == GValue(GBuffer("a")));
    EXPECT_FALSE(GValue(1) == GValue(2) || GValue(1) == GValue(1.0));
    EXPECT_FALSE(GValue(0) == GValue() || bytes == GValue(GString("a")));
}

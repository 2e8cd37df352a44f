#include "framework/core/text/GValue.h"

#include <cmath>
#include <cstdint>
#include <utility>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/text/GString.h"

namespace {

// One kind of value: its contents, and how two of them compare.
template <class T, long type>
class ValueOf : public GValueImp {
public:
    explicit ValueOf(const T& value) : mValue(value) {}
    long GetType() const noexcept override { return type; }
    bool IsEqualTo(const GValueImp& other) const override {
        return mValue == static_cast<const ValueOf&>(other).mValue;
    }

protected:
    const T mValue;
};

// A double can be 2^63, but not 2^63 - 1.
constexpr double cTwoToThe63 = 9223372036854775808.0;

long long ToInteger(double value) {
    if (std::isnan(value)) return 0;
    if (value >= cTwoToThe63) return INT64_MAX;
    if (value < -cTwoToThe63) return INT64_MIN;
    return static_cast<long long>(value);
}

class BoolValue : public ValueOf<bool, GValue::cBool> {
public:
    using ValueOf::ValueOf;
    bool GetBool() const override { return mValue; }
    long long GetInteger() const override { return mValue ? 1 : 0; }
    double GetReal() const override { return mValue ? 1 : 0; }
    GBuffer GetBuffer() const override { return GBuffer(mValue ? "1" : "0"); }
};

class IntegerValue : public ValueOf<long long, GValue::cInteger> {
public:
    using ValueOf::ValueOf;
    bool GetBool() const override { return mValue != 0; }
    long long GetInteger() const override { return mValue; }
    double GetReal() const override { return static_cast<double>(mValue); }
    GBuffer GetBuffer() const override { return GBuffer(mValue); }
};

class RealValue : public ValueOf<double, GValue::cReal> {
public:
    using ValueOf::ValueOf;
    bool GetBool() const override { return mValue != 0; }
    long long GetInteger() const override { return ToInteger(mValue); }
    double GetReal() const override { return mValue; }
    GBuffer GetBuffer() const override {
        GBuffer text;
        text.SetWithHighPrecision(mValue);
        return text;
    }
};

class BufferValue : public ValueOf<GBuffer, GValue::cBuffer> {
public:
    using ValueOf::ValueOf;
    bool GetBool() const override { return mValue.GetReal() != 0; }
    long long GetInteger() const override { return mValue.GetInt64(); }
    double GetReal() const override { return mValue.GetReal(); }
    GBuffer GetBuffer() const override { return mValue; }
};

class StringValue : public ValueOf<GString, GValue::cString> {
public:
    using ValueOf::ValueOf;
    bool GetBool() const override { return GetReal() != 0; }
    long long GetInteger() const override { return GetBuffer().GetInt64(); }
    double GetReal() const override { return GetBuffer().GetReal(); }
    GBuffer GetBuffer() const override { return mValue.GetBuffer(GUTF8Encoding::GetInstance()); }
    GString GetString() const override { return mValue; }
};

class ListValue : public ValueOf<GTable<GValue>, GValue::cList> {
public:
    using ValueOf::ValueOf;
    const GTable<GValue>& GetList() const override { return mValue; }
};

class DictValue : public ValueOf<GDict<GBuffer, GValue>, GValue::cDict> {
public:
    using ValueOf::ValueOf;
    const GDict<GBuffer, GValue>& GetDict() const override { return mValue; }
};

// What a value of no kind answers with.
class NoValue : public GValueImp {
public:
    long GetType() const noexcept override { return GValue::cNone; }
    bool IsEqualTo(const GValueImp&) const override { return true; }
};

const GValueImp& ImpOrNone(const GSharedObject<const GValueImp>& imp) {
    static const NoValue sNone;
    return imp ? *imp : sNone;
}

}  // namespace

bool GValueImp::GetBool() const {
    return false;
}

long long GValueImp::GetInteger() const {
    return 0;
}

double GValueImp::GetReal() const {
    return 0;
}

GBuffer GValueImp::GetBuffer() const {
    return GBuffer();
}

// In a text: what the kind says as bytes.
GString GValueImp::GetString() const {
    return GString(GetBuffer(), GUTF8Encoding::GetInstance(), true);
}

const GTable<GValue>& GValueImp::GetList() const {
    static const GTable<GValue> sEmpty;
    return sEmpty;
}

const GDict<GBuffer, GValue>& GValueImp::GetDict() const {
    static const GDict<GBuffer, GValue> sEmpty;
    return sEmpty;
}

GValue::GValue(bool value) : mImp(new BoolValue(value)) {}

GValue::GValue(long long value) : mImp(new IntegerValue(value)) {}

GValue::GValue(double value) : mImp(new RealValue(value)) {}

GValue::GValue(const GBuffer& bytes) : mImp(new BufferValue(bytes)) {}

GValue::GValue(const GString& text) : mImp(new StringValue(text)) {}

GValue::GValue(const GTable<GValue>& list) : mImp(new ListValue(list)) {}

GValue::GValue(const GDict<GBuffer, GValue>& dict) : mImp(new DictValue(dict)) {}

GValue::GValue(GSharedObject<const GValueImp> imp) noexcept : mImp(std::move(imp)) {}

GValue::Type GValue::GetType() const noexcept {
    return static_cast<Type>(mImp ? mImp->GetType() : cNone);
}

bool GValue::GetBool() const {
    return ImpOrNone(mImp).GetBool();
}

long long GValue::GetInteger() const {
    return ImpOrNone(mImp).GetInteger();
}

double GValue::GetReal() const {
    return ImpOrNone(mImp).GetReal();
}

GBuffer GValue::GetBuffer() const {
    return ImpOrNone(mImp).GetBuffer();
}

GString GValue::GetString() const {
    return ImpOrNone(mImp).GetString();
}

const GTable<GValue>& GValue::GetList() const {
    return ImpOrNone(mImp).GetList();
}

const GDict<GBuffer, GValue>& GValue::GetDict() const {
    return ImpOrNone(mImp).GetDict();
}

bool GValue::operator==(const GValue& other) const {
    return GetType() == other.GetType() && ImpOrNone(mImp).IsEqualTo(ImpOrNone(other.mImp));
}

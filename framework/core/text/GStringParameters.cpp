#include <cstdarg>
#include <utility>

#include "framework/core/containers/GTable.h"
#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/text/GString.h"

GString& GString::SubstituteParams(const GString& first) {
    const GString* const parameters[] = {&first};
    return Substitute(parameters, 1);
}

GString& GString::SubstituteParams(const GString& first, const GString& second) {
    const GString* const parameters[] = {&first, &second};
    return Substitute(parameters, 2);
}

GString& GString::SubstituteParams(const GString& first, const GString& second, const GString& third) {
    const GString* const parameters[] = {&first, &second, &third};
    return Substitute(parameters, 3);
}

GString& GString::SubstituteParams(const GTable<const GString*>& parameters) {
    return Substitute(parameters.begin(), parameters.GetCount());
}

GString& GString::SubstituteParams(long count, ...) {
    GTable<const GString*> parameters;
    std::va_list list;
    va_start(list, count);
    for (long i = 0; i < count; ++i) parameters.Append(va_arg(list, const GString*));
    va_end(list);
    return SubstituteParams(parameters);
}

GString& GString::Substitute(const GString* const* parameters, long count) {
    const unsigned char* units = GetUnits();
    const auto length = static_cast<std::size_t>(GetLength());
    GBuffer result;
    std::size_t copied = 0;
    long next = 0;
    for (std::size_t i = 0; i + 1 < length; ++i) {
        if (GCodeUnits::Load(units, i) != '%') continue;
        const std::uint16_t marker = GCodeUnits::Load(units, i + 1);
        long index = count;
        if (marker >= '1' && marker <= '9') index = marker - '1';
        if (marker == 's') index = next++;
        if (index >= count || parameters[index] == nullptr) continue;
        result.AppendByteArray(units + 2 * copied, static_cast<long>(2 * (i - copied)));
        result += parameters[index]->GetBuffer(GUnicodeEncoding::GetInstance());
        copied = i + 2;
        ++i;
    }
    if (copied == 0) {
        GUnicodeEncoding::GetInstance()->Normalize(mBuffer);
        return *this;
    }
    result.AppendByteArray(units + 2 * copied, static_cast<long>(2 * (length - copied)));
    GUnicodeEncoding::GetInstance()->Normalize(result);
    mBuffer.Swap(result);
    return *this;
}

long GString::GetNumSubstitutes() const {
    const unsigned char* units = GetUnits();
    const auto length = static_cast<std::size_t>(GetLength());
    long count = 0;
    for (std::size_t i = 0; i + 1 < length; ++i) {
        const std::uint16_t marker = GCodeUnits::Load(units, i + 1);
        if (GCodeUnits::Load(units, i) == '%' && (marker == 's' || (marker >= '1' && marker <= '9'))) ++count;
    }
    return count;
}

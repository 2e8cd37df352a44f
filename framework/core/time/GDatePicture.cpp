#include "framework/core/time/GDatePicture.h"

#include <algorithm>
#include <cstdlib>

namespace {

void AddNumber(GString& text, std::int32_t number, long minDigits) {
    GString digits;
    digits.SetInt(number, minDigits);
    text += digits;
}

/// One letter is the bare number, two or more have two digits.
void AddSmallNumber(GString& text, std::int32_t number, long count) {
    AddNumber(text, number, std::min(count, 2L));
}

/// Copies quoted text from the opening quote on; returns the position behind it.
long AddQuoted(GString& text, const GString& picture, long position) {
    const long length = picture.GetLength();
    // An empty pair is a quote, inside quoted text and outside.
    if (position + 1 < length && picture[position + 1] == '\'') {
        text += static_cast<unsigned short>('\'');
        return position + 2;
    }
    for (++position; position < length; ++position) {
        if (picture[position] == '\'') {
            if (position + 1 >= length || picture[position + 1] != '\'') return position + 1;
            ++position;
        }
        text += picture[position];
    }
    return position;
}

long CountRun(const GString& picture, long position) {
    long end = position;
    while (end < picture.GetLength() && picture[end] == picture[position]) ++end;
    return end - position;
}

}  // namespace

GString GDatePicture::Write(const GString& picture) const {
    GString text;
    for (long position = 0; position < picture.GetLength();) {
        const unsigned short letter = picture[position];
        if (letter == '\'') {
            position = AddQuoted(text, picture, position);
            continue;
        }
        const long count = CountRun(picture, position);
        if (!AddField(text, letter, count)) text += picture.GetSubstring(position, count);
        position += count;
    }
    return text;
}

bool GDatePicture::AddField(GString& text, unsigned short letter, long count) const {
    const bool asName = count > 2;
    const bool abbreviated = count == 3;
    switch (letter) {
        case 'd':
            if (asName) {
                text += PTime::GetWeekdayName(mWeekday, abbreviated);
            } else {
                AddSmallNumber(text, mTime.mDay, count);
            }
            return true;
        case 'M':
            if (asName) {
                text += PTime::GetMonthName(mTime.mMonth, abbreviated);
            } else {
                AddSmallNumber(text, mTime.mMonth, count);
            }
            return true;
        case 'y':
            AddYear(text, count);
            return true;
        case 'h':
            AddSmallNumber(text, (mTime.mHour + 11) % 12 + 1, count);
            return true;
        case 'H':
            AddSmallNumber(text, mTime.mHour, count);
            return true;
        case 'm':
            AddSmallNumber(text, mTime.mMinute, count);
            return true;
        case 's':
            AddSmallNumber(text, mTime.mSecond, count);
            return true;
        case 't':
            AddDayHalf(text, count);
            return true;
        default:
            return false;
    }
}

void GDatePicture::AddYear(GString& text, long count) const {
    if (count > 2) {
        AddNumber(text, mTime.mYear, 4);
    } else {
        AddSmallNumber(text, std::abs(mTime.mYear % 100), count);
    }
}

void GDatePicture::AddDayHalf(GString& text, long count) const {
    const GString name = PTime::GetDayHalfName(mTime.mHour >= 12);
    text += count == 1 ? name.GetSubstring(0, 1) : name;
}

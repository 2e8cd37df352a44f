#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/memory/GRefCount.h"
#include "framework/core/memory/GSharedObject.h"

class GString;
class GValue;

/// GValueImp: what is behind a GValue; shared by its copies and never changed.
///
/// A getter that does not suit the kind answers with the nearest sensible value, or with none: see
/// GValue.
class QUILLON_EXPORT GValueImp : public GThreadSafeRefCount {
public:
    virtual long GetType() const noexcept = 0;  ///< of GValue::Type, or a number of one's own
    ///@{ What the kind does not override: false, 0 or empty; GetString() reads GetBuffer() as UTF-8.
    virtual bool GetBool() const;
    virtual long long GetInteger() const;
    virtual double GetReal() const;
    virtual GBuffer GetBuffer() const;
    virtual GString GetString() const;
    virtual const GTable<GValue>& GetList() const;
    virtual const GDict<GBuffer, GValue>& GetDict() const;
    ///@}
    virtual bool IsEqualTo(const GValueImp& other) const = 0;  ///< `other` has the same type
};

/// GValue: a value of one of several kinds, as settings hold them.
///
/// Copies share one unchangeable implementation object: copying is cheap, and copies may be used on
/// different threads. Getters convert: numbers to and from decimal text, false and true to 0 and 1 and
/// back from any number but 0; what cannot be converted gives false, 0, or something empty.
class QUILLON_EXPORT GValue {
public:
    /// What a value can be.
    enum Type : long {
        cNone,     ///< nothing
        cBool,     ///< bool
        cInteger,  ///< 64 bits with a sign
        cReal,     ///< double
        cBuffer,   ///< bytes
        cString,   ///< text
        cList,     ///< values in a row
        cDict,     ///< values by names in bytes
    };

    GValue() noexcept = default;
    ///@{ A value of that kind, which is copied.
    explicit GValue(bool value);
    explicit GValue(int value) : GValue(static_cast<long long>(value)) {}
    explicit GValue(long value) : GValue(static_cast<long long>(value)) {}
    explicit GValue(long long value);
    explicit GValue(double value);
    explicit GValue(const GBuffer& bytes);
    explicit GValue(const GString& text);
    explicit GValue(const GTable<GValue>& list);
    explicit GValue(const GDict<GBuffer, GValue>& dict);
    ///@}
    /// With an implementation of one's own, whose type is not one of the above.
    explicit GValue(GSharedObject<const GValueImp> imp) noexcept;
    explicit GValue(const char*) = delete;  // would be taken for a bool

    /// The kind it holds.
    Type GetType() const noexcept;
    bool IsNone() const noexcept { return GetType() == cNone; }  ///< whether it holds nothing

    bool GetBool() const;          ///< whether the number, or the number that the text begins with, is not 0
    long long GetInteger() const;  ///< a real is cut towards 0, to the nearest limit outside 64 bits
    double GetReal() const;        ///< as GBuffer reads a number from text
    GBuffer GetBuffer() const;     ///< a text as UTF-8
    GString GetString() const;     ///< bytes as UTF-8
    const GTable<GValue>& GetList() const;  ///< empty unless it is a list; valid while the value lives
    const GDict<GBuffer, GValue>& GetDict() const;  ///< empty unless it is a dictionary; likewise

    /// Same kind and equal contents.
    bool operator==(const GValue& other) const;

private:
    GSharedObject<const GValueImp> mImp;  // empty for cNone
};

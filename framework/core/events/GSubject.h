#pragma once

#include <utility>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"

class GSubject;

/// GObserver: base of whoever wants to be told of the changes of subjects.
///
/// Either side may end first: an observer leaves its subjects and a subject its observers. One thread
/// at a time for both.
class QUILLON_EXPORT GObserver {
public:
    GObserver() = default;
    GObserver(const GObserver&) = delete;
    GObserver& operator=(const GObserver&) = delete;
    virtual ~GObserver();

    /// The subject has changed. What this throws reaches whoever changed the subject.
    virtual void Update(GSubject& subject) = 0;

private:
    friend class GSubject;
    GTable<GSubject*> mSubjects;
};

/// GSubject: something whose changes observers follow.
class QUILLON_EXPORT GSubject {
public:
    GSubject() = default;
    GSubject(const GSubject&) = delete;
    GSubject& operator=(const GSubject&) = delete;
    virtual ~GSubject();

    /// An observer that is attached already stays attached once.
    void Attach(GObserver& observer);
    void Detach(GObserver& observer) noexcept;  ///< an observer that is not attached is no error
    bool IsAttached(const GObserver& observer) const noexcept;  ///< whether it is told of changes
    /// Tells all observers in the order of their attachment. They may attach and detach meanwhile,
    /// also each other, and may end themselves: one that is added is told as well, one that is gone
    /// is not. They may not end the subject. An observer that throws leaves the ones behind it untold.
    void Notify();

private:
    friend class GObserver;
    void Forget(const GObserver& observer) noexcept;

    GTable<GObserver*> mObservers;
};

/// GSubjectT: a value that tells its observers when it becomes another.
template <class T>
class GSubjectT : public GSubject {
public:
    GSubjectT() = default;
    explicit GSubjectT(T value) : mValue(std::move(value)) {}  ///< takes the value; nobody is told

    /// Valid as long as the subject; SetValue() changes what it refers to.
    const T& GetValue() const noexcept { return mValue; }
    /// A value equal to the present one changes nothing and tells nobody.
    void SetValue(const T& value) {
        if (value == mValue) return;
        mValue = value;
        Notify();
    }

private:
    T mValue{};
};

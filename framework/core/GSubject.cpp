#include "framework/core/GSubject.h"

namespace {

template <class T>
long PositionOf(const GTable<T*>& table, const T* element) noexcept {
    for (long position = 0; position < table.GetCount(); ++position)
        if (table[position] == element) return position;
    return -1;
}

template <class T>
void RemoveFrom(GTable<T*>& table, const T* element) noexcept {
    const long position = PositionOf(table, element);
    if (position >= 0) table.Remove(position);
}

}  // namespace

GObserver::~GObserver() {
    for (GSubject* subject : mSubjects) subject->Forget(*this);
}

GSubject::~GSubject() {
    for (GObserver* observer : mObservers) RemoveFrom(observer->mSubjects, this);
}

void GSubject::Attach(GObserver& observer) {
    if (IsAttached(observer)) return;
    // With room on both sides, neither is left with half of the bond.
    mObservers.Reserve(mObservers.GetCount() + 1);
    observer.mSubjects.Append(this);
    mObservers.Append(&observer);
}

void GSubject::Detach(GObserver& observer) noexcept {
    RemoveFrom(observer.mSubjects, this);
    Forget(observer);
}

bool GSubject::IsAttached(const GObserver& observer) const noexcept {
    return PositionOf(mObservers, &observer) >= 0;
}

void GSubject::Notify() {
    GTableIterator<GObserver*> observers(mObservers);
    while (GObserver** observer = observers.Next()) (*observer)->Update(*this);
}

void GSubject::Forget(const GObserver& observer) noexcept {
    RemoveFrom(mObservers, &observer);
}

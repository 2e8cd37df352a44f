#include "framework/core/events/GSubject.h"

#include <algorithm>

namespace {

// Removes nothing where the element is not there.
template <class T>
void RemoveFrom(GTable<T*>& table, const T* element) noexcept {
    table.Remove(static_cast<long>(std::find(table.begin(), table.end(), element) - table.begin()));
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
    // Room is made on both sides first. Then neither can be left with half of the bond.
    mObservers.Reserve(mObservers.GetCount() + 1);
    observer.mSubjects.Append(this);
    mObservers.Append(&observer);
}

void GSubject::Detach(GObserver& observer) noexcept {
    RemoveFrom(observer.mSubjects, this);
    Forget(observer);
}

bool GSubject::IsAttached(const GObserver& observer) const noexcept {
    return std::find(mObservers.begin(), mObservers.end(), &observer) != mObservers.end();
}

void GSubject::Notify() {
    GTableIterator<GObserver*> observers(mObservers);
    while (GObserver** observer = observers.Next()) (*observer)->Update(*this);
}

void GSubject::Forget(const GObserver& observer) noexcept {
    RemoveFrom(mObservers, &observer);
}

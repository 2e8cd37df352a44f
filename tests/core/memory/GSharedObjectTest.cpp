#include "framework/core/memory/GSharedObject.h"

#include "framework/core/memory/GRefCount.h"
#include "framework/core/memory/GSmartPtr.h"
#include "tests/core/ExpectValue.h"

namespace {

template <class Counted>
struct Object : Counted {
    explicit Object(int& aliveCount) : alive(&aliveCount) { ++*alive; }
    Object(const Object& other) : Counted(other), alive(other.alive) { ++*alive; }
    Object& operator=(const Object&) = default;
    ~Object() override { --*alive; }
    int* alive;
};

template <class Counted>
struct DerivedObject : Object<Counted> {
    using Object<Counted>::Object;
};

// GSmartPtr is the same pointer's name where objects are counted on one thread.
template <class Counted>
class CountedPointer : public testing::Test {};
using Kinds = testing::Types<GThreadSafeRefCount, GRefCount>;
TYPED_TEST_SUITE(CountedPointer, Kinds);

}  // namespace

TYPED_TEST(CountedPointer, IsAValueAndTheLastOneDeletes) {
    using Thing = Object<TypeParam>;
    using Pointer = GSharedObject<Thing>;
    int alive = 0;
    {
        Pointer first(new Thing(alive)), other(new Thing(alive));
        ExpectValue(first, other);
        EXPECT_EQ(first->GetRefCount(), 1);
        const Pointer second = first;
        first = first.Get();
        EXPECT_EQ((*second).GetRefCount(), 2);
        EXPECT_EQ(second.Get(), first.Get());
        first = new Thing(alive);
        EXPECT_EQ(second->GetRefCount(), 1);
        EXPECT_EQ(alive, 3);
        first.Reset();
        other = nullptr;
        EXPECT_TRUE(first == nullptr && !other);
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TYPED_TEST(CountedPointer, TakesOverLetsGoAndConverts) {
    using Thing = Object<TypeParam>;
    using Derived = DerivedObject<TypeParam>;
    using Pointer = GSmartPtr<Derived>;
    int alive = 0;
    auto* const thing = new Derived(alive);
    thing->AddRef();
    Pointer adopted = Pointer::Adopt(thing);
    EXPECT_EQ(thing->GetRefCount(), 1);
    {
        const GSharedObject<const Thing> base(adopted);
        EXPECT_EQ(base->GetRefCount(), 2);
    }
    Derived* const detached = adopted.Detach();
    EXPECT_FALSE(adopted);
    const Derived copy(*detached);
    EXPECT_EQ(copy.GetRefCount(), 0) << "a copied object has references of its own";
    *detached = copy;
    EXPECT_EQ(detached->GetRefCount(), 1);
    detached->Release();
    EXPECT_EQ(alive, 1);
}

TEST(GSharedObject, CountsOnManyThreads) {
    using Thing = Object<GThreadSafeRefCount>;
    int alive = 0;
    {
        const GSharedObject<Thing> shared(new Thing(alive));
        const auto copyOften = [shared] {
            for (int i = 0; i < 20000; ++i) const GSharedObject<Thing> copy(shared);
        };
        { const std::jthread threads[] = {std::jthread(copyOften), std::jthread(copyOften)}; }
        EXPECT_EQ(shared->GetRefCount(), 2) << "its own, and the lambda's";
    }
    EXPECT_EQ(alive, 0);
}

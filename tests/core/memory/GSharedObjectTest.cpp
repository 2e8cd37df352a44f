#include "framework/core/memory/GSharedObject.h"

#include "framework/core/memory/GRefCount.h"
#include "framework/core/memory/GSmartPtr.h"
#include "tests/core/ExpectValue.h"

namespace {

template <class Counted>
struct Object : Counted {
    explicit Object(std::shared_ptr<int> aToken) : token(std::move(aToken)) {}
    std::shared_ptr<int> token;  // held by all that live, and by the test
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
    const auto token = std::make_shared<int>();
    {
        Pointer first(new Thing(token)), other(new Thing(token));
        ExpectValue(first, other);
        EXPECT_EQ(first->GetRefCount(), 1);
        const Pointer second = first;
        first = first.Get();
        EXPECT_EQ((*second).GetRefCount(), 2);
        EXPECT_EQ(second.Get(), first.Get());
        first = new Thing(token);
        EXPECT_EQ(second->GetRefCount(), 1);
        EXPECT_EQ(token.use_count(), 1 + 3);
        first.Reset();
        other = nullptr;
        EXPECT_TRUE(first == nullptr && !other);
        EXPECT_EQ(token.use_count(), 1 + 1);
    }
    EXPECT_EQ(token.use_count(), 1);
}

TYPED_TEST(CountedPointer, TakesOverLetsGoAndConverts) {
    using Thing = Object<TypeParam>;
    struct Derived : Thing {
        using Thing::Thing;
    };
    using Pointer = GSmartPtr<Derived>;
    const auto token = std::make_shared<int>();
    auto* const thing = new Derived(token);
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
    EXPECT_EQ(token.use_count(), 1 + 1);
}

TEST(GSharedObject, CountsOnManyThreads) {
    using Thing = Object<GThreadSafeRefCount>;
    const auto token = std::make_shared<int>();
    {
        const GSharedObject<Thing> shared(new Thing(token));
        const auto copyOften = [shared] {
            for (int i = 0; i < 20000; ++i) const GSharedObject<Thing> copy(shared);
        };
        { const std::jthread threads[] = {std::jthread(copyOften), std::jthread(copyOften)}; }
        EXPECT_EQ(shared->GetRefCount(), 2) << "its own, and the lambda's";
    }
    EXPECT_EQ(token.use_count(), 1);
}

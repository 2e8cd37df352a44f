#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

/// HandleTable: objects under numbers that never come again in this process, not even for another kind of
/// object. An object lives on while a caller has it. Any thread may call.
template <class Object>
class HandleTable {
public:
    std::uint64_t Add(std::shared_ptr<Object> object);
    /// Null when there is none.
    std::shared_ptr<Object> Find(std::uint64_t handle) const {
        const std::lock_guard lock(mLock);
        const auto found = mObjects.find(handle);
        return found == mObjects.end() ? nullptr : found->second;
    }
    /// The same, and the number is gone.
    std::shared_ptr<Object> Remove(std::uint64_t handle) {
        const std::lock_guard lock(mLock);
        auto node = mObjects.extract(handle);
        return node.empty() ? nullptr : std::move(node.mapped());
    }
    bool IsEmpty() const {
        const std::lock_guard lock(mLock);
        return mObjects.empty();
    }

private:
    mutable std::mutex mLock;
    std::map<std::uint64_t, std::shared_ptr<Object>> mObjects;
};

inline std::uint64_t MakeHandle() {
    static std::atomic<std::uint64_t> sLast = 0;
    return ++sLast;
}

template <class Object>
std::uint64_t HandleTable<Object>::Add(std::shared_ptr<Object> object) {
    const std::uint64_t handle = MakeHandle();
    const std::lock_guard lock(mLock);
    mObjects.emplace(handle, std::move(object));
    return handle;
}

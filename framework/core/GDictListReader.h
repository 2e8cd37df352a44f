#pragma once

#include "framework/core/GDict.h"
#include "framework/core/GPair.h"
#include "framework/core/GTable.h"

/// GDictListReader: fills a dictionary from a list of pairs.
///
/// `List` is anything that a range-for walks and whose elements have GetFirst() and GetSecond(), from
/// which keys and values can be made. A key that comes again replaces its value.
template <class K, class V, class List = GTable<GPair<K, V>>>
class GDictListReader {
public:
    /// The list must outlive the reader.
    explicit GDictListReader(const List& list) noexcept : mList(list) {}

    /// Adds the entries to `dict`, which is as it was when this throws.
    void ReadInto(GDict<K, V>& dict) const {
        GDict<K, V> result(dict);
        for (const auto& pair : mList) result.Set(pair.GetFirst(), pair.GetSecond());
        dict.Swap(result);
    }

private:
    const List& mList;
};

#pragma once

#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GPair.h"
#include "framework/core/containers/GTable.h"

/// GDictListReader: fills a dictionary from a list of pairs.
///
/// `List` is anything that a range-for walks and whose elements have GetFirst() and GetSecond(), from
/// which keys and values can be made. A key that comes again replaces its value.
template <class K, class V, class List = GTable<GPair<K, V>>>
class GDictListReader {
public:
    /// The list must outlive the reader.
    explicit GDictListReader(const List& list) noexcept;

    /// Adds the entries to `dict`, which is as it was when this throws.
    void ReadInto(GDict<K, V>& dict) const;

private:
    const List& mList;
};

// Outside the class, because what is inline is not exported.

template <class K, class V, class List>
GDictListReader<K, V, List>::GDictListReader(const List& list) noexcept : mList(list) {}

template <class K, class V, class List>
void GDictListReader<K, V, List>::ReadInto(GDict<K, V>& dict) const {
    GDict<K, V> result(dict);
    for (const auto& pair : mList) result.Set(pair.GetFirst(), pair.GetSecond());
    dict.Swap(result);
}

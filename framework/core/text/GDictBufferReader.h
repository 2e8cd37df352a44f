#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GBufferSupport.h"
#include "framework/core/text/GDictText.h"

/// GDictBufferReader: fills a dictionary from a buffer that holds one list of keys and values.
///
/// The buffer is a list as GBufferSupport::MergeIntoSeparatedBuffer() writes it, a key and its value in
/// turn: "#|name|anna|copies|1". Texts become GStrings as UTF-8. A key that comes again replaces its
/// value.
template <class K, class V>
class GDictBufferReader {
public:
    /// Splits the buffer, which is not needed any more then.
    explicit GDictBufferReader(const GBuffer& merged);

    /// Adds the entries to `dict`. False, with nothing added, when the last key has no value.
    bool ReadInto(GDict<K, V>& dict) const;

private:
    GBuffer mMerged;
};

// Outside the class, because what is inline is not exported.

template <class K, class V>
GDictBufferReader<K, V>::GDictBufferReader(const GBuffer& merged) : mMerged(merged) {}

template <class K, class V>
bool GDictBufferReader<K, V>::ReadInto(GDict<K, V>& dict) const {
    GTable<GBuffer> elements;
    GBufferSupport::SplitSeparatedBuffer(mMerged, elements);
    if (elements.GetCount() % 2 != 0) return false;
    GDict<K, V> result(dict);
    for (long i = 0; i < elements.GetCount(); i += 2) {
        result.Set(GDictText<K>::From(elements[i]), GDictText<V>::From(elements[i + 1]));
    }
    dict.Swap(result);
    return true;
}

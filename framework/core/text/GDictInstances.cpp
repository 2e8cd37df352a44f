#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GDictListReader.h"
#include "framework/core/text/GDictBufferReader.h"
#include "framework/core/text/GString.h"

// The dictionaries that cross the framework's interfaces and their readers, once and whole, so that
// the DLL exports them.

template class QUILLON_EXPORT GDict<GBuffer, GBuffer>;
template class QUILLON_EXPORT GDict<GBuffer, GString>;
template class QUILLON_EXPORT GDict<GString, GString>;
template class QUILLON_EXPORT GDict<long, GBuffer>;

template class QUILLON_EXPORT GDictBufferReader<GBuffer, GBuffer>;
template class QUILLON_EXPORT GDictBufferReader<GBuffer, GString>;
template class QUILLON_EXPORT GDictBufferReader<GString, GString>;
template class QUILLON_EXPORT GDictListReader<GBuffer, GBuffer>;
template class QUILLON_EXPORT GDictListReader<GBuffer, GString>;
template class QUILLON_EXPORT GDictListReader<GString, GString>;

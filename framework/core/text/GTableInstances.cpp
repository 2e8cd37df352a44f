#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GString.h"

// The tables that cross the framework's interfaces, once and whole, so that the DLL exports them.
// Nothing may be included above that uses one of them: it would then be too late for the mark.

template class QUILLON_EXPORT GTable<GBuffer>;
template class QUILLON_EXPORT GTable<GString>;
template class QUILLON_EXPORT GTable<std::int32_t>;
template class QUILLON_EXPORT GTable<long>;

#include "framework/ipc/GIPPrefix.h"

#include <iterator>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

namespace {

// In the order of the numbers.
constexpr const char* cPrefixes[] = {"QulDef", "QulMtx", "QulShD", "QulShL"};

}  // namespace

const char* GIPPrefix::GetPrefix(long id) noexcept {
    return id >= 0 && id < static_cast<long>(std::size(cPrefixes)) ? cPrefixes[id] : nullptr;
}

GBuffer GIPPrefix::AddPrefix(long id, const GBuffer& identifier) {
    const char* prefix = GetPrefix(id);
    if (prefix == nullptr) throw GSimpleException(GExceptionID::cInvalidShMemID);
    GBuffer name(prefix);
    name += identifier;
    return name;
}

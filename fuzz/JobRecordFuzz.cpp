// Job records as a processing application receives them: any process may have sent the bytes.
#include "fuzz/FuzzInput.h"
#include "monitor/handoff/GPPJobRecord.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    GPPJobRecord record;
    if (!record.SetFromMessageData(input.TakeRest())) return 0;
    GPPJobRecord back;
    Require(back.SetFromMessageData(record.GetMessageData()), "a written record is read");
    Require(back.GetMessageData() == record.GetMessageData(), "a record survives being sent");
    return 0;
}

// libFuzzer entry: every input decodes to one call of one export (see harness.h).
#include <cstddef>
#include <cstdint>

#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zilfuzz::RunOne(zilfuzz::Decode(data, size));
    return 0;
}

// One libFuzzer target; TOLVANE_FUZZ_ENTRY names the entry point it runs.
// No application object and no state kept between inputs: the entry points
// build what they need for each input and free it before returning.

#include <cstdint>

#include "fuzz/fuzz_entry_points.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    tolvane::fuzz::TOLVANE_FUZZ_ENTRY(data, size);
    return 0;
}

// One libFuzzer target; TOLVANE_FUZZ_ENTRY names the entry point it runs.

#include <QGuiApplication>
#include <cstdint>
#include <memory>

#include "fuzz/fuzz_entry_points.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static std::unique_ptr<QGuiApplication> application =
        std::make_unique<QGuiApplication>(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    tolvane::fuzz::TOLVANE_FUZZ_ENTRY(data, size);
    return 0;
}

#pragma once

// The bodies of the libFuzzer targets, shared with the test that replays the
// seed corpus, so both run exactly the same code. Each takes arbitrary bytes,
// runs one caption entry point on them and aborts when a result breaks an
// invariant that the caption layout relies on. They measure caption widths
// with the font-free estimate, so they need no application object and give
// the same results on every machine.

#include <cstddef>
#include <cstdint>

namespace tolvane::fuzz {

// The bytes as UTF-8 text through the SAMI parser.
void fuzzSamiParser(const std::uint8_t *data, std::size_t size);
// The bytes as UTF-8 text through the SubRip parser.
void fuzzSrtParser(const std::uint8_t *data, std::size_t size);
// The first byte picks the type ("smi" when even), the rest is the content.
void fuzzProcessingTag(const std::uint8_t *data, std::size_t size);

}  // namespace tolvane::fuzz

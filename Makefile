# The two commands a newcomer needs: `make run` and `make test`. Both install
# the Debian packages, configure and build first.
#
#   make run [FILE=path]          play FILE, or the bundled sample episodes
#   make test                     build and run every test
#   make test SANITIZE=address,undefined   (or SANITIZE=thread) in its own build tree
#   make bench                    run the benchmarks
#   make fuzz [FUZZ_SECONDS=600]  build the caption fuzz targets with clang and run each
#   make fuzz FUZZ_BUILD=throughput   the same without sanitizers, three to four times the inputs

SANITIZE ?=
BUILD_TYPE ?= RelWithDebInfo
comma := ,
BUILD_DIR ?= build$(if $(SANITIZE),-$(subst $(comma),-,$(SANITIZE)))
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test run bench fuzz format clean

all: build

deps:
	@scripts/install-deps

configure: deps
	@test -f $(BUILD_DIR)/CMakeCache.txt || cmake -S . -B $(BUILD_DIR) -G Ninja \
	    -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DTOLVANE_SANITIZE=$(SANITIZE)

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

run: build
	@scripts/run-tolvane $(BUILD_DIR) $(FILE)

bench: build
	@scripts/run-benchmarks $(BUILD_DIR)

FUZZ_SECONDS ?= 60
# Coverage counters only, no comparison tracing: for these parsers the traced
# comparisons were almost all of string indices and lengths, and cost half of
# each execution; the words they look for come from fuzz/captions.dict.
# "address" finds memory errors and undefined behaviour. "throughput" trades
# both for speed and keeps the standard library's and Qt's index assertions:
# UBSan's checks on every pointer step of the per-character loops cost a sixth
# to a third of each execution. Both fill one corpus, and the address build
# replays what the throughput build found when it starts.
FUZZ_BUILD ?= address
fuzz_builds := address throughput
fuzz_sanitize_address := address,undefined
fuzz_flags_address :=
fuzz_sanitize_throughput :=
fuzz_flags_throughput := -D_GLIBCXX_ASSERTIONS -DQT_FORCE_ASSERTS
FUZZ_DIR ?= build-fuzz$(if $(filter throughput,$(FUZZ_BUILD)),-throughput)
fuzz:
	@test -n "$(filter $(FUZZ_BUILD),$(fuzz_builds))" || { echo "FUZZ_BUILD is address or throughput" >&2; exit 2; }
	@scripts/install-deps --fuzz
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -G Ninja -Wno-dev >/dev/null \
	    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTOLVANE_BUILD_FUZZ=ON -DTOLVANE_WERROR=OFF \
	    -DTOLVANE_BUILD_TESTS=OFF -DTOLVANE_BUILD_BENCH=OFF \
	    -DTOLVANE_SANITIZE=$(fuzz_sanitize_$(FUZZ_BUILD)) \
	    "-DCMAKE_CXX_FLAGS=-fsanitize-coverage=inline-8bit-counters,pc-table $(fuzz_flags_$(FUZZ_BUILD))"
	@cmake --build $(FUZZ_DIR) -j $(JOBS) --target fuzz_sami_parser fuzz_srt_parser fuzz_processing_tag
	@FUZZ_CORPUS=build-fuzz/fuzz-corpus scripts/run-fuzzers $(FUZZ_DIR) $(FUZZ_SECONDS)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build build-*

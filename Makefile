# The two commands a newcomer needs: `make run` and `make test`. Both install
# the Debian packages, configure and build first.
#
#   make run [FILE=path]          play FILE, or the bundled sample episodes
#   make test                     build and run every test
#   make test SANITIZE=address,undefined   (or SANITIZE=thread) in its own build tree
#   make bench                    run the benchmarks

SANITIZE ?=
BUILD_TYPE ?= RelWithDebInfo
comma := ,
BUILD_DIR ?= build$(if $(SANITIZE),-$(subst $(comma),-,$(SANITIZE)))
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test run bench format clean

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

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build build-*

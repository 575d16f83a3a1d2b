# Every target does its own set-up: from a fresh Debian 12 machine to done.

BUILD := build
JOBS := $(shell nproc)
CMAKE_FLAGS := -G Ninja -DCMAKE_BUILD_TYPE=Release
SANITIZE_FLAGS := -DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1 -DNDEBUG"

.PHONY: help demo configure build test sanitize lint fuzz bench packages clean

help:
	@sed -n 's/^## //p' $(MAKEFILE_LIST)

packages:
	@tools/install_packages.sh

configure: packages
	@mkdir -p $(BUILD)
	@cmake -S . -B $(BUILD) $(CMAKE_FLAGS) >$(BUILD)/configure.log 2>&1 || { cat $(BUILD)/configure.log; exit 1; }

## make build     the program at build/vornaset
build: configure
	@cmake --build $(BUILD) -j $(JOBS) --target vornaset vornaset-barcode

## make demo      the main jobs on samples/: 100 letters, labels and cards, and where they are
demo: build
	@tools/demo.sh $(BUILD)

## make test      every test
test: configure
	@cmake --build $(BUILD) -j $(JOBS)
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

## make sanitize  every test under AddressSanitizer and UndefinedBehaviorSanitizer, those with threads under ThreadSanitizer
sanitize: packages
	@cmake -S . -B build-sanitize -G Ninja $(SANITIZE_FLAGS) -DVORNASET_SANITIZE=ON -DVORNASET_BENCH=OFF >/dev/null
	@cmake --build build-sanitize -j $(JOBS)
	@cd build-sanitize && ctest --output-on-failure -j $(JOBS)
	@cmake -S . -B build-threads -G Ninja $(SANITIZE_FLAGS) -DVORNASET_SANITIZE_THREADS=ON -DVORNASET_BENCH=OFF >/dev/null
	@cmake --build build-threads -j $(JOBS) --target pdf_tests
	@build-threads/tests/pdf_tests --gtest_brief=1

## make lint      clang-format and clang-tidy
lint:
	@tools/install_packages.sh tools/packages-lint.txt
	@tools/lint.sh

## make fuzz      each fuzz target for a minute (SECONDS_EACH=n for longer)
fuzz:
	@tools/install_packages.sh tools/packages-lint.txt
	@tools/fuzz.sh

## make bench     hot paths, and whole jobs against a base
bench: configure
	@cmake --build $(BUILD) -j $(JOBS)
	@tools/bench.sh $(BUILD)

## make clean     away with everything built
clean:
	@rm -rf build build-sanitize build-threads build-fuzz build-lint out

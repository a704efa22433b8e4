# The two everyday commands: `make run` and `make test`. Both install what is missing first.
BUILD      ?= build
ASAN_BUILD ?= build-asan
TSAN_BUILD ?= build-tsan
FUZZ_BUILD ?= build-fuzz
ARM64_BUILD ?= build-arm64
# `make package ARCH=arm64` cross-builds the packages for arm64; empty builds for this machine.
ARCH       ?=
COV_BUILD  ?= build-coverage
JOBS       ?= $(shell nproc)
ARGS       ?=
CMAKE_ARGS ?=

export QT_QUICK_BACKEND ?= software

.PHONY: all deps configure build run test test-arm64 bench sanitize tsan coverage mutate package fuzz format clean

all: build

deps:
	@bash scripts/install-deps.sh

configure: deps
	cmake -S . -B $(BUILD) -G Ninja -DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_ARGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/src/app/veltor $(ARGS)

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

bench: build
	$(BUILD)/bench/veltor-bench $(ARGS)
	$(BUILD)/bench/veltor-grid-bench $(ARGS)
	$(BUILD)/bench/veltor-map-bench $(ARGS)
	$(BUILD)/bench/veltor-basemap-bench $(ARGS)
	$(BUILD)/bench/veltor-startup-bench $(ARGS)
	$(BUILD)/bench/veltor-adif-bench $(ARGS)
	bash bench/locate-throughput.sh $(BUILD)/src/cli/veltor-locate

# AddressSanitizer and UndefinedBehaviorSanitizer over the whole test suite.
sanitize: deps
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=Debug -DVELTOR_BUILD_BENCH=OFF \
		-DVELTOR_SANITIZE="address;undefined"
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 \
		UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j $(JOBS)

# ThreadSanitizer over the whole test suite.
tsan: deps
	cmake -S . -B $(TSAN_BUILD) -G Ninja -DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=Debug -DVELTOR_BUILD_BENCH=OFF \
		-DVELTOR_SANITIZE=thread
	cmake --build $(TSAN_BUILD) -j $(JOBS)
	cd $(TSAN_BUILD) && QT_QPA_PLATFORM=offscreen TSAN_OPTIONS=halt_on_error=1 \
		ctest --output-on-failure -j $(JOBS) -E 'app_shell_tests|e2e'
# app_shell_tests and the end-to-end scenarios are left out: the app binary they start runs Qt Quick's and the QML engine's
# own threads, whose uninstrumented hand-overs ThreadSanitizer reports without end.

# Line and branch coverage of src/ by the whole suite; the HTML report is in $(COV_BUILD)/coverage/.
coverage: deps
	@bash scripts/install-deps.sh coverage
	cmake -S . -B $(COV_BUILD) -G Ninja -DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=Debug -DVELTOR_BUILD_BENCH=OFF \
		-DVELTOR_COVERAGE=ON
	cmake --build $(COV_BUILD) -j $(JOBS)
	find $(COV_BUILD) -name '*.gcda' -delete
	cd $(COV_BUILD) && QT_QPA_PLATFORM=offscreen ctest -j $(JOBS) -E qmllint
	mkdir -p $(COV_BUILD)/coverage
	gcovr --root . --object-directory $(COV_BUILD) --filter 'src/' --gcov-ignore-parse-errors \
		--html-details $(COV_BUILD)/coverage/index.html \
		--print-summary

# Flips comparisons and operators in the core one at a time and reports which the suite catches.
mutate: deps
	cmake -S . -B $(COV_BUILD) -G Ninja -DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=Debug -DVELTOR_BUILD_BENCH=OFF
	python3 tools/mutate.py --build $(COV_BUILD)

# The Debian packages veltor and veltor-locate, built from debian/ and checked by lintian; the
# .deb files land in dist/, each architecture's beside the others'. With ARCH=arm64 they are
# cross-built with Debian's multiarch tools (the arm64 libraries, the native Qt tools).
package: $(if $(ARCH),,deps)
ifeq ($(ARCH),)
	@bash scripts/install-deps.sh package
	dpkg-buildpackage -b -us -uc
else
	@bash scripts/install-deps.sh $(ARCH)-package
	dpkg-buildpackage -b -us -uc --host-arch $(ARCH) -Pcross,nocheck
endif
	mkdir -p dist
	rm -f dist/*_$(or $(ARCH),$(shell dpkg --print-architecture)).*
	mv ../veltor_*.deb ../veltor-locate_*.deb ../veltor_*.buildinfo ../veltor_*.changes dist/
	-mv ../veltor*-dbgsym_*.deb dist/ 2>/dev/null
	lintian --fail-on error,warning dist/veltor_*_$(or $(ARCH),$(shell dpkg --print-architecture)).changes

# The suites that need no display and the app's screenshot, built for arm64 and run under
# qemu-user-static (scripts/test-arm64.sh); not part of `make test`.
test-arm64: build
	@bash scripts/install-deps.sh arm64
	cmake -S . -B $(ARM64_BUILD) -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/arm64-toolchain.cmake \
		-DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELTOR_BUILD_BENCH=OFF
	cmake --build $(ARM64_BUILD) -j $(JOBS) --target formatting_tests field_tests cli_tests veltor veltor-locate
	bash scripts/test-arm64.sh $(BUILD) $(ARM64_BUILD)

# libFuzzer targets (clang); run one with e.g. build-fuzz/tools/fuzz/fuzz-locator-decoder -max_total_time=60
fuzz: deps
	CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja -DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DVELTOR_BUILD_TESTS=OFF -DVELTOR_BUILD_BENCH=OFF -DVELTOR_BUILD_FUZZ=ON
	cmake --build $(FUZZ_BUILD) -j $(JOBS) --target fuzz-targets

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD) $(COV_BUILD) $(ARM64_BUILD) dist

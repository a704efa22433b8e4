# The two everyday commands: `make run` and `make test`. Both install what is missing first.
BUILD      ?= build
ASAN_BUILD ?= build-asan
TSAN_BUILD ?= build-tsan
FUZZ_BUILD ?= build-fuzz
COV_BUILD  ?= build-coverage
JOBS       ?= $(shell nproc)
ARGS       ?=
CMAKE_ARGS ?=

export QT_QUICK_BACKEND ?= software

.PHONY: all deps configure build run test bench sanitize tsan coverage mutate package fuzz format clean

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
# .deb files land in dist/.
package: deps
	@bash scripts/install-deps.sh package
	dpkg-buildpackage -b -us -uc
	rm -rf dist && mkdir dist
	mv ../veltor_*.deb ../veltor-locate_*.deb ../veltor_*.buildinfo ../veltor_*.changes dist/
	-mv ../veltor*-dbgsym_*.deb dist/ 2>/dev/null
	lintian --fail-on error,warning dist/*.changes

# libFuzzer targets (clang); run one with e.g. build-fuzz/tools/fuzz/fuzz-locator-decoder -max_total_time=60
fuzz: deps
	CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja -DVELTOR_WERROR=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DVELTOR_BUILD_TESTS=OFF -DVELTOR_BUILD_BENCH=OFF -DVELTOR_BUILD_FUZZ=ON
	cmake --build $(FUZZ_BUILD) -j $(JOBS) --target fuzz-targets

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD) $(COV_BUILD) dist

# Thin wrapper over CMake. `make demo` and `make test` set up a fresh Debian
# machine (installing missing packages), configure, build and run.
# `make bench QT=1` also installs Qt 5, the collection benchmark's optional peer.
BUILD       ?= build
BENCH_BUILD ?= build-bench
JOBS        ?= $(shell nproc)
CMAKE_FLAGS ?=
QT          ?=

.PHONY: all deps demo test bench install clean

all: $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

deps:
	./.ci/install-deps test

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS)

demo: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS) --target tovik_demo
	./$(BUILD)/examples/tovik_demo

test: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench:
	./.ci/install-deps $(if $(QT),bench-qt,bench)
	cmake -S . -B $(BENCH_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release \
	  -DTOVIK_BUILD_BENCHMARKS=ON -DTOVIK_BUILD_TESTS=OFF $(CMAKE_FLAGS)
	cmake --build $(BENCH_BUILD) -j $(JOBS)
	for b in $(BENCH_BUILD)/bench/bench_*; do echo "== $$b"; $$b || exit 1; done

install: all
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(BENCH_BUILD)

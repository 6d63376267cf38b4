# A short front to the CMake presets. `make` leaves the program at build/bin/halyard and the library at build/lib/.
T ?= 60
PREFIX ?= /usr/local
JOBS ?= $(shell nproc)
export CMAKE_BUILD_PARALLEL_LEVEL = $(JOBS)

.PHONY: all demo test asan bench fuzz windows test-windows format docs install clean
all:
	scripts/setup build
	scripts/build release

demo: all
	scripts/demo build/demo

test:
	scripts/setup build test
	scripts/build test
	ctest --preset test -j$(JOBS)

asan:
	scripts/setup build test
	scripts/build asan
	ctest --preset asan -j$(JOBS)

bench:
	scripts/setup build test
	scripts/build release -DHALYARD_BENCH=ON
	build/bin/halyard_bench

fuzz:
	scripts/setup build fuzz
	scripts/build fuzz
	scripts/fuzz $(T)

# halyard.dll and halyard.exe at build/windows/bin/, the import library at build/windows/lib/.
windows:
	scripts/setup build windows
	scripts/build windows

test-windows:
	scripts/setup build test windows
	scripts/build test
	scripts/build windows-test
	scripts/test_windows

format:
	scripts/setup format
	git ls-files '*.h' '*.cpp' | xargs clang-format-14 -i

docs:
	scripts/setup docs
	scripts/docs build/docs

# The library and the program are built before, so that installing as root builds nothing.
install:
	cmake --install build/release --prefix "$(PREFIX)"

clean:
	rm -rf build

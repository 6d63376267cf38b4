# A short front to the CMake presets. `make` leaves the program at build/bin/halyard and the library at build/lib/.
T ?= 60
PREFIX ?= /usr/local
export CMAKE_BUILD_PARALLEL_LEVEL ?= $(shell nproc)

.PHONY: all demo test asan bench fuzz format docs install clean
all:
	scripts/setup build test
	scripts/build release

demo: all
	scripts/demo build/demo

test:
	scripts/setup build test
	scripts/build test
	ctest --preset test -j$(CMAKE_BUILD_PARALLEL_LEVEL)

asan:
	scripts/setup build test
	scripts/build asan
	ctest --preset asan -j$(CMAKE_BUILD_PARALLEL_LEVEL)

bench: all
	build/bin/halyard_bench

fuzz:
	scripts/setup build fuzz
	scripts/build fuzz
	scripts/fuzz $(T)

format:
	scripts/setup format
	git ls-files '*.h' '*.cpp' | xargs clang-format-14 -i

docs:
	scripts/setup docs
	scripts/docs build/docs

install: all
	cmake --install build/release --prefix $(PREFIX)

clean:
	rm -rf build

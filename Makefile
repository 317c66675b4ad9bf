# The commands for people. The set-up is in tools/setup, the build in CMake; this file only puts names to them.

# What `make run` gives to the program, for example: make run ARGS="verlauf --json". Without: the window, and where there
# is no display a check by the rules.
ARGS ?= $(if $(DISPLAY)$(WAYLAND_DISPLAY),,pruefen)

# The folder of tests/ that "make test" is to run alone, for example: make test ROOM=Agent
ROOM ?=

.PHONY: setup build run test lint format coverage bench soak clean help
.DEFAULT_GOAL := build

setup:
	@tools/timed "Set-up" tools/setup build

build: setup
	@tools/timed "Programs, from scratch about 3 minutes on two cores" tools/build release --target programs

run: build
	@build/release/bin/brellin $(ARGS)

test: setup
	@tools/timed "Programs and tests, from scratch about 5 minutes on two cores" \
	    tools/build release $(if $(ROOM),--target tests_$(ROOM))
	@tools/timed "Tests" \
	    ctest --preset release --parallel "$$(getconf _NPROCESSORS_ONLN)" $(if $(ROOM),--label-regex '^$(ROOM)$$')

# With SINCE=COMMIT only what changed since.
lint:
	@tools/setup build format lint
	@tools/lint $(if $(SINCE),--since $(SINCE))

coverage:
	@tools/setup build
	@tools/build coverage
	@tools/coverage

format:
	@tools/setup format
	@tools/format

bench:
	@tools/setup build bench
	@tools/build bench
	@build/bench/bin/brellin-bench
	@bench/peers.py build/bench/bin

# ARGS choose a part: make soak ARGS="--part kill --only exfat --minutes 5"
soak: ARGS =
soak:
	@tools/setup build soak
	@tools/build release --target brellin brellin-unpack
	@nice soak/soak.py build/release/bin $(ARGS)

clean:
	@rm -rf build

help:
	@echo 'make build    install what is missing and build the programs into build/release'
	@echo 'make run      build, then run it; ARGS="..." are its arguments (without: the window)'
	@echo 'make test     build, then run all tests; ROOM=... those of one folder of tests/'
	@echo 'make lint     check layout and code with clang-format and clang-tidy; SINCE=COMMIT only what changed since'
	@echo 'make format   lay the source out as clang-format wants it'
	@echo 'make coverage how much of each room the tests reach'
	@echo 'make bench    measure, also against programs of the same kind'
	@echo 'make soak     kill and disturb the program on volumes of every kind (as root, an hour); ARGS="..." choose a part'
	@echo 'make clean    remove everything that was built'

# Short commands. The set-up is in tools/setup, the build in CMake.

# Arguments of the program for `make run`, e.g. make run ARGS="verlauf --json". Default: the window or, without a display,
# a check by the rules.
ARGS ?= $(if $(DISPLAY)$(WAYLAND_DISPLAY),,pruefen)

# Limits "make test" to one folder of tests/, e.g. make test ROOM=Agent
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

# With SINCE=COMMIT checks only what changed since.
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

# ARGS selects a part: make soak ARGS="--part kill --only exfat --minutes 5"
soak: ARGS =
soak:
	@tools/setup build soak
	@tools/build release --target brellin brellin-unpack
	@nice soak/soak.py build/release/bin $(ARGS)

clean:
	@rm -rf build

help:
	@echo 'make build    install what is missing and build the programs into build/release'
	@echo 'make run      build, then run; ARGS="..." are its arguments (default: the window)'
	@echo 'make test     build, then run all tests; ROOM=... only those of one folder of tests/'
	@echo 'make lint     check layout and code with clang-format and clang-tidy; SINCE=COMMIT only what changed since'
	@echo 'make format   format the source with clang-format'
	@echo 'make coverage print the line coverage of each room'
	@echo 'make bench    run benchmarks, also against comparable programs'
	@echo 'make soak     kill and disturb the program on all kinds of volumes (as root, an hour); ARGS="..." selects a part'
	@echo 'make clean    remove everything that was built'

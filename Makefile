# SPDX-License-Identifier: MIT
# Two commands that do everything, from the system packages on:
#   make demo [IMAGE=photo.jpg]   builds qz and shows what it does, in demo/index.html
#   make test                     builds and runs all tests, then all once more under the sanitizers
JOBS ?= $(shell nproc)

.PHONY: demo test build dependencies check-format
.DEFAULT_GOAL := build

dependencies:
	scripts/install-dependencies

build: dependencies
	cmake --preset release
	cmake --build --preset release --parallel $(JOBS)

demo: build
	build/release/tools/qz/qz demo --force $(if $(IMAGE),--image "$(IMAGE)") demo

test: build
	ctest --preset release --parallel $(JOBS)
	cmake --preset asan
	cmake --build --preset asan --parallel $(JOBS)
	ctest --preset asan --parallel $(JOBS)

check-format:
	git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

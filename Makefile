# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
#
# The commands of the house; `make` alone lists them. Every command first installs what it needs and lacks
# (tools/setup.sh) and builds below build/.

.DEFAULT_GOAL := help
MAKEFLAGS += --no-print-directory
SHELL := /bin/bash
.SHELLFLAGS := -eu -o pipefail -c

ROWS ?= .
SECONDS_EACH := $(if $(filter command line environment,$(origin SECONDS)),$(SECONDS),60)
FUZZ ?=
GOAL ?= all
CELLS ?= .

.PHONY: help demo test bench fuzz test-builds test-tsan coverage docs package format setup clean

help: ## List the commands
	@sed -nE 's/^([a-z-]+):.*## (.*)$$/  make \1|\2/p' $(MAKEFILE_LIST) | awk -F'|' '{ printf "%-18s %s\n", $$1, $$2 }'

demo: ## Build the map report and draw maps from the data of the repository
	@tools/setup.sh demo
	@tools/demo.sh

test: ## Build for Linux (ASan, UBSan) and Windows, run both test suites and the checks
	@tools/setup.sh test
	@tools/test.sh

bench: ## Time the hot paths beside their peers: ROWS=regex for some of them
	@tools/setup.sh bench
	@tools/bench.sh '$(ROWS)'

fuzz: ## Fuzz every target: SECONDS=60 for the time of each, FUZZ=name for one
	@tools/setup.sh fuzz
	@tools/fuzz.sh '$(SECONDS_EACH)' '$(FUZZ)'

test-builds: ## Build without presets by two compilers, as C++20 and 23, in all types: CELLS=static for some
	@tools/setup.sh builds
	@tools/test_builds.sh '$(CELLS)'

test-tsan: ## Run the tests under ThreadSanitizer (clang)
	@tools/setup.sh tsan
	@cmake --preset linux-tsan
	@cmake --build --preset linux-tsan
	@ctest --preset linux-tsan

coverage: ## Measure line and branch coverage of shared/, with pages in build/coverage/report
	@tools/setup.sh coverage
	@tools/coverage.sh

docs: ## Make the reference pages in build/docs/html; a warning is an error
	@tools/setup.sh docs
	@mkdir -p build/docs
	@doxygen docs/Doxyfile
	@echo build/docs/html/index.html

package: ## Make the ZIP for Windows and the TGZ and DEB for Linux in build/package
	@tools/setup.sh package
	@tools/package.sh

format: ## Format all sources
	@tools/setup.sh format
	@tools/list_sources.sh | xargs -0 clang-format -i

setup: ## Install the Debian packages for all commands: GOAL=test for those of one
	@tools/setup.sh $(GOAL)

clean: ## Remove everything that was built
	@rm -rf build

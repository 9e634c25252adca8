# The front door: every target works from a machine that has only git, make and a shell, and is quick
# when nothing changed. CMake and its presets do the work; see CMakePresets.json.

PREFIX ?= /usr/local
SAMPLES ?= 64
program := build/release/bin/nezaiva
sources := git ls-files '*.cpp' '*.h'

.PHONY: help render gallery build everything test install bench debug asan tsan clang format format-check lint packages \
        lint-packages clean

help:
	@echo "make render         build, and render examples/first_light.json into out/ (SAMPLES=$(SAMPLES) a pixel)"
	@echo "make gallery        build, and render every example into out/gallery/"
	@echo "make test           build and run all tests"
	@echo "make build          build the program, the host library and the plug-in library"
	@echo "make install        install under PREFIX (now $(PREFIX))"
	@echo "make bench          measure the kernels"
	@echo "make debug          build and test without optimisation"
	@echo "make asan           build and test with the address and undefined-behaviour sanitizers"
	@echo "make tsan           build and test with the thread sanitizer"
	@echo "make clang          read everything with clang++, for its warnings"
	@echo "make format         format all sources; format-check tells what it would change"
	@echo "make lint           format-check, then clang-tidy over src, host and apps"
	@echo "make clean          remove build/ and out/"

packages:
	@tools/install_packages.sh

lint-packages:
	@tools/install_packages.sh lint

build/%/build.ninja: | packages
	cmake --preset $*

build: packages build/release/build.ninja
	@cmake --build --preset release --target nezaiva nezaiva_module

everything: packages build/release/build.ninja
	@cmake --build --preset release

render: build
	@mkdir -p out
	$(program) render examples/first_light.json --samples $(SAMPLES) -o out/first_light.exr -o out/first_light.png
	@echo "The picture: out/first_light.png, and with all its range: out/first_light.exr"

gallery: build
	@mkdir -p out/gallery
	@for scene in examples/*.json; do \
		picture=out/gallery/$$(basename "$$scene" .json).png; \
		$(program) render "$$scene" -o "$$picture" --quiet || exit 1; \
		echo "$$picture"; \
	done

test: everything
	@ctest --preset release --parallel "$$(nproc)"

install: build
	cmake --install build/release --prefix "$(PREFIX)"

bench: everything
	@for program in build/release/bin/bench_*; do "$$program" || exit 1; done

debug asan tsan: packages
	@[ -f build/$@/build.ninja ] || cmake --preset $@
	@cmake --build --preset $@
	@ctest --preset $@ --parallel "$$(nproc)"

clang: lint-packages
	@[ -f build/clang/build.ninja ] || cmake --preset clang
	@cmake --build --preset clang

format: lint-packages
	@$(sources) | xargs clang-format -i

format-check: lint-packages
	@$(sources) | xargs clang-format --dry-run --Werror

# clang-tidy understands the command lines of clang++.
lint: format-check build/clang/build.ninja
	@git ls-files 'src/*.cpp' 'host/*.cpp' 'apps/*.cpp' | \
		xargs -P "$$(nproc)" -n 1 clang-tidy -p build/clang --quiet

clean:
	rm -rf build out

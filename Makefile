# A thin front over the CMake presets. `make help` lists what there is.
.DEFAULT_GOAL := help
.PHONY: help demo test test-engines bench bench-engine bench-figures bench-python asan-python soak-python \
  fuzz portability activex activex-python docs pictures wheel lint format packages elsewhere windows

SOURCES = git ls-files '*.h' '*.cpp'
LINTED = $(if $(FILES),echo $(FILES),git ls-files 'discoplan/*.cpp' 'hosts/*.cpp' 'apps/*.cpp')

help: ## Show this list
	@grep -E '^[a-z-]+:.*##' $(MAKEFILE_LIST) | sed -E 's/^([a-z-]+):.*## /  make \1\t/' | expand -t 24

packages: ## Install the Debian packages that are missing
	@scripts/install-packages

windows: packages
	@scripts/install-packages windows

elsewhere: packages
	@scripts/install-packages elsewhere

demo: packages ## Build, and plot the measured wafers of examples/ into out/
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-program -- --quiet
	@scripts/demo build/release/apps/discoplan/discoplan out

test: windows ## Build, and run every test
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release -- --quiet
	@ctest --preset release -j $$(nproc)

bench: packages ## Build, and run the benchmarks
	@cmake --preset bench --log-level=WARNING > /dev/null
	@cmake --build --preset bench --target discoplan-bench -- --quiet
	@bench/ratios build/bench/bench/discoplan-bench
	@cmake --build --preset bench --target discoplan-program -- --quiet
	@bench/whole_process build/bench/apps/discoplan/discoplan

bench-python: packages ## Compare the Python package with numpy, scipy and matplotlib
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-python-package -- --quiet
	@tests/python/environment python3 build/python-tests tests/python/requirements.txt
	@PYTHONPATH=build/release/python build/python-tests/bin/python bench/python/bench.py

asan-python: packages ## Test the Python package under AddressSanitizer
	@cmake -S . -B build/asan-python -G Ninja -D CMAKE_BUILD_TYPE=Release -D BUILD_SHARED_LIBS=OFF \
	  -D CMAKE_CXX_FLAGS_RELEASE='-O1 -g1 -fno-omit-frame-pointer' -D CMAKE_CXX_FLAGS=-fsanitize=address \
	  -D DISCOPLAN_QT=OFF -D DISCOPLAN_TESTS=OFF -D DISCOPLAN_INSTALL=OFF --log-level=WARNING > /dev/null
	@cmake --build build/asan-python --target discoplan-python-package -- --quiet
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-program -- --quiet
	@tests/python/asan python3 build/asan-python/python $(CURDIR) build/release/apps/discoplan/discoplan

soak-python: packages ## Draw a million plots in Python, and see that memory doesn't grow, or COUNT=1000 fewer
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-python-package -- --quiet
	@PYTHONPATH=build/release/python PYTHONDONTWRITEBYTECODE=1 python3 tests/python/soak.py $(COUNT)

bench-figures: packages ## Build, and compare pictures with those of matplotlib and gnuplot
	@cmake --preset bench --log-level=WARNING > /dev/null
	@cmake --build --preset bench --target discoplan-program -- --quiet
	@bench/figures build/bench/apps/discoplan/discoplan

test-engines: packages ## Test the Python package on Spark, Dask and Ray, whose workers are killed
	@scripts/install-packages engines
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-python-package -- --quiet
	@tests/python/environment python3 build/engine-tests tests/engines/requirements.txt
	@PYTHONPATH=$(CURDIR)/build/release/python PYTHONDONTWRITEBYTECODE=1 build/engine-tests/bin/python -m pytest -q \
	  -p no:cacheprovider tests/engines

bench-engine: packages ## Compare the package on Spark with the engine alone and pandas, or SHORT=1 less
	@scripts/install-packages engines
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-python-package -- --quiet
	@tests/python/environment python3 build/engine-tests tests/engines/requirements.txt
	@PYTHONPATH=$(CURDIR)/build/release/python build/engine-tests/bin/python bench/engine/bench.py \
	  $(if $(SHORT),--short,--results bench/engine/results.json)
	@[ -n "$(SHORT)" ] || python3 bench/engine/report.py bench/engine/results.json docs/fab_archive_costs.md

portability: elsewhere ## Compare many sessions by Wine and Node with this machine's own, or SHORT=1 few
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-program discoplan-c -- --quiet
	@for preset in windows-x64 $(if $(SHORT),,windows-x86 linux-x86) wasm; do tests/portability/check $$preset \
	  build/release/apps/discoplan/discoplan $(CURDIR) $(if $(SHORT),2,36) || [ $$? = 77 ] || exit 1; done
	@[ -n "$(SHORT)" ] || tests/portability/libraries build/release $(CURDIR) || [ $$? = 77 ]
	@[ -n "$(SHORT)" ] || tests/bindings/windows build/release/bindings/c/libdiscoplan-c.so $(CURDIR) || [ $$? = 77 ]

activex: elsewhere ## Test the ActiveX server in Wine, and build that of 32 bits unless SHORT=1
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-program -- --quiet
	@tests/activex/check build/release/apps/discoplan/discoplan $(CURDIR) || [ $$? = 77 ]
	@[ -n "$(SHORT)" ] || { cmake --preset windows-x86 --log-level=WARNING > /dev/null && \
	  cmake --build --preset windows-x86 --target discoplan-activex-package -- --quiet && \
	  tests/activex/exports build/windows-x86/hosts/activex/discoplan.ocx; }

activex-python: packages ## Use the ActiveX server from Windows' own Python in Wine, once it is fetched
	@scripts/install-packages clients
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-program -- --quiet
	@tests/activex/python build/release/apps/discoplan/discoplan $(CURDIR) || [ $$? = 77 ]

fuzz: packages ## Feed each reader with damaged files for five minutes, by clang
	@cmake -S . -B build/fuzz -G Ninja -D CMAKE_CXX_COMPILER=clang++-14 -D DISCOPLAN_FUZZ=ON \
	  -D DISCOPLAN_QT=OFF -D DISCOPLAN_TESTS=OFF --log-level=WARNING > /dev/null
	@cmake --build build/fuzz --target discoplan-fuzz -- --quiet
	@for reader in table lot_export klarf binary condition; do mkdir -p build/fuzz/found/$$reader; \
	  build/fuzz/fuzz/discoplan-$$reader-fuzz -max_total_time=300 -max_len=4096 \
	    build/fuzz/found/$$reader fuzz/corpus/$$reader || exit 1; done

docs: packages ## Write the page of the controls' members in docs/ anew
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target discoplan-members -- --quiet
	@build/release/docs/discoplan-members > build/members.md
	@mv build/members.md docs/members.md

pictures: packages ## Take the pictures in docs/ anew
	@cmake --preset release --log-level=WARNING > /dev/null
	@cmake --build --preset release --target all discoplan-pictures -- --quiet
	@scripts/pictures build/release

wheel: packages ## Build the Python wheel, and try it in each Python of this machine
	@scripts/wheel

lint: packages ## Look for mistakes by clang-tidy-14, in all sources or in FILES="A.cpp B.cpp"
	@command -v clang-tidy-14 > /dev/null || { echo 'Install clang-tidy-14 first.'; exit 1; }
	@cmake --preset release --log-level=WARNING -D CMAKE_EXPORT_COMPILE_COMMANDS=ON > /dev/null
	@cmake --build --preset release -- --quiet
	@$(LINTED) | xargs -n 1 -P $$(nproc) clang-tidy-14 -p build/release --quiet

format: packages ## Format all sources
	@$(SOURCES) | xargs clang-format-14 -i

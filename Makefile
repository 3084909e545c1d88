# make run: install what is missing, build, start Ormivane (windows with a display, else headless).
# make test: install what is missing, build, run every test.
BUILD ?= build
JOBS ?= $(shell nproc)
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
PACKAGES := cmake ninja-build g++ pkg-config qt6-base-dev libgtest-dev libnl-genl-3-dev iproute2 procps \
            xvfb openbox trayer xdotool x11-utils \
            qt6-multimedia-dev dbus python3-aiosmtpd python3-dbusmock locales-all \
            cups-client poppler-utils cups printer-driver-cups-pdf
# Transfers: the speed test endpoint (Qt's HTTP server, whose CMake package wants
# WebSockets); the tests' and bench's local servers, certificate and curl.
PACKAGES += qt6-httpserver-dev qt6-websockets-dev python3 openssl curl
# The metrics endpoint, on the same HTTP server: its tests check the text with
# promtool and run a real Prometheus.
PACKAGES += prometheus

.PHONY: all deps build run test bench clean

all: build

deps:
	@missing=""; for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q 'ok installed' || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  $(SUDO) apt-get update -qq && DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y -qq $$missing; \
	fi

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

run: build
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then ./$(BUILD)/ormivane; else ./$(BUILD)/ormivane --headless; fi

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	./$(BUILD)/bench/tick_bench
	./$(BUILD)/bench/alert_bench
	./$(BUILD)/bench/log_bench
	./$(BUILD)/bench/display_bench
	./$(BUILD)/bench/overhead
	./$(BUILD)/bench/overhead --desktop
	./$(BUILD)/bench/transfer_bench
	./$(BUILD)/bench/metrics_bench

clean:
	rm -rf $(BUILD)

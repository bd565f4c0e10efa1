# The Debian packages that Hornbeam needs, and the one function that installs what is missing.

build_packages=(cmake ninja-build g++ pkg-config protobuf-compiler libprotobuf-dev libboost-dev libicu-dev
  libpugixml-dev libzip-dev libsqlite3-dev libfreetype-dev libfontconfig-dev uuid-dev libyajl-dev zlib1g-dev
  libcli11-dev libssl-dev libgtest-dev libgmock-dev)
run_packages=(fontconfig fonts-dejavu-core)
test_packages=(python3 fonts-urw-base35 poppler-utils qpdf ghostscript librsvg2-bin)
bench_packages=(libbenchmark-dev mupdf-tools)
lint_packages=(clang-14 clang-format clang-tidy)
fuzz_packages=(clang-14 libclang-rt-14-dev)

# as_root COMMAND...: through sudo when not root.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

refresh_package_lists() { as_root apt-get update -qq; }

# need_packages NAME...: says what is missing and installs it, through sudo when not root.
need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null | grep -qx installed || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Missing packages: ${missing[*]}" >&2
  if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
    echo "Install them as root, then try again." >&2
    return 1
  fi
  echo "Installing them ..." >&2
  {
    refresh_package_lists &&
      as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
  } >"$build/packages.log" 2>&1 || { tail -n 20 "$build/packages.log" >&2; return 1; }
}

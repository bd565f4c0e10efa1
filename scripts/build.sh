# Configuring and building, quietly: the log is shown only when something fails.

# build_in FOLDER TARGET... -- CMAKE-OPTION...
build_in() {
  local folder=$1 targets=() started=$SECONDS
  shift
  while [ $# -gt 0 ] && [ "$1" != -- ]; do targets+=("$1"); shift; done
  [ $# -gt 0 ] && shift
  mkdir -p "$folder"
  if [ ! -f "$folder/build.ninja" ]; then
    cmake -S "$source" -B "$folder" -G Ninja "$@" >"$folder/configure.log" 2>&1 ||
      { tail -n 40 "$folder/configure.log" >&2; return 1; }
  fi
  [ -t 2 ] && echo "Building in ${folder#"$source"/} ..." >&2
  ninja -C "$folder" "${targets[@]}" >"$folder/build.log" 2>&1 ||
    { grep -A12 -E 'error|FAILED' "$folder/build.log" | head -n 60 >&2; return 1; }
  [ $((SECONDS - started)) -gt 5 ] && echo "Built in $((SECONDS - started)) s." >&2
  return 0
}

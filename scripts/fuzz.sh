# Running the fuzz targets of build/fuzz.

# fuzz_one TARGET SECONDS: what it learns is kept in build/fuzz/learned, what it finds in build/fuzz/finds.
fuzz_one() {
  local target=$1 learned=$build/fuzz/learned/$1 finds=$build/fuzz/finds/$1 options=()
  mkdir -p "$learned" "$finds" "$source/fuzz/corpus/$target"
  [ -f "$source/fuzz/dictionaries/$target.dict" ] && options+=("-dict=$source/fuzz/dictionaries/$target.dict")
  if "$build/fuzz/fuzz/$target" -max_total_time="$2" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$finds/" "${options[@]}" "$learned" "$source/fuzz/corpus/$target" \
    >"$build/fuzz/$target.log" 2>&1; then
    printf '%-20s clean after %s runs\n' "$target" "$(sed -n 's/^stat::number_of_executed_units: //p' "$build/fuzz/$target.log")"
  else
    printf '%-20s FOUND SOMETHING, see build/fuzz/%s.log and build/fuzz/finds/%s:\n' "$target" "$target" "$target"
    grep -m 5 -E 'Broken promise|ERROR: |runtime error' "$build/fuzz/$target.log"
    return 1
  fi
}

# run_fuzz_targets SECONDS: all of them, as many at once as there are processors. Fails on any find.
run_fuzz_targets() {
  local seconds=$1 status=0 running=0 program
  export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:allocator_may_return_null=1 \
    UBSAN_OPTIONS=print_stacktrace=1
  for program in "$build"/fuzz/fuzz/Fuzz*; do
    [ -x "$program" ] && [ -f "$program" ] || continue
    if [ "$running" -ge "$(nproc)" ]; then
      wait -n || status=1
      running=$((running - 1))
    fi
    fuzz_one "$(basename "$program")" "$seconds" &
    running=$((running + 1))
  done
  while [ "$running" -gt 0 ]; do
    wait -n || status=1
    running=$((running - 1))
  done
  return "$status"
}

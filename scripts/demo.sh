# The main job, shown step by step on one document.

demo_fonts=(fonts-ebgaramond fonts-lato fonts-cabin)

# Unpacks the demonstration's fonts below build/, without installing them: nothing outside sees them.
fetch_demo_fonts() {
  local folder=$1 name
  mkdir -p "$folder"
  for name in "${demo_fonts[@]}"; do
    [ -d "$folder/$name" ] && continue
    echo "Fetching the fonts of $name ..." >&2
    (
      cd "$folder"
      apt-get download "$name" >>"$build/packages.log" 2>&1 || { refresh_package_lists && apt-get download "$name"; } \
        >>"$build/packages.log" 2>&1
    ) || { echo "$name can't be fetched; see build/packages.log." >&2; return 1; }
    dpkg -x "$folder/$name"_*.deb "$folder/$name.partial"
    mv "$folder/$name.partial" "$folder/$name"
    rm -f "$folder/$name"_*.deb
  done
}

# heading TEXT COMMAND...: the text, then what the command prints, indented.
heading() {
  printf '\n%s\n' "$1"
  shift
  "$@" | sed 's/^/    /'
}

# What fc-list shows; the one family that this home has without Kiln is only counted.
show_fc_list() {
  fc-list : family style | sort | grep -v '^DejaVu' || true
  echo "(and $(fc-list : family style | grep -c '^DejaVu') fonts of the system's DejaVu)"
}

demo() {
  local document=$1 log=$build/home/open.log fifo=$build/home/open.fifo fonts=$build/demo-fonts pid
  fetch_demo_fonts "$fonts"

  heading 'The library is filled with fonts that this home does not show:' \
    "$hornbeam" library add "$fonts"
  heading 'fc-list before:' show_fc_list

  rm -f "$fifo"
  mkfifo "$fifo"
  "$hornbeam" open --give-back --wait "$document" <"$fifo" >"$log" &
  pid=$!
  exec 9>"$fifo"
  while kill -0 "$pid" 2>/dev/null && ! grep -q 'host' "$log"; do sleep 0.05; done
  heading 'The document is opened:' cat "$log"
  heading 'fc-list while it is open:' show_fc_list

  local shown
  shown=$(wc -l <"$log")
  exec 9>&-
  wait "$pid"
  rm -f "$fifo"
  heading 'The document is closed:' tail -n "+$((shown + 1))" "$log"
  heading 'fc-list after:' show_fc_list
  heading 'The font manager:' "$hornbeam" status
}

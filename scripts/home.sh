# A private home below build/: nothing of the user's own fonts, settings or font manager is touched.

# private_home FOLDER STAGE: makes the home and turns this shell towards it.
private_home() {
  local home=$1 stage=$2
  mkdir -p "$home"/{data/fonts,data/Talworth,config,cache,state,run}
  chmod 700 "$home/run"
  export XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache" \
    XDG_STATE_HOME="$home/state" XDG_RUNTIME_DIR="$home/run" FONTCONFIG_FILE="$home/fonts.conf"
  # What programs in this home see: one family of the system's and what Kiln activates. The folder is named in
  # full, since prefix="xdg" would also take in those of XDG_DATA_DIRS.
  cat >"$home/fonts.conf" <<END
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts/truetype/dejavu</dir>
  <dir>$home/data/fonts</dir>
  <cachedir prefix="xdg">fontconfig</cachedir>
</fontconfig>
END
  cat >"$home/data/Talworth/com.talworth.Kiln-LaunchInfo.conf" <<END
kiln.path = $stage/lib/hornbeam/Kiln/Kiln
kiln.args = --exit-when-idle=60
END
}

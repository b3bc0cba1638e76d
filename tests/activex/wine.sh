# Sourced by what runs the ActiveX server, with $program and $source set: what that needs, how it is
# built, and a Wine of its own in the folder $work.
export PYTHONDONTWRITEBYTECODE=1
PATH=$PATH:/usr/lib/wine

skip() { echo "skipped: $1"; exit 77; }
needs() {
  local needed
  for needed; do command -v "$needed" > /dev/null || skip "$needed is missing"; done
}
needs x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-widl wine64 python3

server=$source/build/windows-x64/hosts/activex/discoplan.ocx
build() {
  # What writes its sources is built where the program was.
  local native=${program%/apps/*}
  [ -f "$native/CMakeCache.txt" ] || native=
  cd "$source"
  cmake --preset windows-x64 -D DISCOPLAN_NATIVE="$native" --log-level=WARNING > /dev/null 2>&1
  cmake --build --preset windows-x64 --target "$@" -- --quiet
}

new_wine() {
  work=$(mktemp -d)
  trap 'wineserver -k 2> /dev/null || true; rm -rf "$work"' EXIT
  export WINEPREFIX=$work/prefix WINEDEBUG=-all WINEDLLOVERRIDES=winedbg.exe=d
  unset DISPLAY
  wine64 wineboot -i > /dev/null 2>&1
  # No window manager is here to wait for.
  wine64 reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f > /dev/null 2>&1
}

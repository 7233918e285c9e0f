#!/bin/sh
# Runs one Windows program under Wine in a prefix of the library's own (CMAKE_CROSSCOMPILING_EMULATOR):
#
#   wine-run.sh PROGRAM.exe ARGUMENT...
#   wine-run.sh                            only makes the prefix ready
#
# The prefix is $WINEPREFIX, else shared-wine in the user's cache folder, else, where no such folder can be written, in
# the folder of temporary files. It is made once, under a lock, so that parallel tests may start at the same time; an
# older one is brought up to date there when another version of Wine comes to it; one left half made is made again. One
# wineserver stays alive between programs. A program writes to a file instead of the caller's pipe: Wine's service
# processes inherit the output of whichever program started them and would keep ctest waiting.

# is_own FOLDER: whether a folder is the user's own (Wine takes no other) and can be written; it is made if need be.
is_own() { mkdir -p "$1" 2>/dev/null && [ -O "$1" ] && [ -w "$1" ]; }

chosen=${WINEPREFIX-}
if [ -z "$chosen" ]; then
  cache=${XDG_CACHE_HOME:-${HOME:+$HOME/.cache}}
  WINEPREFIX=$cache/shared-wine
  if [ -z "$cache" ] || ! is_own "$WINEPREFIX"; then
    WINEPREFIX=${TMPDIR:-/tmp}/shared-wine-$(id -u)
  fi
fi
if ! is_own "$WINEPREFIX"; then
  echo "wine-run.sh: the Wine prefix $WINEPREFIX cannot be written or belongs to somebody else" >&2
  exit 125
fi
export WINEPREFIX
# Programs find their own folders below the home folder.
if [ -z "${HOME-}" ] || [ ! -d "$HOME" ]; then
  export HOME="$WINEPREFIX"
fi
export WINEDEBUG="${WINEDEBUG--all}"
export LC_ALL=C.UTF-8 # in the plain C locale Wine cannot create non-ASCII file names
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES-mscoree=;mshtml=}"
if [ -z "${WINEPATH-}" ]; then # where the compiler keeps its runtime DLLs
  for folder in /usr/x86_64-w64-mingw32/lib /usr/lib/gcc/x86_64-w64-mingw32/*-posix; do
    WINEPATH="Z:$(printf %s "$folder" | tr / '\\');${WINEPATH-}"
  done
fi
export WINEPATH
unset DISPLAY

# make_prefix: sets up a Windows, or has the one that is there brought up to date by the first program that runs in it.
# No debugger: a crash ends at once with its status.
make_prefix() {
  if [ ! -f "$WINEPREFIX/.update-timestamp" ]; then
    timeout 600 wineboot -i && timeout 120 wineserver -w || return
  fi
  timeout 600 wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d '' /f
}

remove_prefix() {
  wineserver -k
  [ -z "$chosen" ] && rm -rf "$WINEPREFIX/drive_c" "$WINEPREFIX/dosdevices" "$WINEPREFIX"/*.reg \
    "$WINEPREFIX/.update-timestamp"
}

make_ready() {
  # A prefix is ready for one Wine: with another each program would set out to update it, all at once.
  version=$(stat -L -c %Y "$(command -v wineserver)")
  [ "$(cat "$WINEPREFIX/.ready" 2>/dev/null)" = "$version" ] && return
  make_prefix || { remove_prefix && make_prefix; } || return
  echo "$version" >"$WINEPREFIX/.ready"
}

(
  flock 9 || exit
  # Descriptor 9 must not reach wineserver, which would keep the lock while it lives.
  if ! make_ready </dev/null >"$WINEPREFIX.log" 2>&1 9>&-; then
    echo "wine-run.sh: Wine could not set up $WINEPREFIX; see $WINEPREFIX.log" >&2
    exit 1
  fi
  wineserver "-p${WINE_LINGER:-60}" </dev/null >/dev/null 2>&1 9>&- # exit status 2 when one is running already
  exit 0
) 9>"$WINEPREFIX.lock" || exit 125
[ $# -gt 0 ] || exit 0
out=$(mktemp) || exit 125
trap 'rm -f "$out"' EXIT
wine "$@" >"$out" 2>&1 </dev/null
status=$?
cat "$out"
exit $status

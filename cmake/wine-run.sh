#!/bin/sh
# Runs one Windows program under Wine in a prefix of the library's own (CMAKE_CROSSCOMPILING_EMULATOR).
#
# The prefix is made once, under a lock, so that parallel tests may start at the same time. One wineserver
# stays alive between programs. A program writes to a file instead of the caller's pipe: Wine's service
# processes inherit the output of whichever program started them and would keep ctest waiting.
: "${WINEPREFIX:=${XDG_CACHE_HOME:-$HOME/.cache}/shared-wine}"
export WINEPREFIX
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
mkdir -p "$WINEPREFIX"
(
  flock 9
  exec </dev/null >/dev/null 2>&1
  # Descriptor 9 must not reach wineserver, which would keep the lock while it lives.
  if [ ! -f "$WINEPREFIX/.ready" ]; then
    wineboot -i 9>&- && wineserver -w 9>&- &&
      wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d '' /f 9>&- &&
      wineserver -w 9>&- && touch "$WINEPREFIX/.ready"
  fi
  wineserver "-p${WINE_LINGER:-60}" 9>&- # exit status 2 when one is running already
) 9>"$WINEPREFIX.lock"
out=$(mktemp) || exit 125
trap 'rm -f "$out"' EXIT
wine "$@" >"$out" 2>&1 </dev/null
status=$?
cat "$out"
exit $status

#!/bin/sh
# Starts the program where nothing is but what its package depends on: a bus, the audio daemon and no screen. Ends with 0
# once it has drawn its first window; what it said is the output.
set -eu

if [ "${1-}" != --on-the-bus ]; then
  for folder in home run; do
    mkdir -p "/tmp/bare/$folder"
    chmod 700 "/tmp/bare/$folder"
  done
  export HOME=/tmp/bare/home XDG_RUNTIME_DIR=/tmp/bare/run LANG=C.UTF-8
  exec dbus-run-session -- sh "$0" --on-the-bus
fi

# wait_for SECONDS COMMAND...
wait_for() {
  rounds=$(($1 * 20))
  shift
  while ! "$@" > /dev/null 2>&1; do
    rounds=$((rounds - 1))
    [ "$rounds" -gt 0 ] || return 1
    sleep 0.05
  done
}
said() { grep -q "$1" /tmp/bare/said; }

started=
# shellcheck disable=SC2086 # one word a process
trap 'kill $started 2> /dev/null || true; wait' EXIT
pipewire > /tmp/bare/pipewire.log 2>&1 &
started=$!
wait_for 20 test -S "$XDG_RUNTIME_DIR/pipewire-0"
wireplumber > /tmp/bare/wireplumber.log 2>&1 &
started="$started $!"
: > /tmp/bare/said
QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software QT_FORCE_STDERR_LOGGING=1 \
  QT_LOGGING_RULES='app.quillmere.frames.debug=true' quillmere > /tmp/bare/said 2>&1 &
program=$!
started="$started $program"
code=0
wait_for 60 said 'frame [0-9]* us' || { echo "nothing was drawn"; code=1; }
kill "$program" || echo "the program had gone before that"
wait "$program" || { echo "the program ended with code $?"; code=1; }
cat /tmp/bare/said
exit $code

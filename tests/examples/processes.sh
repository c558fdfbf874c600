# shellcheck shell=bash
# What the tests of this folder share: a folder of their own, processes that are ended by their own ids whatever happens, and
# how a test fails. DEMO_BUILD_DIR names the build folder.
build_dir=$(cd "${DEMO_BUILD_DIR:?says where the programs are}" && pwd)
server_program=$build_dir/bin/holdem-server
client_program=$build_dir/bin/holdem-client
folder=$(mktemp -d)
declare -A running # by process id
end_by=KILL        # a demo, asked by TERM, ends its own processes

tidy_up() {
  trap - EXIT INT TERM
  local process
  for process in "${!running[@]}"; do kill "-$end_by" "$process" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$folder"
}
trap tidy_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

failed() { # what, files that tell more
  local file
  [ $# -gt 1 ] || set -- "$1" "$folder"/*.log "$folder/errors"
  for file in "${@:2}"; do
    if [ -s "$file" ]; then tail -n 40 "$file" | sed "s/^/  ${file##*/}: /" >&2; fi
  done
  echo "${0##*/}: FAILED: $1"
  exit 1
}
finish() { # process, the status that it should have (or any), who, files; its status is then in $status
  status=0
  wait "$1" 2>/dev/null || status=$? # what the shell says about a killed one is no news
  unset "running[$1]"
  [ $# -eq 1 ] || [ "$status" -eq "$2" ] || failed "$3 ended with status $status" "${@:4}"
}
await() { # command: until it succeeds, or for a minute
  local tries
  for ((tries = 0; tries < 1200; tries++)); do
    "$@" 2>/dev/null && return
    sleep 0.05
  done
  return 1
}
has_ended() { ! kill -0 "$1" 2>/dev/null; } # process

# --- Demos

start_demo() { # name, the demo, options
  DEMO_BUILD_DIR=${demo_build_dir:-$build_dir} "$(dirname "$0")/../../examples/holdem/$2" "${@:3}" >"$folder/$1.txt" \
    2>"$folder/$1.errors" </dev/null &
  demo_process=$!
  running[$demo_process]=1
}
demo_failed() { failed "$1: $2" "$folder/$1.txt" "$folder/$1.errors"; } # name, what
expect_end() { # name, status, pattern of the last line
  local last
  finish "$demo_process"
  last=$(tail -n 1 "$folder/$1.txt")
  [ "$status" -eq "$2" ] || demo_failed "$1" "status $status and not $2"
  [[ $last =~ ^$3 ]] || demo_failed "$1" "the last line is: $last"
}
# In place of the programs, demos run scripts that turn into them; so we know their processes. Later options win.
spoil() { # server or client, options
  demo_build_dir=$folder/spoilt
  mkdir -p "$demo_build_dir/bin"
  printf '#!/usr/bin/env bash\necho $$ >%q\nexec %q "$@" %s\n' "$folder/$1.process" "$build_dir/bin/holdem-$1" "$2" \
    >"$demo_build_dir/bin/holdem-$1"
  chmod +x "$demo_build_dir/bin/holdem-$1"
}
kill_server() { # name of the demo: its own child, which nobody else can be before the demo has waited for its end
  kill -KILL "$(cat "$folder/server.process")" || demo_failed "$1" "it has no server any more"
}

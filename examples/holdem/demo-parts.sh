# shellcheck shell=bash
# What the demos have in common: the server and the bots, each a process of its own; their end; and what is told of the server's
# log. Each demo sources this file, and has a usage() and its options in variables: color, game, keep_logs, pace, seed.
# shellcheck disable=SC2154 # those are assigned there

mistake() {
  echo "demo: $1" >&2
  usage >&2
  exit 2
}
check_common_options() {
  [[ $game =~ ^(no-limit|fixed-limit)$ ]] || mistake "--game wants no-limit or fixed-limit"
  [[ $pace =~ ^[0-9]{1,2}(\.[0-9]+)?$ ]] || mistake "--pace wants a number of seconds, 0 to 99"
  [[ $seed =~ ^[0-9]{1,9}$ ]] || mistake "--seed wants a number"
}

heading() { printf '\n%s%s%s\n' "$bold" "$1" "$plain"; }

# --- Processes. Every one is ended by its own id, whatever happens

declare -A running   # by process id
declare -A status_of # of those that have ended
declare -A name_of   # of all but the server
bot_processes=()

tidy_up() {
  trap - EXIT INT TERM
  local process
  for process in "${!running[@]}"; do kill -KILL "$process" 2>/dev/null || true; done
  wait 2>/dev/null || true
  if [ -n "$keep_logs" ]; then
    mkdir -p "$keep_logs"
    cp "$folder"/*.log "$keep_logs"/ 2>/dev/null || true
  fi
  rm -rf "$folder"
}
# Programs, colours, and a folder for the evening, with a password in it.
set_up() {
  local build_dir=${DEMO_BUILD_DIR:?says where the programs are; scripts/demo sets it} program
  server_program=$build_dir/bin/holdem-server
  client_program=$build_dir/bin/holdem-client
  for program in "$server_program" "$client_program"; do
    [ -x "$program" ] || { echo "demo: there is no $program" >&2; exit 1; }
  done

  bold='' faint='' good='' bad='' yellow='' plain=''
  if [ "$color" = always ] || { [ -t 1 ] && [ -z "${NO_COLOR:-}" ] && [ "${TERM:-}" != dumb ]; }; then
    color=always
    bold=$'\e[1m' faint=$'\e[2m' good=$'\e[32m' bad=$'\e[1;31m' yellow=$'\e[33m' plain=$'\e[0m'
  fi
  if [ "$color" = auto ]; then color=never; fi

  folder=$(mktemp -d)
  trap tidy_up EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  # Nobody else can know the password of this one evening; all of us have it.
  password=$folder/password
  (umask 077 && od -An -N16 -tx1 /dev/urandom | tr -d ' \n' >"$password")
}

finish() { # process; its exit status is then in $status
  if [ -z "${status_of[$1]:-}" ]; then
    status=0
    wait "$1" || status=$?
    status_of[$1]=$status
    unset "running[$1]"
  fi
  status=${status_of[$1]}
}
await_file() { # file, the process that is to write it
  local tries
  for ((tries = 0; tries < 1200; tries++)); do
    [ -e "$1" ] && return
    kill -0 "$2" 2>/dev/null || return 1
    sleep 0.05
  done
  return 1
}
fail_early() { # log, what
  cat "$1" >&2 2>/dev/null || true
  printf '%sdemo: FAILED: %s%s\n' "$bad" "$2" "$plain"
  exit 1
}
troubles=()
expect_status() { # what, expected, actual
  [ "$2" = "$3" ] || troubles+=("$1 ended with status $3")
}

# --- Server and clients

start_server() { # options; its process is then in $server
  "$server_program" --listen 127.0.0.1:0 --port-file "$folder/server.port" --log "$folder/server.log" \
    --database :memory: --seed "$seed" --game "$game" --welcome 1000 --frame-rate 0 --dump-on-exit "$@" \
    >"$folder/server-output.log" 2>&1 &
  server=$!
  running[$server]=1
  await_file "$folder/server.port" "$server" || fail_early "$folder/server-output.log" "the server does not listen"
  address=127.0.0.1:$(cat "$folder/server.port")
}
# A word with the house: what is asked for, and as whom.
ask() { # lobby, history, ..., name, options
  "$client_program" "$1" --connect "$address" --name "$2" --password-file "$password" --color "$color" "${@:3}" </dev/null
}
start_bot() { # name, style, seed, options
  "$client_program" bot --connect "$address" --name "$1" --register --password-file "$password" --style "$2" --seed "$3" \
    --pause "$pace" --reconnects 10 --ready-file "$folder/$1.ready" "${@:4}" >"$folder/bot-$1.log" 2>&1 </dev/null &
  bot_processes+=($!)
  name_of[$!]=$1
  running[$!]=1
}
await_bot() { # process, what it has no ... of
  await_file "$folder/${name_of[$1]}.ready" "$1" ||
    fail_early "$folder/bot-${name_of[$1]}.log" "${name_of[$1]} has no $2"
}

# Waits for who looks on and sees the end. When somebody fails before, all are ended, and the one that failed is in $failed.
failed=
await_onlooker() { # process
  local process
  name_of[$1]="the onlooker"
  while [ -z "$failed" ] && kill -0 "$1" 2>/dev/null; do
    for process in "$server" "${bot_processes[@]}"; do
      kill -0 "$process" 2>/dev/null && continue
      finish "$process"
      if [ "$status" -ne 0 ]; then failed=$process && break; fi
    done
    sleep 0.1
  done
  if [ -z "$failed" ]; then
    finish "$1"
    if [ "$status" -eq 0 ]; then return; fi
    failed=$1
  fi
  # Others fail because the server has: that is what to tell of.
  if [ "$failed" != "$server" ] && ! kill -0 "$server" 2>/dev/null; then
    finish "$server"
    if [ "$status" -ne 0 ]; then failed=$server; fi
  fi
  expect_status "${name_of[$failed]:-the server}" 0 "${status_of[$failed]}"
  for process in "${!running[@]}"; do kill -TERM "$process" 2>/dev/null || true; done
  sleep 0.3
  kill -TERM "$server" 2>/dev/null || true # a second time: now
}
# The server, which has been asked to end, and the bots. Nobody waits for ever for a server that does not end.
await_all() {
  local tries process
  for ((tries = 0; tries < 600; tries++)); do
    kill -0 "$server" 2>/dev/null || break
    sleep 0.05
  done
  if kill -0 "$server" 2>/dev/null; then
    troubles+=("the server does not end")
    kill -KILL "$server" 2>/dev/null || true
  fi
  finish "$server"
  if [ -z "$failed" ]; then expect_status "the server" 0 "$status"; fi
  for process in "${bot_processes[@]}"; do
    finish "$process"
    if [ -z "$failed" ]; then expect_status "${name_of[$process]}" 0 "$status"; fi
  done
}

# --- What came of it, from the server's log

# For awk: the values of a line by their keys, money of "... money=5 ...". Quotes are taken off a name, which may have blanks.
# shellcheck disable=SC2016 # awk's
read_values='
  function readValues() {
    delete value
    if (match($0, /name="[^"]*"/)) {
      value["name"] = substr($0, RSTART + 6, RLENGTH - 7)
      $0 = substr($0, 1, RSTART - 1) substr($0, RSTART + RLENGTH)
    }
    for (i = 1; i <= NF; i++) if (split($i, pair, "=") == 2) value[pair[1]] = pair[2]
  }'

show_totals() {
  heading "What the server received and sent"
  awk -v bold="$bold" -v green="$good" -v yellow="$yellow" -v plain="$plain" "$read_values"'
    / holdem.totals: / {
      readValues()
      in_bound = value["direction"] == "in"
      name = ("cmd" in value) ? value["cmd"] : "all"
      if (name == "none") name = "(no command)"
      printf "  %s%s  %-26s %6d  %8d bytes%s\n", name == "all" ? bold : in_bound ? green : yellow,
        in_bound ? "client ─▶ server" : "client ◀─ server", name, value["commands"], value["bytes"], plain
    }' "$folder/server.log"
}

show_pools() {
  heading "Memory of the server's pools"
  awk -v bold="$bold" -v plain="$plain" '
    / holdem.pools: / {
      if (match($0, /command type = [^ \t]+/)) {
        type = substr($0, RSTART + 15, RLENGTH - 15)
        match($0, /memory = .*/)
        split(substr($0, RSTART + 9), part, /[ ()]+/)
        printf "  %-28s %3d %s  %8d bytes\n", type, part[2], part[2] == 1 ? "object " : "objects", part[1]
      } else if (match($0, /bytes = .*/)) {
        split(substr($0, RSTART + 8), part, /[ ()]+/)
        printf "  %s%-28s %3d objects  %8d bytes%s\n", bold, "all", part[2], part[1], plain
      }
    }' "$folder/server.log"
  grep -q ' holdem.pools: Total: bytes = [1-9]' "$folder/server.log" ||
    troubles+=("the server left no dump of its pools")
}

# The bank's last word is then in $audit.
check_audit() {
  audit=$(grep ' holdem.bank: audit ' "$folder/server.log" | tail -n 1 | sed 's/.* audit //' || true)
  [[ $audit =~ (^| )difference=0( |$) ]] || troubles+=("the chips are not conserved: ${audit:-no audit}")
}

# The last line, and the exit status.
conclude() { # what was played
  printf '\n'
  if [ ${#troubles[@]} -eq 0 ]; then
    printf '%sdemo: passed, %s, chips conserved: %s%s\n' "$good" "$1" "$audit" "$plain"
    exit 0
  fi
  local others='' trouble file
  if [ ${#troubles[@]} -gt 1 ]; then
    for trouble in "${troubles[@]}"; do printf '  %s✗%s %s\n' "$bad" "$plain" "$trouble"; done
    others=" (and $((${#troubles[@]} - 1)) more)"
  fi
  for file in "$folder"/bot-*.log; do
    if [ -s "$file" ]; then sed 's/^/  /' "$file" >&2; fi
  done
  printf '%sdemo: FAILED: %s%s%s\n' "$bad" "${troubles[0]}" "$others" "$plain"
  exit 1
}

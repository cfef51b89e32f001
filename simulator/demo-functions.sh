# Functions of ./demo: its messages, and the processes that it runs. ./demo sources this file in the project's folder,
# and sets SCHEDULE, PLAYLIST, TRACKS, SETTINGS and COMMENT.
# shellcheck shell=bash

# The daemon requests these tasks so many seconds ahead; the device starts them itself, at their start time.
AHEAD_S=8
ASKED_AHEAD=' PlayMessage PlayPlaylist '
MIDNIGHT_MARGIN_S=120
PATIENCE_S=10
DAEMON_ORIGIN=/com/kestrelix/ozna/scheduler/schedulerobj

WIDTH=1000
PLAIN='' BOLD='' RED='' YELLOW=''
if [[ -t 1 ]]; then
    WIDTH=$(tput cols 2>/dev/null || echo 80)
    if [[ -z ${NO_COLOR:-} ]]; then
        PLAIN=$'\e[0m' BOLD=$'\e[1m' RED=$'\e[31m' YELLOW=$'\e[33m'
    fi
fi
LEVEL_COLOURS=([1]=$RED [2]=$YELLOW)
ROOMY=100 # with this many columns or more, a log line shows its milliseconds and its place in the source

TEMP=''
BUS_PID='' DEVICE_PID='' DAEMON_PID='' READER_PID='' SLEEP_PID='' PLAYER_PID='' MONITOR_PID='' EAR_PID=''

say() {
    echo "${BOLD}demo   | $*${PLAIN}"
}

fail() {
    echo "${RED}demo   | $*${PLAIN}" >&2
    exit 1
}

# The local time so many seconds after the demo's start.
time_at() {
    printf '%(%H:%M:%S)T' $((START + $1))
}

# Whether the process runs and is a child of this shell: once it has ended, another process may get its number. The
# shell's list of jobs alone is not enough, it can miss an end while a trap runs.
is_alive() {
    [[ -n $1 && $'\n'$(jobs -pr)$'\n' == *$'\n'"$1"$'\n'* ]] && kill -0 "$1" 2>/dev/null
}

# Waits for the process to end, and kills it after PATIENCE_S.
end_of() {
    local deadline=$((SECONDS + PATIENCE_S))
    while is_alive "$1"; do
        if ((SECONDS >= deadline)); then
            kill -KILL "$1" 2>/dev/null || true
            break
        fi
        sleep 0.05
    done
    wait "$1" 2>/dev/null
}

clean_up() {
    trap '' INT TERM
    local pid
    for pid in "$DAEMON_PID" "$PLAYER_PID" "$DEVICE_PID" "$MONITOR_PID" "$EAR_PID" "$SLEEP_PID" "$BUS_PID" \
        "$READER_PID"; do
        if is_alive "$pid"; then
            kill -TERM "$pid" 2>/dev/null || true
            end_of "$pid" || true
        fi
    done
    [[ -z $TEMP ]] || rm -rf "$TEMP"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# Runs the command with its output in a log, and shows the log if it fails. On a terminal one line shows the progress.
run_quietly() {
    local log=$TEMP/build.log line
    if "$@" 2>&1 | tee "$log" | while IFS= read -r line; do
        if [[ -t 1 && $line =~ ^(\[[0-9]+/[0-9]+\]) ]]; then
            printf '\rdemo   | Building %s ' "${BASH_REMATCH[1]}"
        fi
    done; then
        [[ ! -t 1 ]] || printf '\r\e[K'
        return
    fi
    [[ ! -t 1 ]] || echo
    cat "$log" >&2
    fail "The build failed."
}

wait_for_midnight() {
    local hours minutes seconds left
    IFS=: read -r hours minutes seconds < <(date +%T)
    left=$((86400 - 10#$hours * 3600 - 10#$minutes * 60 - 10#$seconds))
    if ((left < MIDNIGHT_MARGIN_S)); then
        say "Times of day begin anew at midnight: waiting $left s for it to pass ..."
        pause $((left + 1))
    fi
}

# Writes the schedule, and the list of requests that it should cause, each with its time.
write_schedule() {
    local row offset task parameters requests ahead request due tolerance
    mkdir -p "$TEMP/data/schedule" "$TEMP/data/playlists"
    echo "$TRACKS" >"$TEMP/data/playlists/$PLAYLIST"
    echo "$SETTINGS" >"$TEMP/ozna.ini"
    {
        echo "$COMMENT"
        for row in "${SCHEDULE[@]}"; do
            IFS='|' read -r offset task parameters requests <<<"$row"
            echo "1111111|$(time_at "$offset")|*|*|*|||$task|$parameters"
        done
    } >"$TEMP/data/schedule/schedule.csv"

    for row in "${SCHEDULE[@]}"; do
        IFS='|' read -r offset task parameters requests <<<"$row"
        ahead=0
        [[ $ASKED_AHEAD != *" $task "* ]] || ahead=$AHEAD_S
        while [[ -n $requests ]]; do
            IFS= read -r request <<<"${requests%%;*}"
            [[ $requests == *';'* ]] && requests=${requests#*;} || requests=''
            request=${request#"${request%%[! ]*}"}
            due=$((offset - ahead)) tolerance=''
            if [[ $request =~ ^\+([0-9]+)\ (.*)$ ]]; then
                due=$((offset + BASH_REMATCH[1])) request=${BASH_REMATCH[2]}
            elif [[ $request =~ ^=([0-9]+)~([0-9]+)\ (.*)$ ]]; then
                due=${BASH_REMATCH[1]} tolerance=${BASH_REMATCH[2]} request=${BASH_REMATCH[3]}
            fi
            request=${request//@/$(time_at "$offset")}
            [[ $request == *' '* ]] || request+=' '
            printf '%s\t%s\t%s%s\n' "$(time_at "$due")" "${request%% *}" "${request#* }" "${tolerance:+$'\t'$tolerance}"
        done
    done | sort --stable --key=1,1 >"$TEMP/expected"
}

# Sleeps; a signal ends it at once.
pause() {
    sleep "$1" &
    SLEEP_PID=$!
    wait "$SLEEP_PID" || true
    SLEEP_PID=''
}

# Waits until so many seconds after the demo's start.
wait_until() {
    local left_ms
    while :; do
        is_alive "$DAEMON_PID" || fail "The daemon has ended."
        is_alive "$DEVICE_PID" || fail "The simulated device has ended."
        left_ms=$(((START + $1) * 1000 - ${EPOCHREALTIME/./} / 1000))
        ((left_ms > 0)) || return 0
        if ((left_ms > 1000)); then left_ms=1000; fi
        pause "$((left_ms / 1000)).$(printf '%03d' $((left_ms % 1000)))"
    done
}

wait_for_name() {
    local deadline=$((SECONDS + PATIENCE_S)) reply=''
    until [[ $reply == *true* ]]; do
        if ! is_alive "$2" || ((SECONDS >= deadline)); then
            fail "No $1 on the bus."
        fi
        pause 0.05
        reply=$(dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus /org/freedesktop/DBus \
            org.freedesktop.DBus.NameHasOwner "string:$1" 2>/dev/null) || true
    done
}

start_bus() {
    mkfifo "$TEMP/address"
    dbus-daemon --config-file=tests/data/bus.conf --address="unix:path=$TEMP/bus" --nofork --nosyslog --print-address=3 \
        3>"$TEMP/address" 2>"$TEMP/bus.log" &
    BUS_PID=$!
    local address=''
    IFS= read -r -t "$PATIENCE_S" address <"$TEMP/address" || true
    if [[ -z $address ]]; then
        cat "$TEMP/bus.log" >&2
        fail "The private bus does not start."
    fi
    export DBUS_SESSION_BUS_ADDRESS=$address
}

start_device() {
    build/release/ozna-simulator --play --expect "$TEMP/expected" &
    DEVICE_PID=$!
    wait_for_name com.kestrelix.ozna.simulator "$DEVICE_PID"
}

# Shows the daemon's log as it comes: time, level, text, and the origin if it is not the daemon's own. When the schedule
# is loaded again, its tasks are only counted.
show_log() {
    local level origin text now fraction repeated=0
    local -A created
    while IFS=' ' read -r level origin text; do
        echo "$level $origin $text" >>"$TEMP/daemon.log"
        if [[ $text == *'TASK CREATED'* ]]; then
            if [[ -n ${created[$text]:-} ]]; then
                ((++repeated))
                continue
            fi
            created[$text]=1
        fi
        now=${EPOCHREALTIME/[.,]/}
        printf -v fraction '.%03d' $((now / 1000 % 1000))
        ((WIDTH >= ROOMY)) || fraction='' text=${text#\[*\] }
        if [[ $origin != "$DAEMON_ORIGIN" ]]; then
            origin=${origin%/*}
            text="(${origin##*/}) $text"
        fi
        if ((repeated > 0)); then
            echo "daemon | ... $repeated tasks created as before"
            repeated=0
        fi
        printf 'daemon | %(%H:%M:%S)T%s %s%s %s%s\n' $((now / 1000000)) "$fraction" \
            "${LEVEL_COLOURS[level]:-}" "$level" "$text" "${LEVEL_COLOURS[level]:+$PLAIN}"
    done
}

start_daemon() {
    local scheduler=$PWD/build/release/ozna-scheduler-local
    mkfifo "$TEMP/log"
    show_log <"$TEMP/log" &
    READER_PID=$!
    # Started within the folder, so that the log's paths are short.
    (cd "$TEMP" && OZNA_DATA_DIR=data OZNA_CONFIG_FILE=ozna.ini OZNA_LOG_LEVEL=4 exec "$scheduler" 2>log) &
    DAEMON_PID=$!
    wait_for_name com.kestrelix.ozna.scheduler "$DAEMON_PID"
}

# Calls a method of the daemon: name, the arguments to be shown, the arguments for dbus-send.
call() {
    local reply
    reply=$(dbus-send --session --print-reply --reply-timeout=5000 --dest=com.kestrelix.ozna.scheduler \
        "$DAEMON_ORIGIN" "com.kestrelix.ozna.schedulerinterface.$1" "${@:3}" 2>&1) || fail "$1: $reply"
    # One value a line, its type before it.
    reply=$(sed -n 's/^   [a-z0-9]* //p' <<<"$reply" | paste -sd, | sed 's/,/, /g')
    say "$1($2) answers ($reply)"
}

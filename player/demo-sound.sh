# ./demo --sound: a player in the place of the simulated sound manager, so that a schedule is heard. Sourced by ./demo,
# behind simulator/demo-functions.sh.
# shellcheck shell=bash

# A row: seconds from the demo's start | task | parameters. The playlist's three chimes are as long as it says.
SCHEDULE=(
    '14|Volume|90|'
    '16|PlayMessage|gong.wav,70|'
    '19|PlayMessage|bell.wav,100|'
    '21|Light|40|'
    '22|PlayPlaylist|chimes,60,p1|'
    '33|PlayMessage|gong.wav,50|'
    '36|Light|0|'
)
PLAYLIST='chimes'
TRACKS='chime.wav;1
chime.wav;1
chime.wav;1'
CHIME_MS=1000
# When a sound is due, in seconds from the demo's start. Between two tracks is a silence of 2 s.
SOUNDS=(16 19 22 25 28 33)
SETTINGS='[GENERAL]
ServerIp=127.0.0.1
'
COMMENT='# What is heard in the coming minute.'
STOP_AT_S=37
MOST_MS=50 # of error
SOUND_FILE=build/demo-sound.wav

OUTPUT=''

build_sound() {
    say "Building preset release ..."
    [[ -f build/release/build.ninja ]] || run_quietly cmake --preset release
    run_quietly cmake --build --preset release --parallel "$(nproc)" \
        --target ozna-scheduler-local ozna-simulator ozna-player ozna-ear
}

make_sounds() {
    mkdir -p "$TEMP/data/media"
    build/release/ozna-ear gong "$TEMP/data/media/gong.wav"
    cp "$TEMP/data/media/gong.wav" "$TEMP/data/media/bell.wav"
    build/release/ozna-ear gong "$TEMP/data/media/chime.wav" "$CHIME_MS"
}

# The machine's first output, or a FIFO that the ear reads. The ear hears a sound server's output too.
choose_output() {
    local found monitor=''
    OUTPUT=file:$TEMP/sound
    if found=$(build/release/ozna-player --list-outputs); then
        found=${found%%$'\n'*}
        found=${found#Output=}
        OUTPUT=${found%%  *}
        say "You hear it on ${found#*  }."
        if [[ $OUTPUT == pulse ]] && command -v parec >/dev/null; then
            monitor=$TEMP/sound
        fi
    else
        say "This machine has no output: the sound goes to $SOUND_FILE."
    fi
    SETTINGS+=$'[PLAYER]\n'"Output=$OUTPUT"$'\n'"Media=$TEMP/data/media"$'\n'"Playlists=$TEMP/data/playlists"
    [[ $OUTPUT == file:* || -n $monitor ]] || return 0
    mkfifo "$TEMP/sound"
    build/release/ozna-ear listen "$TEMP/sound" "$SOUND_FILE" >"$TEMP/heard" &
    EAR_PID=$!
    if [[ -n $monitor ]]; then
        parec --raw -d @DEFAULT_MONITOR@ --format=s16le --rate=48000 --channels=2 --latency-msec=2 >"$monitor" &
        MONITOR_PID=$!
    fi
}

start_player() {
    OZNA_CONFIG_FILE=$TEMP/ozna.ini STATE_DIRECTORY=$TEMP OZNA_LOG_LEVEL=4 build/release/ozna-player \
        2> >(sed -u 's#^\([0-9]\) [^ ]* #player | \1 #') &
    PLAYER_PID=$!
    wait_for_name com.kestrelix.ozna.soundmanager "$PLAYER_PID"
}

end_sound() {
    local pid
    for pid in "$PLAYER_PID" "$MONITOR_PID" "$EAR_PID"; do
        if is_alive "$pid"; then
            kill -TERM "$pid" 2>/dev/null || true
            end_of "$pid" || true
        fi
    done
}

# A row for each sound: when it was due, when it was heard, and the difference. What is missing or late is a failure.
show_heard() {
    local due_s due_us at_us best_us error_us least_us wrong=0
    local -a heard_us
    # The ear's first column: milliseconds with three decimals.
    mapfile -t heard_us < <(cut -f 1 "$TEMP/heard" | tr -d .)
    say "What was heard:"
    echo "         due       heard            error, us"
    for due_s in "${SOUNDS[@]}"; do
        # The sounds lie farther apart than that; the nearest is meant.
        due_us=$(((START + due_s) * 1000000)) best_us='' least_us=1000000
        for at_us in "${heard_us[@]}"; do
            error_us=$((at_us > due_us ? at_us - due_us : due_us - at_us))
            if ((error_us < least_us)); then best_us=$at_us least_us=$error_us; fi
        done
        if [[ -z $best_us ]]; then
            echo "         $(time_at "$due_s")  not heard"
            wrong=1
            continue
        fi
        printf '         %s  %(%H:%M:%S)T.%06d  %+9d\n' "$(time_at "$due_s")" $((best_us / 1000000)) \
            $((best_us % 1000000)) $((best_us - due_us))
        ((least_us <= MOST_MS * 1000)) || wrong=1
    done
    return "$wrong"
}

show_sound() {
    packaging/install-build-packages build test demo
    build_sound
    wait_for_midnight
    make_sounds
    choose_output
    START=$EPOCHSECONDS
    write_schedule
    say "The schedule:"
    sed 's/^/         /' "$TEMP/data/schedule/schedule.csv"
    say "Starting a private bus, the player, the rest of a simulated device and the daemon."
    start_bus
    start_player
    build/release/ozna-simulator --play --absent com.kestrelix.ozna.soundinterface &
    DEVICE_PID=$!
    wait_for_name com.kestrelix.ozna.simulator "$DEVICE_PID"
    start_daemon
    wait_until "$STOP_AT_S"
    say "Stopping."
    kill -TERM "$DAEMON_PID"
    end_of "$DAEMON_PID" || fail "The daemon did not stop cleanly."
    end_of "$READER_PID" || true
    end_sound
    if [[ -z $EAR_PID ]]; then
        say "Nothing can listen to $OUTPUT here but you."
    elif ! show_heard; then
        fail "Not every sound was heard within $MOST_MS ms of its second."
    else
        say "Every sound was heard at its second. $SOUND_FILE has it."
    fi
}

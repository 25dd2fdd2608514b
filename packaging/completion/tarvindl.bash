# Completion in bash for all programs of TarvinDL.

# The installation that the words of the command line mean: that of --installation or --system, else the first that a
# program finds.
_tarvindl_installation() {
    local words=("$@") index folder
    local folders=("${TARVINDL_HOME:-}" "${XDG_DATA_HOME:-$HOME/.local/share}/TarvinDL/2026" /var/lib/tarvindl/2026)
    for ((index = 0; index < $#; ++index)); do
        case ${words[index]} in
        --installation=*) folders=("${words[index]#*=}") ;;
        --installation) folders=("${words[index + 1]:-}") ;;
        --system) folders=(/var/lib/tarvindl/2026) ;;
        esac
    done
    for folder in "${folders[@]}"; do
        if [ -n "$folder" ] && [ -r "$folder/KEL.INI" ]; then
            printf '%s\n' "$folder"
            return
        fi
    done
}

# The names of the machines that have settings in the installation, one on each line.
_tarvindl_machines() {
    local folder file
    folder=$(_tarvindl_installation "$@")
    [ -n "$folder" ] || return 0
    for file in "$folder"/*.INI; do
        file=${file##*/}
        case $file in KEL.INI | '*.INI') ;; *) printf '%s\n' "${file%.INI}" ;; esac
    done
}

# The port names with an entry in KEL.INI.
_tarvindl_port_names() {
    local folder
    folder=$(_tarvindl_installation "$@")
    [ -z "$folder" ] || sed -n '/^\[PORTS\]/,/^\[[^P]/s/^\(COM[0-9]*\)=.*/\1/p' "$folder/KEL.INI"
}

_tarvindl_devices() {
    local device
    for device in /dev/serial/by-id/* /dev/ttyS* /dev/ttyUSB* /dev/ttyACM*; do
        [ ! -e "$device" ] || printf '%s\n' "$device"
    done
}

# The names of the settings, and of those with a choice the values. A blank of a value is written as '+'.
_tarvindl_setting_table() {
    cat <<'END'
port|
baudrate|110 150 300 600 1200 2400 4800 9600 19200 38400 57600 115200
parity|None Odd Even Mark Space
databits|7 8
stopbits|1 1.5 2
flow control|Xon/Xoff Hardware None Combined
cts handshake|0 1
dsr handshake|0 1
transmit delay|
controller|by+number by+hand
incoming check|off end repeat
character delay|
line delay|
send start code|0 1
start character|
send end code|0 1
end character|
silence|
upload path|
download path|
file extension|
replaced copies|
new files per hour|
log file|
write log|0 1
comms log file|
history years|
attention|
call sound|0 1
language|
network mode|0 1
server mode|0 1
station name|
END
}

# NAME= for each setting; once a name stands in the first word, NAME=VALUE for each of its values.
_tarvindl_settings() {
    local begin=$1 name values
    shift
    if [[ $begin != *=* ]]; then
        _tarvindl_setting_table | sed 's/|.*/=/'
        return
    fi
    name=${begin%%=*}
    case $name in
    port) _tarvindl_port_names "$@" ;;
    language) _tarvindl_languages ;;
    "upload path" | "download path") compgen -d -- "${begin#*=}" ;;
    "log file" | "comms log file") compgen -f -- "${begin#*=}" ;;
    *)
        values=$(_tarvindl_setting_table | sed -n "s/^$name|//p")
        [ -z "$values" ] || printf '%s\n' $values | tr + ' '
        ;;
    esac | sed "s|^|$name=|"
}

_tarvindl_languages() {
    printf '%s\n' English Deutsch Español Français Italiano
}

# The options in the help of the program: words of a line's beginning, or behind one that stands there.
_tarvindl_options() {
    "$1" --help 2>/dev/null | grep -oE '(^|[][ |(,])--[a-z][a-z-]*' | grep -oE -- '--[a-z-]+' | sort -u
}

# What the value of an option is. Empty for an option without one.
_tarvindl_kind() {
    case "$1 $2" in
    *" --machine" | *" --check" | *" --remove-service") echo machine ;;
    *" --assign-port" | "tarvin-controller --port") echo device ;;
    *" --port") echo port ;;
    *" --folder" | *" --upload" | *" --download" | *" --installation" | *" --units") echo folder ;;
    *" --database" | *" --pty") echo file ;;
    *" --speed" | *" --baud") echo "one of 110 150 300 600 1200 2400 4800 9600 19200 38400 57600 115200" ;;
    *" --controller") echo "one of by+number by+hand" ;;
    *" --outcome") echo "one of completed failed cancelled refused" ;;
    *" --services") echo "one of start stop remove" ;;
    *" --language") echo language ;;
    *" --set") echo setting ;;
    *" --extension" | *" --number" | *" --days" | *" --from" | *" --to" | *" --account" | *" --connect" | *" --timeout" | \
        *" --delay" | *" --start-character" | *" --seed" | *" --garble" | *" --drop" | *" --noise" | \
        *" --garble-received" | *" --drop-received" | *" --nak-every" | *" --stop-after")
        echo free
        ;;
    esac
}

# The values of a kind, one on each line. Of files it gives those whose names begin with the third word.
_tarvindl_values() {
    local kind=$1 begin=$2
    shift 2
    case $kind in
    machine) _tarvindl_machines "$@" ;;
    device) _tarvindl_devices ;;
    port)
        _tarvindl_port_names "$@"
        _tarvindl_devices
        ;;
    folder) compgen -d -- "$begin" ;;
    file) compgen -f -- "$begin" ;;
    language) _tarvindl_languages ;;
    setting) _tarvindl_settings "$begin" "$@" ;;
    "one of "*)
        printf '%s\n' ${kind#one of } | tr + ' '
        ;;
    esac
}

# A word without quotes and backslashes.
_tarvindl_plain() {
    local plain=${1//\\/}
    plain=${plain//\"/}
    printf '%s' "${plain//\'/}"
}

# Offers the lines of the input that begin with the word $1. Of these $2 stands on the command line and is not replaced;
# $3 is empty within quotes.
_tarvindl_offer() {
    local word=$1 standing=$2 escapes=$3 line
    COMPREPLY=()
    while IFS= read -r line; do
        [[ -n $line && $line == "$word"* ]] || continue
        line=${line:${#standing}}
        case $escapes$line in
        yes*=) line=$(printf '%q' "${line%=}")= ;;
        yes*) line=$(printf '%q' "$line") ;;
        esac
        COMPREPLY+=("$line")
    done
    [[ ${#COMPREPLY[@]} != 1 || ${COMPREPLY[0]} != *= ]] || compopt -o nospace 2>/dev/null || true
}

_tarvindl_offer_paths() {
    compopt -o filenames 2>/dev/null || true
    mapfile -t COMPREPLY < <(_tarvindl_values "$1" "$2")
}

_tarvindl() {
    local program=$1 name=${1##*/} words=() index word last current standing escapes=yes option kind
    # Words as the program gets them: bash cuts them at '=' and ':'.
    for ((index = 1; index <= COMP_CWORD; ++index)); do
        word=${COMP_WORDS[index]}
        if [ ${#words[@]} -gt 0 ] && [[ $word == [=:]* || ${COMP_WORDS[index - 1]} == [=:] ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
    done
    last=${COMP_WORDS[COMP_CWORD]}
    case $last in \"* | \'*) escapes= ;; esac
    standing=${words[-1]}
    [[ $last == [=:] ]] || standing=${standing:0:${#standing}-${#last}}
    for index in "${!words[@]}"; do
        words[index]=$(_tarvindl_plain "${words[index]}")
    done
    standing=$(_tarvindl_plain "$standing")
    current=${words[-1]}
    COMPREPLY=()

    # The value of an option, behind '=' or in a word of its own.
    if [[ $current == --*=* ]]; then
        option=${current%%=*}
        kind=$(_tarvindl_kind "$name" "$option")
        case $kind in
        folder | file) _tarvindl_offer_paths "$kind" "${current#*=}" ;;
        *)
            _tarvindl_offer "$current" "$standing" "$escapes" \
                < <(_tarvindl_values "$kind" "${current#*=}" "${words[@]}" | sed "s|^|$option=|")
            ;;
        esac
        return
    fi
    option=
    [ ${#words[@]} -lt 2 ] || option=${words[-2]}
    kind=$(_tarvindl_kind "$name" "$option")
    if [[ -n $kind ]]; then
        case $kind in
        folder | file) _tarvindl_offer_paths "$kind" "$current" ;;
        *) _tarvindl_offer "$current" "$standing" "$escapes" < <(_tarvindl_values "$kind" "$current" "${words[@]}") ;;
        esac
        return
    fi
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_tarvindl_options "$program")" -- "$current")
        return
    fi
    case $name in
    tarvindl | tarvindl-service | tarvindl-start)
        if [[ $current == /l=* ]]; then
            _tarvindl_offer "$current" "$standing" "$escapes" < <(_tarvindl_languages | sed 's|^|/l=|')
        elif [[ $current == / || $current == /l ]]; then
            _tarvindl_offer "$current" "$standing" "$escapes" <<<"/l="
        else
            _tarvindl_offer "$current" "$standing" "$escapes" < <(_tarvindl_machines "${words[@]}")
        fi
        ;;
    tarvindl-status | tarvindl-setup)
        _tarvindl_offer "$current" "$standing" "$escapes" < <(_tarvindl_machines "${words[@]}")
        ;;
    tarvin-dictionary)
        [ "$COMP_CWORD" -gt 1 ] || mapfile -t COMPREPLY < <(compgen -W "compile export" -- "$current")
        ;;
    tarvin-controller)
        mapfile -t COMPREPLY < <(compgen -W "test put get check refuse-put refuse-get send expect stay" -- "$current")
        ;;
    esac
}

complete -o default -F _tarvindl tarvindl tarvindl-service tarvindl-setup tarvindl-start tarvindl-status \
    tarvin-history tarvin-dictionary tarvin-controller

# Completion in bash for all programs of TarvinDL.

# The names of the machines that have settings in the installation, one on each line.
_tarvindl_machines() {
    local folder file
    for folder in "${TARVINDL_HOME:-}" "${XDG_DATA_HOME:-$HOME/.local/share}/TarvinDL/2026" /var/lib/tarvindl/2026; do
        [ -n "$folder" ] && [ -r "$folder/KEL.INI" ] || continue
        for file in "$folder"/*.INI; do
            file=${file##*/}
            [ "$file" = KEL.INI ] || printf '%s\n' "${file%.INI}"
        done
        return
    done
}

# The options in the help of the program: words of a line's beginning, or behind one that stands there.
_tarvindl_options() {
    "$1" --help 2>/dev/null | grep -oE '(^|[][ |(,])--[a-z][a-z-]*' | grep -oE -- '--[a-z-]+' | sort -u
}

_tarvindl() {
    local program=$1 current=$2 previous=$3 line
    COMPREPLY=()
    case $previous in
    --machine)
        while IFS= read -r line; do
            [[ $line != "$current"* ]] || COMPREPLY+=("$(printf '%q' "$line")")
        done < <(_tarvindl_machines)
        return
        ;;
    --outcome)
        mapfile -t COMPREPLY < <(compgen -W "completed failed cancelled refused" -- "$current")
        return
        ;;
    --baud)
        mapfile -t COMPREPLY < <(compgen -W "300 600 1200 2400 4800 9600 19200 38400 57600 115200" -- "$current")
        return
        ;;
    --port | --assign-port)
        mapfile -t COMPREPLY < <(compgen -G '/dev/serial/by-id/*'; compgen -f -- "${current:-/dev/tty}")
        return
        ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_tarvindl_options "$program")" -- "$current")
        return
    fi
    case ${program##*/} in
    tarvindl | tarvindl-service | tarvindl-status | tarvindl-setup)
        while IFS= read -r line; do
            [[ $line != "$current"* ]] || COMPREPLY+=("$(printf '%q' "$line")")
        done < <(_tarvindl_machines)
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

# bash completion for halyard

_halyard()
{
    local current=${COMP_WORDS[COMP_CWORD]} command='' options='' i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            command=${COMP_WORDS[i]}
            break
        fi
    done

    case $command in
        '') options='--help --version' ;;
        info) options='--help --json' ;;
        convert) options='--help --plain --swap-axes --true-color --units' ;;
        clip) options='--help --plain --true-color --window' ;;
        transform) options='--help --layers --move --plain --rotate --scale --true-color' ;;
        layers) options='--back --front --help --order --plain --remove --rename --true-color' ;;
        render) options='--background --fit --help --hide --layers --plain --size --view' ;;
        *) options='--help' ;;
    esac

    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'info dump convert clip transform layers render' -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.[dD][xX][fF]' -- "$current"
            compgen -f -X '!*.[pP][lL][oO][tT]' -- "$current"
            if [[ $command == info || $command == convert ]]; then
                compgen -f -X '!*.3[dD][sS]' -- "$current"
                compgen -f -X '!*.[sS][kK][pP]' -- "$current"
            fi
            if [[ $command == render ]]; then
                compgen -f -X '!*.[pP][nN][gG]' -- "$current"
                compgen -f -X '!*.[bB][mM][pP]' -- "$current"
            fi)
    fi
}

complete -o filenames -F _halyard halyard

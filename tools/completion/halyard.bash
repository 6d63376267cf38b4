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
        convert) options='--help --plain --true-color' ;;
        *) options='--help' ;;
    esac

    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'info dump convert' -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.[dD][xX][fF]' -- "$current")
    fi
}

complete -o filenames -F _halyard halyard

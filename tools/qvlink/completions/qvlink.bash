# Completion of qvlink for bash.

_qvlink() {
    local commands='scan deps refs find show missing why stats verify export protected lists reg'
    local lists='capture pack unpack check diff' reg='import export'
    local common='--db --db-paths --json -v --verbose -h --help'
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' list='' i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --db) ((++i)) ;;
        -*) ;;
        *)
            if [[ -z $command ]]; then
                command=${COMP_WORDS[i]}
                [[ $command == lists || $command == reg ]] || break
            else
                list=${COMP_WORDS[i]}
                break
            fi
            ;;
        esac
    done
    if [[ $command == scan ]]; then
        # Behind --registry stand keys up to the next option.
        for ((i = COMP_CWORD - 1; i > 0; --i)); do
            [[ ${COMP_WORDS[i]} != -* ]] || break
        done
        if [[ ${COMP_WORDS[i]} == --registry && $word != -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W 'HKLM HKCU HKCR HKU HKCC' -- "$word")
            return
        fi
    fi
    case $before in
    --db | --from)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        return
        ;;
    --type)
        mapfile -t COMPREPLY < <(compgen -W \
            'drive folder file symlink special name runpath pinned hive key value' -- "$word")
        return
        ;;
    --format)
        mapfile -t COMPREPLY < <(compgen -W 'dot graphml jsonl csv' -- "$word")
        return
        ;;
    --id)
        mapfile -t COMPREPLY < <(compgen -W '101 102 103 104 105 110 111 112 113 114' -- "$word")
        return
        ;;
    --form)
        mapfile -t COMPREPLY < <(compgen -W '4 5' -- "$word")
        return
        ;;
    --top | --without | --into | --code-page) return ;;
    esac
    if [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands $common --version" -- "$word")
        return
    fi
    if [[ $command == lists && -z $list ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$lists $common" -- "$word")
        return
    fi
    if [[ $command == reg && -z $list ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$reg $common" -- "$word")
        return
    fi
    if [[ $word == -* ]]; then
        local own=''
        case $command${list:+ $list} in
        scan) own='--registry' ;;
        deps) own='--direct --tree' ;;
        refs) own='--direct' ;;
        find) own='--type --protected' ;;
        stats) own='--top' ;;
        export) own='--format -o --output' ;;
        'lists capture') own='--from --without -o --output' ;;
        'lists pack') own='-o --output' ;;
        'lists unpack') own='--id -o --output' ;;
        'lists check' | 'lists diff') own='--id' ;;
        'reg import') own='--into --code-page' ;;
        'reg export') own='--form --code-page' ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$common $own" -- "$word")
        return
    fi
    if [[ $list == capture && $before != -o && $before != --output ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'files keys' -- "$word")
        return
    fi
    case $command in
    scan | deps | refs | show | why | export | protected | lists | reg)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        ;;
    esac
}

complete -F _qvlink qvlink

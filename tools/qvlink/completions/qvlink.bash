# Completion of qvlink for bash.

_qvlink() {
    local commands='scan deps refs find show missing why stats verify export'
    local common='--db --db-paths --json -v --verbose -h --help'
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --db) ((++i)) ;;
        -*) ;;
        *)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done
    case $before in
    --db)
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
    --top) return ;;
    esac
    if [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands $common --version" -- "$word")
        return
    fi
    if [[ $word == -* ]]; then
        local own=''
        case $command in
        deps) own='--direct --tree' ;;
        refs) own='--direct' ;;
        find) own='--type' ;;
        stats) own='--top' ;;
        export) own='--format -o --output' ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$common $own" -- "$word")
        return
    fi
    case $command in
    scan | deps | refs | show | why | export)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        ;;
    esac
}

complete -F _qvlink qvlink

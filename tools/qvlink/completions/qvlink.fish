# Completion of qvlink for fish.

set -l commands scan deps refs find show missing why stats verify export

complete -c qvlink -f
complete -c qvlink -l db -d 'Folder of linkdb.dat' -xa '(__fish_complete_directories)'
complete -c qvlink -l db-paths -d 'Paths in the form of the database'
complete -c qvlink -l json -d 'Answer in JSON'
complete -c qvlink -s v -l verbose -d 'Say more'
complete -c qvlink -s h -l help -d 'Print help'

set -l first "not __fish_seen_subcommand_from $commands"
complete -c qvlink -n $first -l version -d 'Print the version'
complete -c qvlink -n $first -a scan -d 'Put folders and their files into the graph'
complete -c qvlink -n $first -a deps -d 'Tell what a program needs'
complete -c qvlink -n $first -a refs -d 'Tell who needs a file'
complete -c qvlink -n $first -a find -d 'Find objects by name'
complete -c qvlink -n $first -a show -d 'Show all that is known of one object'
complete -c qvlink -n $first -a missing -d 'List the names that nothing provides'
complete -c qvlink -n $first -a why -d 'Show a shortest chain of needs'
complete -c qvlink -n $first -a stats -d 'Count what is in the graph'
complete -c qvlink -n $first -a verify -d 'Check the database file'
complete -c qvlink -n $first -a export -d 'Write the whole graph in another format'

complete -c qvlink -n '__fish_seen_subcommand_from scan deps refs show why' -F
complete -c qvlink -n '__fish_seen_subcommand_from deps refs' -l direct -d 'Only direct ones'
complete -c qvlink -n '__fish_seen_subcommand_from deps' -l tree -d 'Show who asks for what'
complete -c qvlink -n '__fish_seen_subcommand_from find' -l type -d 'Only objects of this type' \
    -xa 'drive folder file symlink special name runpath pinned hive key value'
complete -c qvlink -n '__fish_seen_subcommand_from stats' -l top -d 'How many files to list' -x
complete -c qvlink -n '__fish_seen_subcommand_from export' -l format -d 'The format' \
    -xa 'dot graphml jsonl csv'
complete -c qvlink -n '__fish_seen_subcommand_from export' -s o -l output -d 'Where to write' -rF

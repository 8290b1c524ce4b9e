# Completion of qvlink for fish.

set -l commands scan deps refs find show missing why stats verify export protected lists reg
set -l lists capture pack unpack check diff

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
complete -c qvlink -n $first -a protected -d 'Tell whether files and keys belong to the operating system'
complete -c qvlink -n $first -a lists -d 'Make, check and compare protected lists'
complete -c qvlink -n $first -a reg -d 'Bring registration files into the registry, or write them'

complete -c qvlink -n '__fish_seen_subcommand_from scan deps refs show why protected' -F
complete -c qvlink -n '__fish_seen_subcommand_from scan' -l registry -d 'Keys to put into the graph' -xa 'HKLM HKCU HKCR HKU HKCC'
complete -c qvlink -n '__fish_seen_subcommand_from deps refs' -l direct -d 'Only direct ones'
complete -c qvlink -n '__fish_seen_subcommand_from deps' -l tree -d 'Show who asks for what'
complete -c qvlink -n '__fish_seen_subcommand_from find' -l type -d 'Only objects of this type' \
    -xa 'drive folder file symlink special name runpath pinned hive key value'
complete -c qvlink -n '__fish_seen_subcommand_from stats' -l top -d 'How many files to list' -x
complete -c qvlink -n '__fish_seen_subcommand_from export; and not __fish_seen_subcommand_from reg' -l format -d 'The format' \
    -xa 'dot graphml jsonl csv'
complete -c qvlink -n '__fish_seen_subcommand_from export; and not __fish_seen_subcommand_from reg' -s o -l output -d 'Where to write' -rF
complete -c qvlink -n '__fish_seen_subcommand_from find' -l protected \
    -d 'Only files of the operating system'

set -l within '__fish_seen_subcommand_from lists'
set -l second "$within; and not __fish_seen_subcommand_from $lists"
complete -c qvlink -n $second -a capture -d 'Make a list from a system'
complete -c qvlink -n $second -a pack -d 'Store a list as the library holds it'
complete -c qvlink -n $second -a unpack -d 'Write the text of a stored list'
complete -c qvlink -n $second -a check -d 'Check the form of lists'
complete -c qvlink -n $second -a diff -d 'Compare lists'
complete -c qvlink -n "$within; and __fish_seen_subcommand_from capture" -a 'files keys'
complete -c qvlink -n "$within; and __fish_seen_subcommand_from capture" -l from \
    -d 'Prefix or disk' -xa '(__fish_complete_directories)'
complete -c qvlink -n "$within; and __fish_seen_subcommand_from capture" -l without \
    -d 'Leave out what fits' -x
complete -c qvlink -n "$within; and __fish_seen_subcommand_from pack unpack check diff" -F
complete -c qvlink -n "$within; and __fish_seen_subcommand_from unpack check diff" -l id \
    -d 'The list of this number' -xa '101 102 103 104 105 110 111 112 113 114'
complete -c qvlink -n "$within; and __fish_seen_subcommand_from capture pack unpack" -s o \
    -l output -d 'Where to write' -rF

set -l within '__fish_seen_subcommand_from reg'
set -l second "$within; and not __fish_seen_subcommand_from import export"
complete -c qvlink -n $second -a import -d 'Bring registration files into the registry'
complete -c qvlink -n $second -a export -d 'Write a key as a registration file'
complete -c qvlink -n "$within; and __fish_seen_subcommand_from import export" -F
complete -c qvlink -n "$within; and __fish_seen_subcommand_from import" -l into \
    -d 'The key that takes the place of the roots' -x
complete -c qvlink -n "$within; and __fish_seen_subcommand_from export" -l form \
    -d 'The form of the file' -xa '4 5'
complete -c qvlink -n "$within; and __fish_seen_subcommand_from import export" -l code-page \
    -d 'Of the texts of REGEDIT4' -x

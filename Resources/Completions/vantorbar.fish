# Completions of vantorbar for fish.

# The subcommands so far, and what else isn't an option.
function __vantorbar_words
    commandline -poc | string match -v -- '-*' | tail -n +2 | string join ' '
end

# True behind these subcommands.
function __vantorbar_at
    set -l words (__vantorbar_words)
    string match -q -- "$argv *" "$words "
end

# True right behind them.
function __vantorbar_end
    set -l words (__vantorbar_words)
    test "$words" = "$argv"
end

function __vantorbar_keys
    vantorbar prefs list 2>/dev/null | string match -r '^\S+'
end

complete -c vantorbar -f
complete -c vantorbar -s h -l help -d 'Tell what there is'
complete -c vantorbar -n '__vantorbar_end ' -l version -d 'Tell the version'
complete -c vantorbar -n '__vantorbar_end ' -a run -d 'Measure and show'
complete -c vantorbar -n '__vantorbar_end ' -a top -d 'List the busiest processes'
complete -c vantorbar -n '__vantorbar_end ' -a doctor -d 'Say what is missing'
complete -c vantorbar -n '__vantorbar_end ' -a prefs -d 'Show and change the settings'
complete -c vantorbar -n '__vantorbar_end ' -a history -d 'Show what was measured'
complete -c vantorbar -n '__vantorbar_end ' -a simulate -d 'Run a scripted machine'
complete -c vantorbar -n '__vantorbar_end ' -a record -d 'Write a scenario from this machine'
complete -c vantorbar -n '__vantorbar_end ' -a snapshot -d 'Paint the item into a picture'

complete -c vantorbar -n '__vantorbar_at run' -l host -x -a 'wayland x11 bar text offscreen none' -d 'What shows it'
complete -c vantorbar -n '__vantorbar_at run' -l json -d 'A line of JSON for each sample'
complete -c vantorbar -n '__vantorbar_at run' -l count -x -d 'End after that many samples'
complete -c vantorbar -n '__vantorbar_at run' -l monitor -x -d 'The one with a bar'
complete -c vantorbar -n '__vantorbar_at run' -l bottom -d 'Bars at the bottom'
complete -c vantorbar -n '__vantorbar_at run' -l align -x -a 'right left' -d 'The item\'s end of the bar'

complete -c vantorbar -n '__vantorbar_at top' -l json -d 'A line of JSON for each list'
complete -c vantorbar -n '__vantorbar_at top' -l count -x -d 'End after that many lists'

complete -c vantorbar -n '__vantorbar_end prefs' -a list -d 'Show all settings'
complete -c vantorbar -n '__vantorbar_end prefs' -a get -d 'Show one'
complete -c vantorbar -n '__vantorbar_end prefs' -a set -d 'Store a value'
complete -c vantorbar -n '__vantorbar_end prefs' -a reset -d 'Go back to the default'
complete -c vantorbar -n '__vantorbar_end prefs' -a migrate -d 'Take over those of the previous version'
complete -c vantorbar -n '__vantorbar_at prefs list' -l all -d 'Those of the sibling modules, too'
complete -c vantorbar -n '__vantorbar_at prefs list' -l json -d 'As one JSON object'
complete -c vantorbar -n '__vantorbar_at prefs set' -l force -d 'Also without a default'
complete -c vantorbar -n '__vantorbar_end prefs get' -a '(__vantorbar_keys)'
complete -c vantorbar -n '__vantorbar_end prefs set' -a '(__vantorbar_keys)'
complete -c vantorbar -n '__vantorbar_end prefs reset' -a '(__vantorbar_keys)'

complete -c vantorbar -n '__vantorbar_end history' -a list -d 'Show the tables'
complete -c vantorbar -n '__vantorbar_end history' -a export -d 'Write the samples of one table'
complete -c vantorbar -n '__vantorbar_end history' -a check -d 'Say whether the files are sound'
complete -c vantorbar -n '__vantorbar_end history' -a follow -d 'Write each new sample'
complete -c vantorbar -n '__vantorbar_at history list' -l folder -r -F -d 'Where the files are'
complete -c vantorbar -n '__vantorbar_at history list' -l json -d 'As a JSON array'
complete -c vantorbar -n '__vantorbar_at history check' -l folder -r -F -d 'Where the files are'
complete -c vantorbar -n '__vantorbar_end history export' -a 'cpu load gpu'
complete -c vantorbar -n '__vantorbar_at history export' -l folder -r -F -d 'Where the files are'
complete -c vantorbar -n '__vantorbar_at history export' -l scale -x -a 'hour day week' -d 'The time between samples'
complete -c vantorbar -n '__vantorbar_at history export' -l combined -d 'Of a combined item'
complete -c vantorbar -n '__vantorbar_at history export' -l format -x -a 'csv json' -d 'How to write them'
complete -c vantorbar -n '__vantorbar_at history export' -l since -x -d 'Seconds since 1970'
complete -c vantorbar -n '__vantorbar_end history follow' -a 'cpu load gpu'
complete -c vantorbar -n '__vantorbar_at history follow' -l folder -r -F -d 'Where the files are'
complete -c vantorbar -n '__vantorbar_at history follow' -l scale -x -a 'hour day week' -d 'The time between samples'
complete -c vantorbar -n '__vantorbar_at history follow' -l combined -d 'Of a combined item'
complete -c vantorbar -n '__vantorbar_at history follow' -l since -x -d 'Begin behind that ID'
complete -c vantorbar -n '__vantorbar_at history follow' -l count -x -d 'End after that many lines'
complete -c vantorbar -n '__vantorbar_at history follow' -l scenario -r -F -d 'Follow a scripted machine'

complete -c vantorbar -n '__vantorbar_at simulate' -F
complete -c vantorbar -n '__vantorbar_at simulate' -l out -r -F -d 'The folder for the results'
complete -c vantorbar -n '__vantorbar_at simulate' -l no-events -d 'No events.jsonl'

complete -c vantorbar -n '__vantorbar_at record' -F
complete -c vantorbar -n '__vantorbar_at record' -l seconds -x -d 'How long to listen'

complete -c vantorbar -n '__vantorbar_at snapshot' -F
complete -c vantorbar -n '__vantorbar_at snapshot' -l wait -x -d 'Measure for so long first'
complete -c vantorbar -n '__vantorbar_at snapshot' -l scale -x -a '1 2 3' -d 'Pixels a point'
complete -c vantorbar -n '__vantorbar_at snapshot' -l dark -d 'As on a dark desktop'
complete -c vantorbar -n '__vantorbar_at snapshot' -l contrast -d 'As with increased contrast'
complete -c vantorbar -n '__vantorbar_at snapshot' -l menu-open -d 'As while its menu is open'
complete -c vantorbar -n '__vantorbar_at snapshot' -l dropdown -d 'Not the item, but its dropdown'
complete -c vantorbar -n '__vantorbar_at snapshot' -l submenu -x -a 'cores history load uptime' -d 'Of the dropdown'
complete -c vantorbar -n '__vantorbar_at snapshot' -l background -x -d 'Behind the item'
complete -c vantorbar -n '__vantorbar_at snapshot' -l set -x -a '(__vantorbar_keys)=' -d 'Another setting'
complete -c vantorbar -n '__vantorbar_at snapshot' -l catalogue -d 'All rows of the dropdown'

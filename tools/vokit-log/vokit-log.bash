# Completion of vokit-log in bash. Needs nothing but bash.

# The words of a list, one a line, that begin as what is typed does, whatever the case.
_vokit_log_words()
{
    local typed=${1,,} word
    while IFS= read -r word; do
        [[ ${word,,} == "$typed"* ]] && COMPREPLY+=("${3-}$word")
    done <<<"$2"
}

_vokit_log_files()
{
    # Then bash quotes what needs it, and tells folders from files.
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

# Categories have blanks in their names, and may stand in a list with commas.
_vokit_log_categories()
{
    local typed=${1#[\"\']} before=
    typed=${typed//\\/}
    [[ $typed == *,* ]] && before=${typed%,*}, typed=${typed##*,}
    compopt -o filenames 2>/dev/null
    _vokit_log_words "$typed" "None
Access
Logon & Logoff
User & Groups
Authorize
Software updates
Camera Settings
Web browser
Network messages
Softbuttons
Formatting
Voco configuration
Quit
Layout Manager
Display scaling
Context menus
Upload Assistant
Action log
Event Search
Export
Local archive
Video search
Play
Viewing
Alarm
Sequencer
Layout
Audio
PTZ
PTZ post
PTZ config
PTZ post config
Signal outs
Error
Remote control
Devices
System" "$before"
}

_vokit_log()
{
    local typed=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local verb=${COMP_WORDS[1]} options formats i
    COMPREPLY=()
    # "--format=json" comes as three words.
    if [[ $typed == = ]]; then
        typed=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    if ((COMP_CWORD == 1)); then
        _vokit_log_words "$typed" $'show\nreport\ncheck\nrecover\n--help\n--version'
        return
    fi

    local common=$'--locale\n--help\n-h'
    local filters=$'--category\n--user\n--id\n--since\n--until\n--contains\n--filter\n--save-filter'
    case $verb in
    show)
        options=$'--format\n--follow\n-f\n--color\n'$filters$'\n'$common
        formats=$'prose\ncsv\njson\nxml'
        ;;
    report)
        options=$'--by\n--format\n'$filters$'\n'$common
        formats=$'table\ncsv\njson'
        ;;
    check)
        options=$'--gaps\n--format\n--quiet\n-q\n'$common
        formats=$'text\njson'
        ;;
    recover)
        options=$'--output\n-o\n--report\n--force\n'$common
        ;;
    *)
        return
        ;;
    esac

    for ((i = 2; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} == -- ]]; then # no option behind it
            _vokit_log_files "$typed"
            return
        fi
    done
    # An option of another verb is none here, and has no value.
    [[ $'\n'$options$'\n' == *$'\n'$before$'\n'* ]] || before=
    case $before in
    --format) _vokit_log_words "$typed" "$formats" ;;
    --by) _vokit_log_words "$typed" $'user\ncategory\nday\naction' ;;
    --color) _vokit_log_words "$typed" $'auto\nalways\nnever' ;;
    --category) _vokit_log_categories "$typed" ;;
    --since | --until) _vokit_log_words "$typed" $'today\nyesterday' ;;
    --user | --id | --contains | --locale) ;;
    *)
        if [[ $typed == -* ]]; then
            _vokit_log_words "$typed" "$options"
        else
            _vokit_log_files "$typed"
        fi
        ;;
    esac
}

complete -F _vokit_log vokit-log

#!/usr/bin/python3
"""Makes the completions of bash, zsh and fish from the program's description of its commands.

    make_completions.py COMMANDS.json FOLDER

Each knows the commands, their options, the values of options that have a fixed choice, the names of settings, and which
endings the files of an option have. The same description gives the same bytes.
"""

import pathlib
import re
import sys

import command_tree

FROM = "# Made from the program's own description of its commands.\n"


def sentence(text):
    """A description on one line, without what the lines below it say."""
    return " ".join(text.split("\n")[0].split())


def path_of(command):
    return " ".join(command.path[1:])


def options_at(command, program):
    """What may follow the command: its own options, and those that are understood everywhere."""
    own = list(command.options)
    if command is not program:
        own += [option for option in program.everywhere() if not set(option.names) & {n for o in own for n in o.names}]
    return own


def kind_of(option):
    """What its value is: "" for a flag, else "choice a b", "setting", "setting=" (with a value behind), "file csv",
    "file" or "any"."""
    if option.names[0].startswith("-") and not option.value:
        return ""
    if option.choices:
        return "choice " + " ".join(option.choices)
    if option.names_setting():
        return "setting=" if "=" in option.value else "setting"
    endings = option.endings()
    if endings is None and not option.names[0].startswith("-") and option.names[0] in ("FILE", "PATH"):
        endings = []
    return "any" if endings is None else " ".join(["file", *endings])


# ---- bash ------------------------------------------------------------------------------------------------------

BASH_HEAD = """# Completion of terrain-profiler for bash.
"""
BASH_TAIL = r"""
# The value of the kind $1, as far as $2 says it.
_terrain_profiler_value()
{
    local kind=$1 word=$2 ending
    case $kind in
        "choice "*) mapfile -t COMPREPLY < <(compgen -W "${kind#choice }" -- "$word") ;;
        setting) mapfile -t COMPREPLY < <(compgen -W "$_terrain_profiler_settings" -- "$word") ;;
        setting=)
            compopt -o nospace 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -S = -W "$_terrain_profiler_settings" -- "$word")
            ;;
        file)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            ;;
        "file "*)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(
                compgen -d -- "$word"
                for ending in ${kind#file }; do compgen -f -X "!*.$ending" -- "$word"; done
            )
            ;;
    esac
}

_terrain_profiler()
{
    local word=${COMP_WORDS[COMP_CWORD]} path="" expected="" known kind before i
    local commands options arguments given=0
    COMPREPLY=()
    _terrain_profiler_command ""
    for ((i = 1; i < COMP_CWORD; i++)); do
        before=${COMP_WORDS[i]}
        if [[ $before == "=" ]]; then
            # bash makes three words of --option=value, and of the value SECTION/KEY=VALUE.
            [[ -n $expected ]] || expected=any
        elif [[ -n $expected ]]; then
            expected=""
        elif [[ $before == -?* ]]; then
            _terrain_profiler_option "$path" "$before"
            expected=$kind
        elif [[ " $commands " == *" $before "* ]]; then
            path="${path:+$path }$before"
            given=0
            _terrain_profiler_command "$path"
        else
            given=$((given + 1))
        fi
    done
    if [[ $word == "=" ]]; then
        [[ -n $expected ]] || return
        word=""
    fi
    if [[ -n $expected ]]; then
        _terrain_profiler_value "$expected" "$word"
    elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    else
        # The last argument of a command may stand several times.
        known=${#arguments[@]}
        if ((known > 0)); then
            _terrain_profiler_value "${arguments[given < known ? given : known - 1]}" "$word"
        fi
        if [[ -n $commands ]]; then
            mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$commands" -- "$word")
        fi
    fi
}
complete -F _terrain_profiler terrain-profiler
"""


def bash(program):
    lines = [BASH_HEAD + FROM, "_terrain_profiler_settings='" + " ".join(s["name"] for s in program.settings) + "'", ""]
    lines += ["# Commands, options and arguments that may follow the commands $1.", "_terrain_profiler_command()", "{", "    case $1 in"]
    for command in program.all():
        names = " ".join(name for option in options_at(command, program) for name in option.names)
        arguments = " ".join('"' + kind_of(argument) + '"' for argument in command.arguments)
        lines += [
            '        "' + path_of(command) + '")',
            '            commands="' + " ".join(child.name for child in command.commands) + '"',
            '            options="' + names + '"',
            "            arguments=(" + arguments + ")",
            "            ;;",
        ]
    lines += ["    esac", "}", ""]
    lines += ["# Sets kind to what the value of option $2 of the commands $1 is; to nothing for a flag.", "_terrain_profiler_option()", "{", '    kind=""', '    case "$1 $2" in']
    for command in program.all():
        for option in options_at(command, program):
            kind = kind_of(option)
            if kind:
                patterns = " | ".join('"' + path_of(command) + " " + name + '"' for name in option.names)
                lines.append("        " + patterns + ') kind="' + kind + '" ;;')
    lines += ["    esac", "}"]
    return "\n".join(lines) + "\n" + BASH_TAIL


# ---- zsh -------------------------------------------------------------------------------------------------------


def zsh_text(text):
    """Inside an argument of zsh in single quotes."""
    text = re.sub(r"([\[\]:\\])", r"\\\1", sentence(text))
    return text.replace("'", "'\\''")


def zsh_value(option):
    kind, _, details = kind_of(option).partition(" ")
    if kind == "choice":
        return "(" + details + ")"
    if kind.startswith("setting"):
        return "_terrain-profiler-setting-names" + (" -S =" if kind.endswith("=") else "")
    if kind == "file":
        return '_files -g "*.(' + details.replace(" ", "|") + ')(-.)"' if details else "_files"
    return " "


def zsh_option(option):
    text = "[" + zsh_text(option.description) + "]"
    if option.value:
        text += ":" + zsh_text(option.value) + ":" + zsh_value(option)
    names = option.names
    if option.repeatable:
        return "'*" + names[0] + text + "'"
    if len(names) == 1:
        return "'" + names[0] + text + "'"
    return "'(" + " ".join(names) + ")'{" + ",".join(names) + "}'" + text + "'"


def zsh_function(command, program):
    name = "_".join(["_terrain-profiler", *command.path[1:]])
    specs = [zsh_option(option) for option in options_at(command, program)]
    lines = [name + "() {"]
    if command.commands:
        lines += ['  local curcontext="$curcontext" state line', "  typeset -A opt_args", "  _arguments -C \\"]
        specs += ["'1: :->command'", "'*:: :->rest'"]
    else:
        lines.append("  _arguments \\")
        for i, argument in enumerate(command.arguments):
            place = "*" if argument.repeatable else str(i + 1)
            specs.append("'" + place + ":" + zsh_text(argument.names[0]) + ":" + zsh_value(argument) + "'")
    lines += ["    " + spec + (" \\" if spec is not specs[-1] else "") for spec in specs]
    if command.commands:
        lines += ["  case $state in", "    command)", "      local -a commands=("]
        lines += ["        '" + child.name + ":" + zsh_text(child.description) + "'" for child in command.commands]
        lines += ["      )", "      _describe command commands"]
        lines += ["      " + zsh_value(argument) for argument in command.arguments]
        lines += ["      ;;", "    rest)", "      case $line[1] in"]
        lines += ["        " + child.name + ") " + name + "_" + child.name + " ;;" for child in command.commands]
        lines += ["      esac", "      ;;", "  esac"]
    return lines + ["}", ""]


def zsh(program):
    lines = ["#compdef terrain-profiler", "# Completion of terrain-profiler for zsh.", FROM]
    lines += ["_terrain-profiler-setting-names() {", "  local -a settings=("]
    lines += ["    '" + s["name"] + ":" + zsh_text(s["meaning"]) + "'" for s in program.settings]
    lines += ["  )", "  _describe setting settings \"$@\"", "}", ""]
    for command in program.all():
        lines += zsh_function(command, program)
    lines.append('_terrain-profiler "$@"')
    return "\n".join(lines) + "\n"


# ---- fish ------------------------------------------------------------------------------------------------------

FISH_HEAD = """# Completion of terrain-profiler for fish.
"""
FISH_FUNCTIONS = r"""
# Prints the commands that were given, and how many arguments stand behind them.
function __terrain_profiler_place
    set -l path
    set -l given 0
    set -l skip 0
    for word in (commandline -opc)[2..]
        if test $skip = 1
            set skip 0
        else if string match -q -- '-*' $word
            contains -- $word $__terrain_profiler_valued; and set skip 1
        else if contains -- (string join ' ' $path $word) $__terrain_profiler_paths
            set -a path $word
            set given 0
        else
            set given (math $given + 1)
        end
    end
    echo (string join ' ' $path)
    echo $given
end

function __terrain_profiler_at
    set -l place (__terrain_profiler_place)
    test "$place[1]" = "$argv[1]"
end

# Whether the argument of number $argv[2] or above comes next.
function __terrain_profiler_argument
    set -l place (__terrain_profiler_place)
    test "$place[1]" = "$argv[1]"; and test $place[2] $argv[3] $argv[2]
end
"""


def fish_quoted(text):
    return "'" + sentence(text).replace("\\", "\\\\").replace("'", "\\'") + "'"


def fish_value(option):
    kind, _, details = kind_of(option).partition(" ")
    if kind == "choice":
        return " -f -a " + fish_quoted(details)
    if kind.startswith("setting"):
        ending = "=" if kind.endswith("=") else ""
        return " -f -a '$__terrain_profiler_settings" + ending + "'"
    if kind == "file":
        endings = " ".join("." + ending for ending in details.split())
        # The suffixes come first; others are offered behind them.
        return " -k -f -a '(" + "; ".join("__fish_complete_suffix " + e for e in endings.split()) + ")'" if endings else " -F"
    return " -f"


def fish_option(option):
    text = ""
    for name in option.names:
        text += " -l " + name[2:] if name.startswith("--") else " -s " + name[1:]
    if option.value:
        text += " -r" + fish_value(option)
    return text + " -d " + fish_quoted(option.description)


def fish(program):
    valued = sorted({name for c in program.all() for o in c.options if o.value for name in o.names})
    lines = [
        FISH_HEAD + FROM,
        "set -g __terrain_profiler_settings " + " ".join(s["name"] for s in program.settings),
        "set -g __terrain_profiler_valued " + " ".join(valued),
        "set -g __terrain_profiler_paths " + " ".join("'" + path_of(c) + "'" for c in list(program.all())[1:]),
        FISH_FUNCTIONS,
        "complete -c terrain-profiler -f",
    ]
    for command in program.all():
        place = "complete -c terrain-profiler -n '__terrain_profiler_at \"" + path_of(command) + "\"'"
        lines += [place + " -a " + child.name + " -d " + fish_quoted(child.description) for child in command.commands]
        lines += [place + fish_option(option) for option in options_at(command, program)]
        for i, argument in enumerate(command.arguments):
            test = "-ge" if argument.repeatable else "-eq"
            lines.append(
                "complete -c terrain-profiler -n '__terrain_profiler_argument \"" + path_of(command) + '" ' + str(i) + " " + test + "'" + fish_value(argument)
            )
    return "\n".join(lines) + "\n"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program = command_tree.read(sys.argv[1])
    folder = pathlib.Path(sys.argv[2])
    (folder / "terrain-profiler.bash").write_text(bash(program), encoding="utf-8")
    (folder / "_terrain-profiler").write_text(zsh(program), encoding="utf-8")
    (folder / "terrain-profiler.fish").write_text(fish(program), encoding="utf-8")


if __name__ == "__main__":
    main()

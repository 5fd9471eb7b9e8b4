"""The command line as the program describes it: commands.json, see host/command_line/command_tree.h."""

import json
import re


class Option:
    """An option, or an argument without dashes."""

    def __init__(self, tree):
        self.names = tree["names"]
        self.value = tree["value"]
        self.choices = tree["choices"]
        self.default = tree["default"]
        self.description = tree["description"]
        self.required = tree["required"]
        self.repeatable = tree["repeatable"]

    def endings(self):
        """Endings of the files that the value names (["csv"]); empty for any, None when it names no file."""
        if not re.search(r"FILE|PATH", self.value):
            return None
        return sorted(set(re.findall(r"\.([a-z]+)", self.value)))

    def names_setting(self):
        return "SECTION/KEY" in (self.value or "") or "SECTION/KEY" in self.names


class Command:
    """A command with what stands below it; the program itself is the uppermost."""

    def __init__(self, tree, above=()):
        self.path = (*above, tree["name"])
        self.description = tree["description"]
        self.footer = tree["footer"]
        self.options = [Option(option) for option in tree["options"]]
        self.arguments = [Option(argument) for argument in tree["arguments"]]
        self.commands = [Command(command, self.path) for command in tree["commands"]]

    @property
    def name(self):
        return self.path[-1]

    def all(self):
        """This command and all below it, in their order."""
        yield self
        for command in self.commands:
            yield from command.all()


class Program(Command):
    def __init__(self, tree):
        super().__init__(tree)
        self.version = tree["version"]
        self.settings = tree["settings"]

    def everywhere(self):
        """The options that are understood in front of a command and behind it."""
        return [option for option in self.options if option.value and option.names[0].startswith("-")]


def read(path):
    with open(path, encoding="utf-8") as file:
        return Program(json.load(file))

"""An application with cliff: its commands are entry points, in modules that bench/peers.sh writes."""
import sys

from cliff.app import App
from cliff.command import Command
from cliff.commandmanager import CommandManager


class ListCommand(Command):
    """What all commands share. The description of each is its documentation text."""

    def get_parser(self, prog_name):
        parser = super().get_parser(prog_name)
        parser.add_argument("--device", "-d", action="append",
                            help="The devices to list; all of them unless one is named.")
        parser.add_argument("--state", "-s", choices=["online", "offline"],
                            help="Only devices in this state.")
        parser.add_argument("--depth", type=int, help="How many levels below each device to list.")
        parser.add_argument("--all", "-a", action="store_true", help="List hidden devices, too.")
        return parser

    def take_action(self, parsed_args):
        pass


if __name__ == "__main__":
    # Deferred: --help behind a command is help of that command.
    app = App("Devices.", "1.0", CommandManager("devices.commands"), deferred_help=True)
    sys.exit(app.run(sys.argv[1:]))

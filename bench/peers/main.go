// An application with cobra and the commands of the descriptors compiled in: commands.go, which
// bench/peers.sh writes, calls addUnit and addList for each.
package main

import (
	"os"

	"github.com/spf13/cobra"
)

var root = &cobra.Command{Use: "devices"}

func addUnit(name string) *cobra.Command {
	unit := &cobra.Command{Use: name, Short: "Devices of one kind."}
	root.AddCommand(unit)
	return unit
}

func addList(unit *cobra.Command, name string, description string) {
	list := &cobra.Command{Use: name, Short: description, Run: func(*cobra.Command, []string) {}}
	list.Flags().StringSliceP("device", "d", nil, "The devices to list; all of them unless one is named.")
	list.Flags().StringP("state", "s", "", "Only devices in this state: online, offline")
	list.Flags().Int("depth", 0, "How many levels below each device to list.")
	list.Flags().BoolP("all", "a", false, "List hidden devices, too.")
	unit.AddCommand(list)
}

func main() {
	if root.Execute() != nil {
		os.Exit(1)
	}
}

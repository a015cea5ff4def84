#include "corvel/autocli/plugins/ShellPrograms.h"

#include <algorithm>
#include <array>

namespace Corvel::AutoCli {

namespace {

using enum CodeIn;

// Names without folder and version, in alphabetical order.
constexpr auto kInterpreters = std::to_array<Interpreter>({
    {".", EveryWord},
    {"[", Comparisons},
    {"alias", EveryWord},
    {"ash", Options, "c"},
    {"at", Input},
    {"awk", FirstWord, "e", "vFfi"},
    {"bash", Options, "c"},
    {"batch", Input},
    {"bun", Options, "ep"},
    {"compgen", EveryWord},
    {"crontab", Input},
    {"csh", Options, "c"},
    {"dash", Options, "c"},
    {"dc", Options, "e", {}, true},
    {"declare", Declarations, "Aain"},
    {"deno", Options, "ep"},
    {"dsh", EveryWord},
    {"ed", Options, {}, {}, true},
    {"elvish", Options, "c"},
    {"emacs", Options, ""},
    {"enable", EveryWord},
    {"eval", EveryWord},
    {"ex", Options, "c", {}, true},
    {"expect", Options, "c"},
    {"export", Declarations, "Aain"},
    {"fish", Options, "cC"},
    {"flock", Options, "c"},
    {"ftp", Input},
    {"gawk", FirstWord, "e", "vFfi"},
    {"gdb", Options, "e", {}, true},
    {"getopts", Names},
    {"ghci", Options, "e"},
    {"global", Declarations, "Aain"},
    {"gmake", EveryWord},
    {"gnuplot", Options, "e"},
    {"groovy", Options, "e"},
    {"guile", Options, "c"},
    {"hush", Options, "c"},
    {"integer", Declarations},
    {"ipython", Options, "c"},
    {"irb", Options, "e"},
    {"julia", Options, "eE"},
    {"ksh", Options, "c"},
    {"let", EveryWord},
    {"lftp", Options, "ce", {}, true},
    {"lksh", Options, "c"},
    {"local", Declarations, "Aain"},
    {"lua", Options, "e"},
    {"luajit", Options, "e"},
    {"m4", Options},
    {"make", EveryWord},
    {"mapfile", Names},
    {"mariadb", Options, "e", {}, true},
    {"mawk", FirstWord, "e", "vFfW"},
    {"mksh", Options, "c"},
    {"mongo", Options, {}, {}, true},
    {"mongosh", Options, {}, {}, true},
    {"mysql", Options, "e", {}, true},
    {"nameref", Declarations},
    {"nawk", FirstWord, "e", "vFf"},
    {"node", Options, "ep"},
    {"nodejs", Options, "ep"},
    {"nvim", Options, "c"},
    {"ocaml", Options, "e"},
    {"octave", Options},
    {"oksh", Options, "c"},
    {"osh", Options, "c"},
    {"parallel", EveryWord},
    {"pdksh", Options, "c"},
    {"pdsh", EveryWord},
    {"perl", Options, "eE"},
    {"php", Options, "rBRE"},
    {"posh", Options, "c"},
    {"print", NameOption, "A"},
    {"printf", NameOption, "v"},
    {"psql", Options, "c", {}, true},
    {"pssh", EveryWord},
    {"pwsh", Options, "ce"},
    {"pypy", Options, "c"},
    {"python", Options, "c"},
    {"R", Options, "e"},
    {"rbash", Options, "c"},
    {"rc", Options, "c"},
    {"read", Names},
    {"readarray", Names},
    {"readonly", Declarations, "Aain"},
    {"rksh", Options, "c"},
    {"Rscript", Options, "e"},
    {"rsh", EveryWord, {}, "l", true},
    {"ruby", Options, "e"},
    {"runuser", Options, "c", {}, true},
    {"sash", Options, "c"},
    {"sbcl", Options},
    {"screen", EveryWord},
    {"script", Options, "c"},
    {"sed", FirstWord, "e", "fl"},
    {"sftp", Input},
    {"sh", Options, "c"},
    {"shift", EveryWord},
    {"source", EveryWord},
    {"sqlite", EveryWord, {}, {}, true},
    {"ssh", EveryWord, {}, "BbcDEeFIiJLlmOopQRSWw", true},
    {"su", Options, "c", {}, true},
    {"swipl", Options, "gt"},
    {"tclsh", Options},
    {"tcsh", Options, "c"},
    {"test", Comparisons},
    {"tmux", EveryWord},
    {"trap", EveryWord},
    {"typeset", Declarations, "Aain"},
    {"ulimit", EveryWord},
    {"unset", EveryWord},
    {"vi", Options, "c"},
    {"vim", Options, "c"},
    {"wait", NameOption, "p"},
    {"watch", EveryWord},
    {"yash", Options, "c"},
    {"zsh", Options, "c"},
});

constexpr auto kRunners = std::to_array<Runner>({
    {"-exec"},
    {"-execdir"},
    {"-ok"},
    {"-okdir"},
    {"builtin", 0, false, {}, ""},
    {"busybox", 0, false, {}, ""},
    {"bwrap"},
    {"capsh"},
    {"cgexec"},
    {"chpst"},
    {"chroot", 1, false, {}, ""},
    {"chrt", 1, false, {}, "TPD"},
    {"command", 0, false, {}, ""},
    {"coproc"},
    {"dbus-run-session"},
    {"doas", 0, false, "s", "uC"},
    {"eatmydata", 0, false, {}, ""},
    {"env", 0, false, {}, "uCS"},
    {"exec", 0, false, {}, "a"},
    {"fakeroot"},
    {"faketime"},
    {"firejail"},
    {"flock", 1, false, {}, "wEc"},
    {"gosu", 1, false, {}, ""},
    {"ionice", 0, false, {}, "cnpPu"},
    {"jobs"},
    {"ltrace"},
    {"nice", 0, false, {}, "n"},
    {"nohup", 0, false, {}, ""},
    {"nsenter"},
    {"numactl"},
    {"prlimit"},
    {"proxychains"},
    {"rlwrap"},
    {"runcon"},
    {"setarch", 1},
    {"setpriv"},
    {"setsid", 0, false, {}, ""},
    {"setuidgid", 1, false, {}, ""},
    {"softlimit"},
    {"start-stop-daemon"},
    {"stdbuf", 0, false, {}, "ioe"},
    {"strace"},
    {"su-exec", 1, false, {}, ""},
    {"sudo", 0, false, "is", "ugpCcrtTUDRh"},
    {"systemd-run"},
    {"taskset", 1, false, {}, ""},
    {"time", 0, false, {}, "fo"},
    {"timeout", 1, false, {}, "ks"},
    {"torsocks"},
    {"toybox", 0, false, {}, ""},
    {"unbuffer"},
    {"unshare"},
    {"valgrind"},
    {"xargs", 0, true, {}, "aEILnPsd"},
    {"xvfb-run"},
});

/// The name of the program that the word runs: without folder and version.
std::string_view ProgramName(const ShellWord& word) {
    std::string_view name = word.text;
    name.remove_prefix(std::min(name.rfind('/') + 1, name.size()));
    while (name.size() > 1 && std::string_view("0123456789.-").find(name.back()) != name.npos) {
        name.remove_suffix(1);
    }
    return name;
}

/// Whether the name comes from an expansion, so that the word may run anything.
bool IsUnknownProgram(const ShellWord& word) {
    return !word.isKnown && ProgramName(word).find(ShellWord::kExpanded) != std::string_view::npos;
}

}  // namespace

const Interpreter* FindInterpreter(const ShellWord& word) {
    static constexpr Interpreter kUnknown = {"", Options, "ce"};
    if (IsUnknownProgram(word)) {
        return &kUnknown;
    }
    const std::string_view name = ProgramName(word);
    const auto* found = std::find_if(kInterpreters.begin(),
                                     kInterpreters.end(),
                                     [&](const Interpreter& known) { return known.name == name; });
    return found == kInterpreters.end() ? nullptr : found;
}

const Runner* FindRunner(const ShellWord& word) {
    static constexpr Runner kUnknown = {""};
    if (IsUnknownProgram(word)) {
        return &kUnknown;
    }
    const std::string_view name = ProgramName(word);
    const auto* found = std::find_if(
        kRunners.begin(), kRunners.end(), [&](const Runner& known) { return known.name == name; });
    return found == kRunners.end() ? nullptr : found;
}

}  // namespace Corvel::AutoCli

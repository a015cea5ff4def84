#include "corvel/autocli/plugins/ShellCommand.h"

#include <unistd.h>

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include <boost/algorithm/string/replace.hpp>

#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/ChildProcess.h"
#include "corvel/platform/ErrorText.h"
#include "corvel/platform/Pipe.h"
#include "corvel/platform/Platform.h"
#include "corvel/platform/StandardStreams.h"

namespace Corvel::AutoCli {

namespace {

using Platform::ChildProcess;
using Platform::Pipe;

constexpr int kCallersPool = -1;

std::string (*optionMaker)(int) = nullptr;
void (*execListener)(const std::string&, int) = nullptr;

/// Raises the context followed by the system's text, unless there was no error.
void RequireSuccess(int error, const std::string& context) {
    if (error != 0) {
        throw CorvelException(context + Platform::ErrorText(error));
    }
}

std::string StatusText(std::uint64_t code) {
    std::array<char, 200> text{};
    NukuserStatus_CodeToString(code, text.data(), text.size(), 0);
    return text.data();
}

std::vector<std::string> ShellArguments(const std::string& command) {
    std::vector<std::string> arguments{"/bin/sh"};
    if (std::string option = MakeChildRpNukOption(kCallersPool); !option.empty()) {
        arguments.push_back(std::move(option));
    }
    arguments.emplace_back("-c");
    arguments.push_back(command);
    return arguments;
}

/// Starts the shell between two pipes, of whose ends the caller keeps only its own.
void StartShell(ChildProcess& shell, const std::string& command, Pipe& input, Pipe& output) {
    RequireSuccess(input.Open(), "Can't create input pipe: ");
    RequireSuccess(output.Open(), "Can't create output pipe: ");
    const std::vector<std::string> arguments = ShellArguments(command);
    // What the caller has printed so far must stand before what the child prints.
    Platform::FlushStandardOutput();
    const std::uint64_t code =
        shell.Start(arguments, {input.readEnd.Get(), output.writeEnd.Get(), STDERR_FILENO});
    input.readEnd.Close();
    output.writeEnd.Close();
    if (static_cast<std::uint32_t>(code) != 0) {
        throw CorvelException("Failed to call process '" + command + "': " + StatusText(code));
    }
}

}  // namespace

int AutoCli_ShellCmd(const std::string& command, std::string& output, const std::string& input) {
    // Declared before the pipes: when an exception unwinds, these close first, which makes most
    // children end and so lets them be reaped.
    ChildProcess shell;
    Pipe inputPipe;
    Pipe outputPipe;
    StartShell(shell, command, inputPipe, outputPipe);

    // Deliberate: all input is written before any output is read.
    RequireSuccess(inputPipe.writeEnd.WriteAll(input), "Unable to write to sub-process: ");
    inputPipe.writeEnd.Close();
    RequireSuccess(outputPipe.readEnd.ReadToEnd(output), "Unable to read from sub-process: ");
    outputPipe.readEnd.Close();

    int status = 0;
    RequireSuccess(shell.Wait(status), "Error waiting for process '" + command + "': ");
    if (execListener != nullptr) {
        execListener(command, status);
    }
    return status;
}

int AutoCli_ShellCmdWithQuenUsername(const std::string& command,
                                     const std::string& userName,
                                     std::string& output,
                                     const std::string& input) {
    if (userName.empty()) {
        return AutoCli_ShellCmd(command, output, input);
    }
    const std::string quoted = boost::algorithm::replace_all_copy(userName, "'", "'\\''");
    return AutoCli_ShellCmd("QUEN_USERNAME='" + quoted + "' " + command, output, input);
}

void SetChildRpNukOptionMaker(std::string (*maker)(int)) {
    optionMaker = maker;
}

void SetCommandExecListener(void (*listener)(const std::string&, int)) {
    execListener = listener;
}

std::string MakeChildRpNukOption(int id) {
    return optionMaker == nullptr ? std::string() : optionMaker(id);
}

}  // namespace Corvel::AutoCli

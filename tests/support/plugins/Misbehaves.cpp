#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>
#include <memory>
#include <string>

#include "corvel/autocli/Namespace.h"

namespace {

/// Groups digits by single ones, and holds a hyphen for a letter.
void ChangeLocale() {
    class Punctuation : public std::numpunct<char> {
        char do_thousands_sep() const override { return '_'; }
        std::string do_grouping() const override { return "\1"; }
        std::string do_truename() const override { return "aye"; }
    };
    static std::ctype<char>::mask classes[std::ctype<char>::table_size];
    const auto* const usual = std::ctype<char>::classic_table();
    for (std::size_t c = 0; c < std::ctype<char>::table_size; ++c) {
        classes[c] = usual[c];
    }
    classes[static_cast<unsigned char>('-')] = usual[static_cast<unsigned char>('a')];
    const std::locale punctuated(std::locale::classic(), new Punctuation);
    const std::locale odd(punctuated, new std::ctype<char>(classes));
    std::locale::global(odd);
    std::setlocale(LC_ALL, "C.UTF-8");
    std::cout.imbue(odd);
    std::cout << std::hex << std::showbase << std::boolalpha;
    std::cout.width(40);
    std::cout.fill('*');
}

/// Leaves a child behind that ends as if all were well, and waits for it.
void ForkAndExit() {
    const pid_t child = fork();
    if (child == 0) {
        std::exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    if (status != 0) {
        std::abort();
    }
}

[[maybe_unused]] void Misbehave() {
    [[maybe_unused]] const auto changeLocale = &ChangeLocale;
    [[maybe_unused]] const auto forkAndExit = &ForkAndExit;
    BEHAVIOUR;
}

#ifdef IN_INITIALISER
__attribute__((constructor)) void Initialise() {
    Misbehave();
}
#endif

}  // namespace

extern "C" __attribute__((visibility("default"))) void AutoCli_RegisterNamespaces(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the signature of every entry point
    std::shared_ptr<Corvel::AutoCli::Namespace>) {
#ifndef IN_INITIALISER
    Misbehave();
#endif
}

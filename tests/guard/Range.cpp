#include "tests/guard/Range.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellGuard.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/guard/Corpus.h"

namespace Corvel::Testing {

namespace {

std::string Shown(const CallValues& values) {
    std::string text;
    for (const auto& [name, all] : values) {
        for (const std::string& value : all) {
            text += name + " = " + testing::PrintToString(value) + "\n";
        }
    }
    return text;
}

}  // namespace

bool IsRefused(const AutoCli::TemplateText& line) {
    try {
        AutoCli::RefuseUnsafeValues(line);
    } catch (const CorvelException&) {
        return true;
    }
    return false;
}

Range::Range(const std::vector<std::string>& canaries) : _canaries(canaries) {
    for (const Shell& shell : Shells()) {
        _aviaries.push_back(std::make_unique<Aviary>(shell, _canaries));
    }
}

Range::~Range() {
    std::size_t started = 0;
    for (const auto& aviary : _aviaries) {
        started += aviary->Started();
    }
    std::cout << _attempts << " attempts, " << _refused << " refused, " << _lines
              << " different lines let through to " << _aviaries.size() << " shells in " << started
              << " processes\n";
}

void Range::Attempt(const std::string& text, const CallValues& values) {
    ++_attempts;
    const AutoCli::TemplateText line = Expanded(text, values);
    if (IsRefused(line)) {
        ++_refused;
    } else if (std::string rendered = line.Render(); _values.try_emplace(rendered, values).second) {
        _pending.push_back(std::move(rendered));
    }
}

void Range::Run(const std::string& text) {
    _lines += _pending.size();
    for (const auto& aviary : _aviaries) {
        const Aviary::Flight flight = aviary->RunAll(_pending);
        if (flight.line < _pending.size()) {
            const std::string& line = _pending[flight.line];
            ADD_FAILURE() << aviary->Name() << " ran " << testing::PrintToString(flight.canaries)
                          << "\ntemplate: " << text << "\nline: " << testing::PrintToString(line)
                          << "\n"
                          << Shown(_values.at(line));
        }
        // A template that writes into a file may let the value name it.
        if (aviary->CleanUp() && text.find('>') == std::string::npos) {
            ADD_FAILURE() << aviary->Name() << " wrote a file\ntemplate: " << text;
        }
    }
    _pending.clear();
    _values.clear();
}

bool Range::IsUnfit(const std::string& text) {
    const std::string line =
        Expanded(text, {{kFirst, {"zz"}}, {kSecond, {"zz"}}, {kList, {"zz"}}}).Render();
    try {
        return std::any_of(_aviaries.begin(), _aviaries.end(), [&](const auto& aviary) {
            return !aviary->Run(line).empty();
        });
    } catch (const ShellHangs&) {
        return true;
    }
}

}  // namespace Corvel::Testing

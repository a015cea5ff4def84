#include "tests/scale/Case.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <corvel/corvel.h>

namespace Corvel::Scale {

namespace {

std::shared_ptr<AutoCli::Formatter> MakeFormatter(const std::string& name) {
    using namespace AutoCli;  // NOLINT(google-build-using-namespace): seven names of one kind
    const std::pair<const char*, std::shared_ptr<Formatter>> formatters[] = {
        {"simple", SimpleFormatter::New()},
        {"table", TableFormatter::New()},
        {"xml", XmlFormatter::New()},
        {"json", JsonFormatter::New()},
        {"python", PythonFormatter::New()},
        {"clihelp", CliDispatcherHelpFormatter::New()},
        {"commandhelp", CommandHelpFormatter::New()},
    };
    const auto* found = std::find_if(std::begin(formatters),
                                     std::end(formatters),
                                     [&name](const auto& each) { return each.first == name; });
    Require(found != std::end(formatters), "a formatter named " + name);
    return found->second;
}

}  // namespace

void Require(bool isTrue, const std::string& expectation) {
    if (!isTrue) {
        throw std::runtime_error("Expected: " + expectation);
    }
}

std::string Repeated(const std::string& text, std::size_t count) {
    std::string repeated;
    repeated.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

std::string TooLongForShell() {
    constexpr std::size_t kMostOfOneArgument = 131'072;
    return std::string(kMostOfOneArgument, ' ');
}

std::streamsize CountingBuffer::xsputn(const char* text, std::streamsize size) {
    _bytes += static_cast<std::size_t>(size);
    _lines += static_cast<std::size_t>(std::count(text, text + size, '\n'));
    return size;
}

CountingBuffer::int_type CountingBuffer::overflow(int_type character) {
    const char one = traits_type::to_char_type(character);
    xsputn(&one, 1);
    return character;
}

std::size_t CountLines(const std::shared_ptr<MetaObj::MetaObject>& value, const Style& style) {
    const auto output = CallSpec::Output::New();
    output->SetRootObject(value);
    AutoCli::FormatParameters parameters;
    for (const std::string& parameter : style.parameters) {
        const std::size_t equals = parameter.find('=');
        parameters.SetParameter(parameter.substr(0, equals), parameter.substr(equals + 1));
    }
    AutoCli::DisplayContext display;
    display.width = style.screenWidth;
    CountingBuffer buffer;
    std::ostream stream(&buffer);
    const bool isComplete =
        MakeFormatter(style.formatter)->Format(output, parameters, display, stream);
    Require(isComplete && stream.good(), std::string("all is printed by ") + style.formatter);
    return buffer.Lines();
}

}  // namespace Corvel::Scale

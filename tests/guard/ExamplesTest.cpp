#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <boost/algorithm/string/replace.hpp>
#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellGuard.h"
#include "tests/support/ExpandedTemplate.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

namespace {

/// The execute templates of a descriptor.
std::vector<std::string> TemplatesOf(const std::filesystem::path& descriptor) {
    const std::string text = ReadFile(descriptor);
    const boost::regex element("<execute>(.*?)</execute>");
    std::vector<std::string> templates;
    for (boost::sregex_iterator match(text.begin(), text.end(), element);
         match != boost::sregex_iterator();
         ++match) {
        std::string execute = (*match)[1];
        boost::replace_all(execute, "&lt;", "<");
        boost::replace_all(execute, "&gt;", ">");
        boost::replace_all(execute, "&amp;", "&");
        templates.push_back(execute);
    }
    return templates;
}

/// The same value for every parameter that the template names.
CallValues Given(const std::string& text, const std::string& value) {
    CallValues values;
    const boost::regex token("\\$[a-z]+\\{([a-z0-9-]+)[,}]");
    for (boost::sregex_iterator match(text.begin(), text.end(), token);
         match != boost::sregex_iterator();
         ++match) {
        values[(*match)[1]] = {value};
    }
    return values;
}

TEST(Examples, TakeAnyValue) {
    std::size_t templates = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(CORVEL_EXAMPLES)) {
        if (entry.path().extension() != ".xml") {
            continue;
        }
        for (const std::string& text : TemplatesOf(entry.path())) {
            ++templates;
            for (const std::string value :
                 {"", "ext4", "-1", "a b", "it's", "$(id)", ";`id`\"\\"}) {
                EXPECT_NO_THROW(AutoCli::RefuseUnsafeValues(Expanded(text, Given(text, value))))
                    << entry.path() << "\n"
                    << text << "\n"
                    << value;
            }
        }
    }
    EXPECT_GE(templates, 9U);
}

}  // namespace

}  // namespace Corvel::Testing

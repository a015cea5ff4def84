#include "tests/autocli/plugins/XmlUtilReading.h"

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/support/ThrownText.h"

namespace Corvel::Testing {

std::string Describe(const std::shared_ptr<MetaObj::MetaObject>& value) {
    return value == nullptr ? "none"
                            : MetaObj::MetaTypeString(value->GetType()) + " " + value->ToString();
}

std::string ReadOutput(const std::string& text) {
    testing::internal::CaptureStderr();
    std::string result;
    try {
        result = Describe(AutoCli::XmlUtil_ParseXmlOutput(text));
    } catch (const CorvelException& error) {
        result = error.what();
    }
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    return result;
}

void ExpectReads(const std::vector<XmlOutputCase>& cases) {
    for (const XmlOutputCase& item : cases) {
        EXPECT_EQ(item.expected, ReadOutput(item.input)) << item.name;
    }
}

std::string BuildRefusal(std::string_view text) {
    return ThrownText([text] { AutoCli::XmlUtil_BuildMetaObject(ParsedXml(text).Root()); });
}

}  // namespace Corvel::Testing

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/CommandTemplate.h"
#include "corvel/callspec/Input.h"

namespace Corvel::AutoCli {

namespace {

/// Every value in a text, its pieces as parameter=text, "=" alone before what the template gave.
std::string ValuesIn(const TemplateText& text) {
    std::string values;
    for (std::size_t position = 0; position < text.Size(); ++position) {
        if (const InsertedValue* value = text.ValueAt(position)) {
            values += "[";
            for (const InsertedValue::Piece& piece : value->Pieces()) {
                values += " " + piece.parameter + "=" + piece.text;
            }
            values += " ]";
        }
    }
    return values;
}

std::string ValuesOf(const std::string& text, TemplateUse use = TemplateUse::CommandLine) {
    const auto input = CallSpec::Input::New();
    input->AddParameter("aa", ";");
    input->AddParameter("bb", "it's");
    input->AddParameter("cc", "1");
    input->AddParameter("cc", "2\"");
    CommandTemplate expansion(text, use);
    for (const char* parameter : {"aa", "bb", "cc"}) {
        expansion.Substitute(parameter, *input);
    }
    expansion.RemoveConditionals();
    return ValuesIn(expansion.Text());
}

TEST(CommandTemplate, KnowsWhichTextCameFromWhichParameter) {
    EXPECT_EQ(ValuesOf("no value"), "");
    EXPECT_EQ(ValuesOf("$val{aa} $val{bb}"), "[ aa=\\; ][ bb=it\\'s ]");
    EXPECT_EQ(ValuesOf("'$val{bb}'"), "[ bb=its ]");
    EXPECT_EQ(ValuesOf("$if{aa,$val{bb}}$if{zz,$val{aa}}"), "[ bb=it\\'s ]");
    EXPECT_EQ(ValuesOf("$list{cc,'&',true}"), "[ cc=1 =\\& cc=2\\\" ]");
    EXPECT_EQ(ValuesOf("$list{cc,'',true}"), "[ cc=1 = cc=2\\\" ]");
    EXPECT_EQ(ValuesOf("$list{cc,'$val{aa}',true}"), "[ cc=1 aa=\\; cc=2\\\" ]");
    EXPECT_EQ(ValuesOf("$multilist{cc,-$val{aa},true}"), "[ aa=\\; ][ cc=1 ][ aa=\\; ][ cc=2 ]");
    EXPECT_EQ(ValuesOf("$val{bb}$list{cc,'+',true}", TemplateUse::StandardInput),
              "[ bb=it's ][ cc=1 =+ cc=2\" ]");
}

}  // namespace
}  // namespace Corvel::AutoCli

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellInterpreters.h"
#include "corvel/autocli/plugins/ShellLexer.h"

namespace Corvel::AutoCli {

namespace {

struct Case {
    std::string name;
    std::string line;
    /// The words that are code, parted by bars.
    std::string code;
};

std::string CodeOf(const std::string& text) {
    ShellLine line = ReadShellLine(text);
    MarkInterpretedWords(line);
    std::string code;
    for (const ShellWord& word : line.words) {
        if (word.isCode || word.mayBeCode) {
            code += (code.empty() ? "" : "|") + word.text;
        }
    }
    return code;
}

class ShellInterpreters : public testing::TestWithParam<Case> {};

TEST_P(ShellInterpreters, MarksCode) {
    EXPECT_EQ(CodeOf(GetParam().line), GetParam().code) << GetParam().line;
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Interpreters,
    ShellInterpreters,
    testing::ValuesIn(std::vector<Case>{
        {"OrdinaryCommand", "ls -c x; grep -e y z", ""},
        {"EvalTakesEveryWord", "eval a 'b c'; d", "a|b c"},
        {"ShellTakesWhatIsBehindC", "sh -c 'a b' c; d", "-c|a b|c"},
        {"ShellTakesClustersOfOptions", "bash -xc a; dash -e -u -c b", "-xc|a|-c|b"},
        {"ShellTakesOptionsWithWords", "bash -o pipefail -c a", "-c|a"},
        {"ShellWithAScriptTakesNothing", "sh ./a -c b; bash a.sh -c b", ""},
        {"ShellWithAPath", "/bin/sh -c a; /usr/bin/ksh93 -c b", "-c|a|-c|b"},
        {"QuotedNameIsTheSame", "'s'h -c a; \"ev\"al b", "-c|a|b"},
        {"VersionsAreTheSame", "python3.11 -c a; perl5.36 -e b; lua5.4 -e c", "-c|a|-e|b|-e|c"},
        {"PerlTakesClusters", "perl -lne a b; perl -pi -E c", "-lne|a|b|-E|c"},
        {"CodeInTheSameWord", "perl '-ea b' c", "-ea b|c"},
        {"LongOptions", "node --eval a; su b --command='c d'", "--eval|a|--command=c d"},
        {"SuTakesTheUserFirst", "su root -c a; runuser -u b -c c", "-c|a|-c|c"},
        {"SshTakesEveryWord", "ssh -p 1 host a b", "-p|1|host|a|b"},
        {"AwkTakesItsFirstWord", "awk -F: -v a=b '{c}' d e", "{c}"},
        {"AwkWithAFileTakesNothing", "awk -f a.awk -v b=c d", ""},
        {"AwkTakesOptionsOfCode", "gawk -e a -e b c", "-e|a|-e|b"},
        {"SedTakesItsFirstWord", "sed -n 's/a/b/' c; sed -i -e d -e e f", "s/a/b/|-e|d|-e|e"},
        {"TrapAliasLetUnsetMake", "trap a b; alias c=d; let e; unset f; make g", "a|b|c=d|e|f|g"},
        {"FilesThatTheShellReads", ". a; source b", "a|b"},
        {"NamesOfVariables", "export a b=c 'd[e]=f'; read g h; local i=j", "a|d[e]=f|g|h"},
        {"NamesOfVariablesAreNoCommands", "export sh -c a=b", "sh|-c"},
        {"DotWithAVersion", ".1 a", "a"},
        {"TestsOfNumbers", "[ a -eq b ]; test -v c; [ d = e ]", "a|-eq|b|]|-v|c"},
        {"RunnersAreLookedThrough",
         "sudo -u a env B=c timeout 5 sh -c d; nohup awk e f; exec eval g",
         "-c|d|e|g"},
        {"RunnersWithOptionsAndOperands",
         "sudo -n -u a -- awk b; chroot /c eval d; env - e=f nice -n 5 eval g",
         "b|d|g"},
        {"RunnersOfFind", "find a -name b -exec awk c {} ;", "c"},
        {"ArgumentsOfWhatIsRun", "sudo systemctl status ssh -n; timeout 5 service make a", ""},
        {"UnknownRunnersOfAShell", "tool a sh -c b; xargs -n1 sh -c c", "-c|b|-c|c"},
        {"UnknownRunnersOfEval", "tool eval a; echo awk b", ""},
        {"ExpandedCommandMayBeAnything", "$a -c b; \"$(c)\" -e d; ${e:-f} eval g", "-c|b|-e|d|g"},
        {"ExpandedFolderOfAKnownCommand", "\"${a:-/b}/c\" -c d; $e/sh -c f", "-c|f"},
        {"ExpansionsOfTheirOwn", "$(sh -c a) \"$(eval b)\" `perl -e c`", "-c|a|b|-e|c"},
        {"PipeIntoAShell", "echo a | cat b | sudo sh -s; c", "echo|a|cat|b"},
        {"PipeIntoAShellWithCode", "echo a | sh -c b; echo c | sh ./d; echo e | grep sh", "-c|b"},
        {"AssignmentsAndRedirectionsAreNoWords", "a=b sh <c -c d >e", "-c|d"},
        {"CommandsAreKeptApart", "sh; a -c b | sh d -c e", "-c|e"},
    }),
    NameOf);

TEST(ShellInterpreters, ManyInterpretersTakeLittleTime) {
    std::string line = "env";
    std::size_t words = 0;
    for (; words < 100000; words += 4) {
        line += " sh awk -v perl";
    }
    ShellLine read = ReadShellLine(line);
    MarkInterpretedWords(read);
    EXPECT_EQ(read.words.size(), words + 1);
}

TEST(ShellInterpreters, ManyOptionsThatLookLikeInterpretersTakeLittleTime) {
    std::string line = "env";
    std::size_t words = 0;
    for (; words < 200000; words += 2) {
        line += " -v awk";
    }
    ShellLine read = ReadShellLine(line);
    MarkInterpretedWords(read);
    EXPECT_EQ(read.words.size(), words + 1);
}

TEST(ShellInterpreters, LongPipesOfInterpretersTakeLittleTime) {
    constexpr std::size_t kCount = 100000;
    std::string line = "echo a";
    for (std::size_t i = 0; i < kCount; ++i) {
        line += " | sh";
    }
    ShellLine read = ReadShellLine(line);
    MarkInterpretedWords(read);
    std::size_t code = 0;
    for (const ShellWord& word : read.words) {
        code += word.isCode ? 1U : 0U;
    }
    EXPECT_EQ(code, kCount + 1);  // all but the last shell
}

}  // namespace

}  // namespace Corvel::AutoCli

#include <list>
#include <sstream>
#include <stdexcept>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/Dispatcher.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/autocli/Fakes.h"
#include "tests/support/ThrownText.h"

namespace Corvel::Testing {
namespace {

using AutoCli::CommandInput;
using AutoCli::CommandOutput;
using AutoCli::Dispatcher;
using AutoCli::DisplayContext;
using AutoCli::FormatParameters;
using AutoCli::Namespace;
using testing::ElementsAre;
using testing::IsEmpty;

static_assert(std::has_virtual_destructor_v<Dispatcher>);
static_assert(!std::is_copy_constructible_v<Dispatcher>);
static_assert(!std::is_copy_assignable_v<Dispatcher>);

/// A dispatcher with one call in it.
class DispatcherTest : public testing::Test {
protected:
    void Register(const std::shared_ptr<AutoCli::NamespaceNode>& node, const char* name) {
        _dispatcher.GetRootNamespace()->SubNamespace("test")->RegisterNamespaceNode(node, name);
    }

    std::vector<std::string> FormatterNames() const {
        std::vector<std::string> names;
        for (const auto& formatter : _dispatcher.GetFormatters()) {
            names.push_back(formatter->GetName());
        }
        return names;
    }

    Dispatcher _dispatcher;
    std::shared_ptr<CommandInput> _input = CommandInput::New();
    std::shared_ptr<CommandOutput> _output = CommandOutput::New();
};

// --- Construction ------------------------------------------------------------------------------

TEST_F(DispatcherTest, BringsTheBuiltInFormattersAndCommandsAndNothingElse) {
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal"));
    EXPECT_THAT(FormatterNames(),
                ElementsAre("commandhelp", "json", "python", "simple", "table", "xml"));
    EXPECT_THAT(_dispatcher.GetRootNamespace()->GetNamespaceNodeNames(), ElementsAre("quorcli"));
    _input->SetCommandPath({"quorcli", "command", "list"});
    EXPECT_NE(_dispatcher.GetCommand(_input, _output), nullptr);
}

TEST_F(DispatcherTest, RootKnowsItsDispatcher) {
    EXPECT_EQ(_dispatcher.GetRootNamespace()->GetDispatcher(), &_dispatcher);
}

// --- Registering plug-ins ----------------------------------------------------------------------

TEST_F(DispatcherTest, PluginsAreListedInTheOrderOfTheirRegistration) {
    _dispatcher.RegisterPlugin(std::make_shared<FakePlugin>("b"));
    _dispatcher.RegisterPlugin(std::make_shared<FakePlugin>("a"));
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal", "b", "a"));
}

TEST_F(DispatcherTest, FormattersOfPluginsAreFoundAndListedByName) {
    const auto plugin =
        std::make_shared<FakePlugin>("mine", std::vector<std::string>{"zebra", "Ape", "line"});
    plugin->AddFormatter(nullptr);
    _dispatcher.RegisterPlugin(plugin);
    EXPECT_THAT(
        FormatterNames(),
        ElementsAre(
            "Ape", "commandhelp", "json", "line", "python", "simple", "table", "xml", "zebra"));
    EXPECT_TRUE(_dispatcher.HasFormatter("zebra"));
    EXPECT_EQ(_dispatcher.GetFormatter("zebra"), plugin->GetFormatter("zebra"));
    const char* const none = nullptr;
    EXPECT_FALSE(_dispatcher.HasFormatter(none));
    EXPECT_FALSE(_dispatcher.HasFormatter(std::string("Zebra")));
    EXPECT_EQ(_dispatcher.GetFormatter(none), nullptr);
    EXPECT_EQ(_dispatcher.GetFormatter(std::string("nosuch")), nullptr);
}

TEST_F(DispatcherTest, FormatterThatItsPluginNoLongerHasIsNotThere) {
    const auto plugin = std::make_shared<FakePlugin>("mine", std::vector<std::string>{"line"});
    _dispatcher.RegisterPlugin(plugin);
    plugin->DropFormatters();
    EXPECT_FALSE(_dispatcher.HasFormatter("line"));
    EXPECT_EQ(_dispatcher.GetFormatter("line"), nullptr);
    EXPECT_THAT(FormatterNames(),
                ElementsAre("commandhelp", "json", "python", "simple", "table", "xml"));
}

TEST_F(DispatcherTest, PluginWithAFormatterNamedLikeAnExistingOneIsRefusedButItsNamespacesStay) {
    const auto plugin = std::make_shared<FakePlugin>(
        "mine",
        std::vector<std::string>{"line", "table"},
        [](const std::shared_ptr<Namespace>& root) { root->SubNamespace("stays"); });
    EXPECT_EQ(ThrownText([&] { _dispatcher.RegisterPlugin(plugin); }),
              "Error while trying to register the plugin mine  this plugin has a formatter table "
              "that was already registered from the plugin Internal  The functionality in mine "
              "will not be available until this issue is resolved.");
    EXPECT_FALSE(_dispatcher.HasFormatter("line"));
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal"));
    EXPECT_TRUE(_dispatcher.GetRootNamespace()->HasNamespaceNode("stays"));
}

TEST_F(DispatcherTest, RefusalNamesThePluginThatHoldsTheFormatter) {
    _dispatcher.RegisterPlugin(
        std::make_shared<FakePlugin>("first", std::vector<std::string>{"line"}));
    EXPECT_EQ(ThrownText([&] {
                  _dispatcher.RegisterPlugin(
                      std::make_shared<FakePlugin>("second", std::vector<std::string>{"line"}));
              }),
              "Error while trying to register the plugin second  this plugin has a formatter line "
              "that was already registered from the plugin first  The functionality in second "
              "will not be available until this issue is resolved.");
}

TEST_F(DispatcherTest, FailureOfAPluginsOwnRegistrationIsWrapped) {
    const auto plugin = std::make_shared<FakePlugin>(
        "mine", std::vector<std::string>{"line"}, [](const std::shared_ptr<Namespace>& root) {
            root->SubNamespace("stays");
            throw CorvelException("I cannot.");
        });
    EXPECT_EQ(ThrownText([&] { _dispatcher.RegisterPlugin(plugin); }),
              "Error while trying to register the plugin mine I cannot. The functionality in mine "
              "will not be available until this issue is resolved.");
    EXPECT_FALSE(_dispatcher.HasFormatter("line"));
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal"));
    EXPECT_TRUE(_dispatcher.GetRootNamespace()->HasNamespaceNode("stays"));
}

TEST_F(DispatcherTest, ForeignExceptionsOfARegistrationPass) {
    const auto standard =
        std::make_shared<FakePlugin>("a", std::vector<std::string>{}, [](const auto&) {
            throw std::runtime_error("unchanged");
        });
    const auto number =
        std::make_shared<FakePlugin>("b", std::vector<std::string>{}, [](const auto&) { throw 1; });
    EXPECT_THROW(_dispatcher.RegisterPlugin(standard), std::runtime_error);
    EXPECT_THROW(_dispatcher.RegisterPlugin(number), int);
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal"));
}

TEST_F(DispatcherTest, NullPluginIsRefused) {
    EXPECT_EQ(ThrownText([&] { _dispatcher.RegisterPlugin(nullptr); }),
              "Null plugin passed to dispatcher");
}

TEST_F(DispatcherTest, ResetEmptiesTheListOfPluginsAndKeepsFormattersAndTree) {
    _dispatcher.ResetRegistrations();
    EXPECT_THAT(_dispatcher.GetPluginNames(), IsEmpty());
    EXPECT_THAT(FormatterNames(),
                ElementsAre("commandhelp", "json", "python", "simple", "table", "xml"));
    EXPECT_TRUE(_dispatcher.HasFormatter("table"));
    EXPECT_TRUE(_dispatcher.GetRootNamespace()->HasNamespaceNode("quorcli"));
}

// --- Lifetime ----------------------------------------------------------------------------------

/// Tells when it goes.
class Witness final : public Namespace {
public:
    explicit Witness(std::vector<std::string>& events) : _events(events) {}
    ~Witness() override { _events.emplace_back("node"); }

private:
    std::vector<std::string>& _events;
};

TEST(DispatcherLifetime, TreeGoesFirstThenThePluginsTheLatestFirst) {
    std::vector<std::string> events;
    const auto newPlugin = [&](const std::string& name, FakePlugin::Registration registration) {
        auto plugin = std::make_shared<FakePlugin>(
            name, std::vector<std::string>{name}, std::move(registration));
        plugin->onDestruction = [&events, name] { events.push_back(name); };
        return plugin;
    };
    {
        Dispatcher dispatcher;
        dispatcher.RegisterPlugin(newPlugin("a", [&](const auto& root) {
            root->RegisterNamespaceNode(std::make_shared<Witness>(events), "witness");
        }));
        EXPECT_THROW(dispatcher.RegisterPlugin(newPlugin("failed", [](const auto&) { throw 1; })),
                     int);
        dispatcher.RegisterPlugin(newPlugin("b", {}));
        dispatcher.ResetRegistrations();
        EXPECT_THAT(events, IsEmpty());
    }
    EXPECT_THAT(events, ElementsAre("node", "b", "failed", "a"));
}

TEST(DispatcherLifetime, RootThatSomebodyHoldsIsEmptyAndHasNoDispatcherAfterwards) {
    std::shared_ptr<AutoCli::RootNamespace> root;
    {
        const Dispatcher dispatcher;
        root = dispatcher.GetRootNamespace();
    }
    EXPECT_EQ(root->GetDispatcher(), nullptr);
    EXPECT_THAT(root->GetNamespaceNodeNames(), IsEmpty());
}

// --- Commands ----------------------------------------------------------------------------------

TEST_F(DispatcherTest, GetCommandFindsTheCommandAndLeavesTheInputsPath) {
    const auto command = std::make_shared<FakeCommand>();
    Register(command, "it");
    _input->SetCommandPath({"test", "it"});
    EXPECT_EQ(_dispatcher.GetCommand(_input, _output), command);
    EXPECT_THAT(_input->GetCommandPath(), ElementsAre("test", "it"));
    EXPECT_FALSE(_output->HasError());
}

TEST_F(DispatcherTest, GetCommandOfAnUnknownNameGivesTwoErrors) {
    _input->SetCommandPath({"quorcli", "nosuch"});
    EXPECT_EQ(_dispatcher.GetCommand(_input, _output), nullptr);
    EXPECT_THAT(
        _output->GetErrors(),
        ElementsAre("Unable to find a command or namespace with the name 'nosuch' in namespace "
                    "quorcli",
                    "Unable to find command"));
}

TEST_F(DispatcherTest, GetCommandOfAnEmptyPathGivesOneError) {
    EXPECT_EQ(_dispatcher.GetCommand(_input, _output), nullptr);
    EXPECT_THAT(_output->GetErrors(), ElementsAre("Unable to find command"));
}

TEST_F(DispatcherTest, ExecuteCommandOfANamespaceFails) {
    _input->SetCommandPath({"quorcli", "command"});
    EXPECT_FALSE(_dispatcher.ExecuteCommand(_input, _output));
    EXPECT_THAT(_output->GetErrors(), ElementsAre("Path refers to a namespace, not a command."));
}

TEST_F(DispatcherTest, CommandThatCannotBeExecutedIsNoneAndNoError) {
    Register(std::make_shared<DeclaredOnly>(), "it");
    _input->SetCommandPath({"test", "it"});
    EXPECT_EQ(_dispatcher.GetCommand(_input, _output), nullptr);
    EXPECT_FALSE(_dispatcher.ExecuteCommand(_input, _output));
    EXPECT_FALSE(_output->HasError());
}

TEST_F(DispatcherTest, ExecuteCommandRunsTheCommandOnItsValidatedInput) {
    Register(std::make_shared<FakeCommand>([](const auto& input, const auto& output) {
                 const auto& call = dynamic_cast<CommandInput&>(*input);
                 output->SetRootObject(MetaObj::MetaInt::New(call.GetParameterInt("level")));
             }),
             "it");
    _input->SetCommandPath({"test", "it"});
    _input->AddParameter("level", "5");
    EXPECT_TRUE(_dispatcher.ExecuteCommand(_input, _output));
    EXPECT_EQ(_output->GetRootObject()->ToString(), "5");
    EXPECT_FALSE(_output->HasError());
}

TEST_F(DispatcherTest, ExecuteCommandDoesNotRunOnARefusedInput) {
    Register(std::make_shared<FakeCommand>([](const auto&, const auto&) { FAIL(); }), "it");
    _input->SetCommandPath({"test", "it"});
    _input->AddParameter("level", "high");
    EXPECT_FALSE(_dispatcher.ExecuteCommand(_input, _output));
    EXPECT_THAT(_output->GetErrors(),
                ElementsAre("Invalid data 'high' for parameter level expected type Integer"));
}

TEST_F(DispatcherTest, ExecuteCommandFailsWithTheCommand) {
    Register(std::make_shared<FakeCommand>(
                 [](const auto&, const auto& output) { output->AddErrorMessage("Out of order."); }),
             "it");
    _input->SetCommandPath({"test", "it"});
    EXPECT_FALSE(_dispatcher.ExecuteCommand(_input, _output));
    EXPECT_THAT(_output->GetErrors(), ElementsAre("Out of order."));
}

TEST_F(DispatcherTest, ForeignExceptionOfACommandPasses) {
    Register(std::make_shared<FakeCommand>([](const auto&, const auto&) { throw 1; }), "it");
    _input->SetCommandPath({"test", "it"});
    EXPECT_THROW(_dispatcher.ExecuteCommand(_input, _output), int);
}

// --- Formatting --------------------------------------------------------------------------------

TEST_F(DispatcherTest, FormatOutputWithoutAFormatterPrintsNothingAndSucceeds) {
    FormatParameters parameters;
    DisplayContext context;
    std::ostringstream stream;
    EXPECT_TRUE(_dispatcher.FormatOutput(_output, parameters, context, stream));
    EXPECT_EQ(stream.str(), "");
    EXPECT_FALSE(_output->HasError());
}

TEST_F(DispatcherTest, FormatOutputWithAnUnknownFormatterFails) {
    FormatParameters parameters;
    parameters.SetFormatter("nosuch");
    DisplayContext context;
    std::ostringstream stream;
    EXPECT_FALSE(_dispatcher.FormatOutput(_output, parameters, context, stream));
    EXPECT_EQ(stream.str(), "");
    EXPECT_THAT(_output->GetErrors(), ElementsAre("Unable to find requested formatter: nosuch"));
}

TEST_F(DispatcherTest, FormatOutputSucceedsWhateverTheFormatterReturns) {
    const auto plugin = std::make_shared<FakePlugin>("mine");
    plugin->AddFormatter(std::make_shared<FakeFormatter>("line", false));
    _dispatcher.RegisterPlugin(plugin);
    FormatParameters parameters;
    parameters.SetFormatter("line");
    parameters.SetParameter("key", "value");
    DisplayContext context;
    std::ostringstream stream;
    EXPECT_TRUE(_dispatcher.FormatOutput(_output, parameters, context, stream));
    EXPECT_EQ(stream.str(), "line key=value\n");
}

TEST_F(DispatcherTest, DefaultFormatParametersAreThoseOfTheCommand) {
    const auto command = std::make_shared<FakeCommand>();
    command->SetDefaultOutputFormatter("table");
    command->SetDefaultOutputParameter("wrap-last", "true");
    Register(command, "it");
    _input->SetCommandPath({"test", "it"});
    const FormatParameters parameters =
        _dispatcher.GetDefaultOutputFormatParameters(_input, _output);
    EXPECT_EQ(parameters.GetFormatter(), "table");
    EXPECT_EQ(parameters.GetParameter("wrap-last"), "true");
    EXPECT_FALSE(_output->HasError());
}

TEST_F(DispatcherTest, DefaultFormatParametersOfNoCommandAreEmpty) {
    _input->SetCommandPath({"quorcli"});
    const FormatParameters parameters =
        _dispatcher.GetDefaultOutputFormatParameters(_input, _output);
    EXPECT_EQ(parameters.GetFormatter(), "");
    EXPECT_THAT(parameters.GetParameters(), IsEmpty());
    EXPECT_THAT(_output->GetErrors(), ElementsAre("Path refers to a namespace, not a command."));
}

}  // namespace
}  // namespace Corvel::Testing

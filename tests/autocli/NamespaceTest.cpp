#include <memory>

#include <gtest/gtest.h>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/RootNamespace.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ThrownText;

/// A namespace with a dispatcher of its own.
class ForeignNamespace : public Namespace {
public:
    explicit ForeignNamespace(Dispatcher* dispatcher) : _dispatcher(dispatcher) {}
    Dispatcher* GetDispatcher() const override { return _dispatcher; }

private:
    Dispatcher* _dispatcher;
};

/// Somewhere that a dispatcher could be; the tree only hands the address on.
Dispatcher* SomeDispatcher() {
    static int place = 0;
    return reinterpret_cast<Dispatcher*>(&place);
}

TEST(Namespace, HasItsKind) {
    EXPECT_EQ(Namespace::New()->GetType(), NamespaceNodeType::Namespace);
    EXPECT_EQ(static_cast<int>(NamespaceNodeType::Root), 0);
    EXPECT_EQ(static_cast<int>(NamespaceNodeType::Namespace), 1);
    EXPECT_EQ(static_cast<int>(NamespaceNodeType::Command), 2);
}

TEST(Namespace, HandsItselfOut) {
    const std::shared_ptr<Namespace> node = Namespace::New();
    EXPECT_EQ(node->GetThis(), node);
}

TEST(Namespace, KnowsItsParentWithoutOwningIt) {
    const std::shared_ptr<Namespace> node = Namespace::New();
    EXPECT_EQ(node->GetParent(), nullptr);
    std::shared_ptr<Namespace> parent = Namespace::New();
    node->SetParent(parent);
    EXPECT_EQ(node->GetParent(), parent);
    EXPECT_EQ(parent.use_count(), 1);
    parent.reset();
    EXPECT_EQ(node->GetParent(), nullptr);
}

TEST(Namespace, FindsTheDispatcherAtTheTop) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(SomeDispatcher());
    EXPECT_EQ(root->SubNamespace("a")->GetDispatcher(), SomeDispatcher());
    EXPECT_EQ(root->SubNamespace("a")->SubNamespace("b")->GetDispatcher(), SomeDispatcher());
}

TEST(Namespace, AsksANodeThatHasADispatcherOfItsOwn) {
    const auto foreign = std::make_shared<ForeignNamespace>(SomeDispatcher());
    RootNamespace::New(nullptr)->RegisterNamespaceNode(foreign, "foreign");
    EXPECT_EQ(foreign->SubNamespace("a")->SubNamespace("b")->GetDispatcher(), SomeDispatcher());
}

TEST(Namespace, WithoutParentHasNoDispatcher) {
    const std::shared_ptr<Namespace> lonely = Namespace::New();
    lonely->SetName("lonely");
    const char* const message =
        "Invalid state for namespace 'lonelyno parent has been set while attempting to get "
        "dispathcer reference.";
    EXPECT_EQ(ThrownText([&] { lonely->GetDispatcher(); }), message);
    EXPECT_EQ(ThrownText([&] { lonely->SubNamespace("child")->GetDispatcher(); }), message);
}

}  // namespace
}  // namespace Corvel::AutoCli

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"

/// The references that GetField hands out: always the same one for the same value.
namespace Corvel::MetaObj {
namespace {

const std::string kLongText(200, 'x');

TEST(FieldReference, ScalarIsTheSameObjectEachTime) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("int", 1000);
    structure->SetField("text", "some text");
    structure->SetField("long text", kLongText);
    for (const char* name : {"int", "text", "long text"}) {
        const std::shared_ptr<MetaObject> first = structure->GetField(name);
        EXPECT_EQ(structure->GetField(std::string(name)), first);
    }
    EXPECT_NE(structure->GetField("text"), structure->GetField("long text"));
}

TEST(FieldReference, SameObjectIsFoundAfterNobodyHeldIt) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1000);
    const std::weak_ptr<MetaObject> first = structure->GetField("a");
    EXPECT_EQ(structure->GetField("a"), first.lock());
}

TEST(FieldReference, SharedScalarsAreThoseOfNew) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("int", 20);
    structure->SetField("bool", true);
    structure->SetField("text", "");
    EXPECT_EQ(structure->GetField("int"), MetaInt::New(20));
    EXPECT_EQ(structure->GetField("bool"), MetaBool::New(true));
    EXPECT_EQ(structure->GetField("text"), MetaString::New());
}

TEST(FieldReference, GivenReferenceIsHandedOutAgain) {
    const std::shared_ptr<MetaInt> number = MetaInt::New(1000);
    const std::shared_ptr<MetaString> text = MetaString::New("x");
    const std::shared_ptr<MetaString> emptyText =
        std::make_shared<MetaString>(MetaObject::FactoryFlag{}, std::string());
    const auto structure = MetaStruct::New("S");
    structure->SetField("int", number);
    structure->SetField("text", text);
    structure->SetField("empty", emptyText);
    EXPECT_EQ(structure->GetField("int"), number);
    EXPECT_EQ(structure->GetField("text"), text);
    EXPECT_EQ(structure->GetField("empty"), emptyText);
}

TEST(FieldReference, NewValueIsANewObject) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1000);
    const std::shared_ptr<MetaObject> first = structure->GetField("a");
    structure->SetField("a", 1000);
    const std::shared_ptr<MetaObject> second = structure->GetField("a");
    EXPECT_NE(second, first);
    EXPECT_EQ(first.use_count(), 1);
    structure->RemoveField("a");
    EXPECT_EQ(second.use_count(), 1);
    EXPECT_EQ(structure->GetField("a"), nullptr);
    structure->SetField("a", 1001);
    EXPECT_EQ(structure->GetField("a")->ToString(), "1001");
}

TEST(FieldReference, ObjectOutlivesTheStructure) {
    auto structure = MetaStruct::New("S");
    structure->SetField("a", kLongText);
    const std::shared_ptr<MetaObject> value = structure->GetField("a");
    structure.reset();
    EXPECT_EQ(value->ToString(), kLongText);
    EXPECT_EQ(value.use_count(), 1);
}

TEST(FieldReference, ObjectsStayWithTheirFieldsWhereOthersComeAndGo) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("gone", 999);
    structure->SetField("first", 1000);
    structure->SetField("second", 2000);
    const std::shared_ptr<MetaObject> gone = structure->GetField("gone");
    const std::shared_ptr<MetaObject> first = structure->GetField("first");
    structure->RemoveField("gone");
    for (int i = 0; i < 100; ++i) {
        const std::string name = "f" + std::to_string(i);
        structure->SetField(name, 3000);
        ASSERT_EQ(structure->GetField(name)->ToString(), "3000");
        structure->RemoveField(name);
    }
    structure->LockStructure();
    EXPECT_EQ(structure->GetField("first"), first);
    EXPECT_EQ(structure->GetField("second")->ToString(), "2000");
    EXPECT_EQ(gone.use_count(), 1);
}

TEST(FieldReference, ThreadsThatAskAtOnceGetTheSameObjects) {
    constexpr int kRounds = 200;
    constexpr int kFields = 8;
    constexpr int kThreads = 4;
    for (int round = 0; round < kRounds; ++round) {
        const auto structure = MetaStruct::New("S");
        for (int i = 0; i < kFields; ++i) {
            structure->SetField(std::to_string(i), 1000 + i);
        }
        std::vector<std::vector<std::shared_ptr<MetaObject>>> found(kThreads);
        std::vector<std::thread> threads;
        threads.reserve(kThreads);
        for (auto& own : found) {
            threads.emplace_back([&structure, &own] {
                for (int i = 0; i < kFields; ++i) {
                    own.push_back(structure->GetField(std::to_string(i)));
                }
                EXPECT_EQ(structure->GetFieldDocumentation("0"), "Documentation missing");
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        for (const auto& own : found) {
            ASSERT_EQ(own, found.front());
        }
        EXPECT_EQ(found.front().back()->ToString(), "1007");
    }
}

}  // namespace
}  // namespace Corvel::MetaObj

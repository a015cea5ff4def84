#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>
#include <ios>
#include <locale>
#include <memory>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/callspec/Output.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

/// The whole document that a formatter writes for a root object.
inline std::string FormatRoot(Formatter& formatter,
                              const std::shared_ptr<MetaObj::MetaObject>& root,
                              FormatParameters parameters = {}) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(root);
    DisplayContext display{20, 5};
    std::ostringstream stream;
    EXPECT_TRUE(formatter.Format(output, parameters, display, stream));
    return stream.str();
}

/// What a formatter writes for one value at a level.
template <typename FormatterClass>
std::string FormatValue(FormatterClass& formatter,
                        const std::shared_ptr<MetaObj::MetaObject>& value,
                        int level) {
    std::ostringstream stream;
    formatter.Format(value, stream, level);
    return stream.str();
}

/// A value of a class of its own, whatever type it claims to have.
class FalseValue final : public MetaObj::MetaObject {
public:
    static std::shared_ptr<FalseValue> New(MetaObj::MetaType claimed) {
        return std::make_shared<FalseValue>(FactoryFlag(), claimed);
    }
    FalseValue(FactoryFlag flag, MetaObj::MetaType claimed) : MetaObject(flag, claimed) {}
    std::string ToString() const override { return "false value"; }
};

/// Structures of type "S" within each other, each but the innermost with one field "f".
inline std::shared_ptr<MetaObj::MetaStruct> NestedStructures(std::size_t depth) {
    auto value = MetaObj::MetaStruct::New("S");
    for (std::size_t i = 1; i < depth; ++i) {
        auto outer = MetaObj::MetaStruct::New("S");
        outer->SetField("f", std::move(value));
        value = std::move(outer);
    }
    return value;
}

/// A structure of type "Outer" whose fields are structures and scalars in turn: two types with fields
/// of the same names and of names of their own, one of them at two levels, and one field removed.
inline std::shared_ptr<MetaObj::MetaStruct> MixedStructure(long number) {
    const auto make = [number](const char* type, const char* own) {
        auto structure = MetaObj::MetaStruct::New(type);
        structure->SetField("Number", number);
        structure->SetField("Text", "t");
        structure->SetField(own, number % 2 == 0);
        return structure;
    };
    const auto first = make("First", "Extra");
    first->SetField("Inner", make("Second", "Zone"));
    const auto second = make("Second", "Zone");
    if (number % 2 == 0) {
        second->RemoveField("Text");
    }
    auto outer = MetaObj::MetaStruct::New("Outer");
    outer->SetField("A", first);
    outer->SetField("B", second);
    outer->SetField("Number", number);
    return outer;
}

/// A structure of type "Wide" with the fields "f000" and so on, each with its number.
inline std::shared_ptr<MetaObj::MetaStruct> WideStructure(long fields) {
    auto wide = MetaObj::MetaStruct::New("Wide");
    for (long i = 0; i < fields; ++i) {
        std::string digits = std::to_string(1000 + i);
        digits[0] = 'f';
        wide->SetField(digits, i);
    }
    return wide;
}

/// Runs the work in a thread whose stack is far too small for a recursion thousands of calls deep.
inline void RunOnSmallStack(const std::function<void()>& work) {
    constexpr std::size_t kStackSize = std::size_t{128} * 1024;
    pthread_attr_t attributes;
    ASSERT_EQ(0, pthread_attr_init(&attributes));
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, kStackSize));
    pthread_t thread{};
    const auto run = [](void* function) -> void* {
        (*static_cast<const std::function<void()>*>(function))();
        return nullptr;
    };
    auto copy = work;
    ASSERT_EQ(0, pthread_create(&thread, &attributes, run, &copy));
    ASSERT_EQ(0, pthread_join(thread, nullptr));
    ASSERT_EQ(0, pthread_attr_destroy(&attributes));
}

/// A stream that only notes the sizes of the pieces that it is given.
class PieceCounter : private std::streambuf, public std::ostream {
public:
    PieceCounter() : std::ostream(this) {}
    const std::vector<std::size_t>& GetPieces() const { return _pieces; }

private:
    std::streamsize xsputn(const char* /*text*/, std::streamsize size) override {
        _pieces.push_back(static_cast<std::size_t>(size));
        return size;
    }
    int overflow(int character) override {
        _pieces.push_back(1);
        return character;
    }

    std::vector<std::size_t> _pieces;
};

/// Sets everything about a stream that could get into numbers and texts.
class GroupedDigits : public std::numpunct<char> {
    std::string do_grouping() const override { return "\1"; }
    std::string do_truename() const override { return "yes"; }
};
inline void Disturb(std::ostream& stream) {
    stream.imbue(std::locale(std::locale::classic(), new GroupedDigits));
    stream << std::hex << std::showbase << std::showpos << std::boolalpha << std::left;
    stream.fill('*');
    stream.width(30);
}
/// The value comes out of a disturbed stream as `expected`, and the stream as disturbed as before.
template <typename FormatterClass>
void ExpectIndependentOfStream(FormatterClass& formatter,
                               const std::shared_ptr<MetaObj::MetaObject>& value,
                               const std::string& expected) {
    std::ostringstream stream;
    Disturb(stream);
    const auto flags = stream.flags();
    formatter.Format(value, stream, 0);
    EXPECT_EQ(expected, stream.str());
    EXPECT_EQ(flags, stream.flags());
    EXPECT_EQ(30, stream.width());
    EXPECT_EQ('*', stream.fill());
    EXPECT_TRUE(std::has_facet<std::numpunct<char>>(stream.getloc()));
    EXPECT_EQ("\1", std::use_facet<std::numpunct<char>>(stream.getloc()).grouping());
}

}  // namespace Corvel::AutoCli

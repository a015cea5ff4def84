#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/autocli/plugins/DescriptorWords.h"
#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/autocli/plugins/XmlTreeBytes.h"

namespace Corvel::AutoCli {

class XmlChildren;
class XmlElement;

/// An element of a descriptor with everything below it that can mean something: elements, the
/// attributes whose names are words, and text, but for what stands directly in an element that only
/// holds elements.
///
/// Lean, because a process holds the trees of all its descriptors, and memory that is touched for
/// the first time costs more than what is read into it: XmlTreeBytes.h tells how it lies there.
///
/// Lifetime: never changed once it is made, so everybody may share it. Elements, and the texts that
///           they tell, live as long as the tree.
class XmlTree final {
public:
    /// The tree of a file; null for what is no regular file or no well-formed document.
    static std::shared_ptr<const XmlTree> OfFile(const std::string& path);

    explicit XmlTree(std::string_view bytes) : _bytes(bytes) {}

    XmlElement Root() const;

private:
    const std::string _bytes;
};

/// An element of a tree, or none. None has no name, no attributes, no content and no children.
///
/// As cheap as a pointer; lives no longer than its tree.
class XmlElement final {
public:
    XmlElement() = default;

    explicit operator bool() const { return _bytes != nullptr; }

    /// None, where there is no element.
    Word GetWord() const { return _bytes == nullptr ? Word::None : static_cast<Word>(*_bytes); }
    std::string_view Name() const;
    /// The value of the first attribute of that name, empty when there is none.
    std::string_view Attribute(Word name) const;
    /// All the text inside, the descendants' included.
    std::string Content() const;
    bool HasContent() const;
    /// The elements directly below, in the order of the document.
    XmlChildren Children() const;
    /// Tells a handler what an XML text of the element would.
    void Replay(XmlHandler& handler) const;

private:
    friend class XmlTree;
    friend class XmlChildren;

    explicit XmlElement(const char* bytes) : _bytes(bytes) {}

    template <typename Take>
    void ForEachText(const Take& take) const;
    void GetAttributes(std::vector<XmlAttribute>& attributes) const;

    const char* _bytes = nullptr;
};

/// The elements directly below one:
///   for (const XmlElement child : element.Children()) ..
class XmlChildren final {
public:
    class Iterator {
    public:
        Iterator(const char* at, const char* end) : _at(at), _end(end) { SkipTexts(); }
        XmlElement operator*() const { return XmlElement(_at); }
        Iterator& operator++() {
            _at = XmlTreeBytes::EndOf(XmlTreeBytes::BodyOf(_at));
            SkipTexts();
            return *this;
        }
        bool operator!=(const Iterator& other) const { return _at != other._at; }

    private:
        void SkipTexts() {
            while (_at != _end && XmlTreeBytes::WordAt(_at) == Word::None) {
                _at = XmlTreeBytes::EndOf(XmlTreeBytes::PieceAt(_at).text);
            }
        }

        const char* _at;
        const char* _end;
    };

    explicit XmlChildren(XmlElement parent) {
        if (parent) {
            _begin = XmlTreeBytes::ContentOf(parent._bytes);
            _end = XmlTreeBytes::EndOf(XmlTreeBytes::BodyOf(parent._bytes));
        }
    }

    bool IsEmpty() const { return !(begin() != end()); }
    Iterator begin() const { return {_begin, _end}; }
    Iterator end() const { return {_end, _end}; }

private:
    const char* _begin = nullptr;
    const char* _end = nullptr;
};

inline std::string_view XmlElement::Attribute(Word name) const {
    if (_bytes == nullptr) {
        return {};
    }
    const char* at = XmlTreeBytes::AttributesOf(_bytes);
    while (XmlTreeBytes::WordAt(at) != Word::None) {
        const auto [word, value] = XmlTreeBytes::PieceAt(at);
        if (word == name) {
            return value;
        }
        at = XmlTreeBytes::EndOf(value);
    }
    return {};
}

inline XmlChildren XmlElement::Children() const {
    return XmlChildren(*this);
}

/// Makes a tree of what a reader meets.
class XmlTreeBuilder final : public XmlHandler {
public:
    XmlTreeBuilder();
    ~XmlTreeBuilder() override;

    void StartElement(std::string_view name, const XmlAttributes& attributes) override;
    void Text(std::string_view text) override;
    void EndElement() override;

    /// @return the tree of the element that was started first, once it has ended; null when a text
    ///         was too long.
    std::shared_ptr<const XmlTree> Finish() const;

private:
    /// An element that has not ended yet.
    struct Open {
        std::size_t begin;
        bool keepsText;
    };

    char* Extend(std::size_t count);
    void Grow(std::size_t count);
    void AddPiece(Word word, std::string_view text);

    std::size_t _capacity;
    std::size_t _size = 0;
    std::unique_ptr<char[]> _bytes;
    std::vector<Open> _open;
    bool _isTooLong = false;
};

}  // namespace Corvel::AutoCli

#include "corvel/autocli/plugins/XmlTree.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

namespace Corvel::AutoCli {
namespace {

using namespace XmlTreeBytes;

Size Narrow(std::size_t size) {
    if (size > std::numeric_limits<Size>::max()) {
        throw std::length_error("XML tree too large");
    }
    return static_cast<Size>(size);
}

void PutSize(char* at, Size size) {
    std::memcpy(at, &size, sizeof(size));
}

}  // namespace

std::shared_ptr<const XmlTree> XmlTree::OfFile(const std::string& path) {
    XmlTreeBuilder builder;
    return ReadXmlFile(path, builder) ? builder.Finish() : nullptr;
}

XmlElement XmlTree::Root() const {
    return XmlElement(_bytes.data());
}

std::string_view XmlElement::Name() const {
    const Word word = GetWord();
    return word == Word::Other ? std::string_view(_bytes + kElementHead) : SpellingOf(word);
}

/// The texts of elements further down are met on the way: what is below an element lies in it.
template <typename Take>
void XmlElement::ForEachText(const Take& take) const {
    if (_bytes == nullptr) {
        return;
    }
    const char* const end = EndOf(BodyOf(_bytes));
    const char* at = ContentOf(_bytes);
    while (at != end) {
        if (WordAt(at) == Word::None) {
            const std::string_view text = PieceAt(at).text;
            take(text);
            at = EndOf(text);
        } else {
            at = ContentOf(at);
        }
    }
}

std::string XmlElement::Content() const {
    std::string content;
    ForEachText([&content](std::string_view text) { content.append(text); });
    return content;
}

bool XmlElement::HasContent() const {
    bool hasContent = false;
    ForEachText([&hasContent](std::string_view text) { hasContent |= !text.empty(); });
    return hasContent;
}

void XmlElement::Replay(XmlHandler& handler) const {
    if (_bytes == nullptr) {
        return;
    }
    std::vector<const char*> ends;
    std::vector<XmlAttribute> attributes;
    const char* at = _bytes;
    do {
        if (WordAt(at) == Word::None) {
            const std::string_view text = PieceAt(at).text;
            handler.Text(text);
            at = EndOf(text);
        } else {
            const XmlElement element(at);
            element.GetAttributes(attributes);
            handler.StartElement(element.Name(), XmlAttributes(attributes));
            ends.push_back(EndOf(BodyOf(at)));
            at = ContentOf(at);
        }
        while (!ends.empty() && at == ends.back()) {
            handler.EndElement();
            ends.pop_back();
        }
    } while (!ends.empty());
}

void XmlElement::GetAttributes(std::vector<XmlAttribute>& attributes) const {
    attributes.clear();
    for (const char* at = AttributesOf(_bytes); WordAt(at) != Word::None;) {
        const auto [word, value] = PieceAt(at);
        attributes.push_back({SpellingOf(word), value});
        at = EndOf(value);
    }
}

// The first row is enough for nearly every descriptor. The tree is copied to where it fits exactly in
// the end, so this memory serves the next one again.
XmlTreeBuilder::XmlTreeBuilder()
    : _capacity(std::size_t{16} * 1024),
      _bytes(std::make_unique_for_overwrite<char[]>(_capacity)) {}

XmlTreeBuilder::~XmlTreeBuilder() = default;

/// @return where so many more bytes belong.
char* XmlTreeBuilder::Extend(std::size_t count) {
    if (count > _capacity - _size) {
        Grow(count);
    }
    char* const place = _bytes.get() + _size;
    _size += count;
    return place;
}

void XmlTreeBuilder::Grow(std::size_t count) {
    _capacity = std::max(2 * _capacity, _size + count);
    auto bytes = std::make_unique_for_overwrite<char[]>(_capacity);
    std::memcpy(bytes.get(), _bytes.get(), _size);
    _bytes = std::move(bytes);
}

void XmlTreeBuilder::AddPiece(Word word, std::string_view text) {
    const bool isLong = text.size() >= kLongLength;
    char* at = Extend(2 + (isLong ? sizeof(Size) : 0) + text.size());
    *at++ = static_cast<char>(word);
    *at++ = static_cast<char>(isLong ? kLongLength : text.size());
    if (isLong) {
        PutSize(at, Narrow(text.size()));
        at += sizeof(Size);
    }
    std::copy(text.begin(), text.end(), at);
}

void XmlTreeBuilder::StartElement(std::string_view name, const XmlAttributes& attributes) {
    const Word word = WordOf(name);
    // Whoever asks for the content of an element wants all that is in it.
    const bool keepsText = !_open.empty() && (_open.back().keepsText || !HoldsElementsOnly(word));
    _open.push_back({_size, keepsText});
    *Extend(kElementHead) = static_cast<char>(word);
    if (word == Word::Other) {
        std::copy(name.begin(), name.end(), Extend(name.size()));
        *Extend(1) = '\0';
    }
    for (const auto& [attribute, value] : attributes) {
        const Word attributeWord = WordOf(attribute);
        if (attributeWord != Word::Other) {
            AddPiece(attributeWord, value);
        }
    }
    *Extend(1) = static_cast<char>(Word::None);
}

void XmlTreeBuilder::Text(std::string_view text) {
    // The parser refuses longer texts, but not those that it can hand over in one piece.
    constexpr std::size_t kLongestText = 10'000'000;
    _isTooLong |= text.size() > kLongestText;
    if (_open.back().keepsText) {
        AddPiece(Word::None, text);
    }
}

void XmlTreeBuilder::EndElement() {
    const std::size_t begin = _open.back().begin;
    PutSize(_bytes.get() + begin + 1, Narrow(_size - begin - kElementHead));
    _open.pop_back();
}

std::shared_ptr<const XmlTree> XmlTreeBuilder::Finish() const {
    return _isTooLong ? nullptr
                      : std::make_shared<const XmlTree>(std::string_view(_bytes.get(), _size));
}

}  // namespace Corvel::AutoCli

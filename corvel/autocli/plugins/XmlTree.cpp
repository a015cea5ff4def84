#include "corvel/autocli/plugins/XmlTree.h"

#include <cstring>
#include <limits>
#include <stdexcept>

namespace Corvel::AutoCli {
namespace {

using Size = std::uint32_t;

/// What stands before every element, attribute and text: its word and the size of what follows.
constexpr std::size_t kHeadSize = 1 + sizeof(Size);

struct Head {
    Word word;
    std::string_view rest;
};

Word WordAt(const char* at) {
    return static_cast<Word>(*at);
}

Head ReadHead(const char* at) {
    Size size = 0;
    std::memcpy(&size, at + 1, sizeof(size));
    return {WordAt(at), {at + kHeadSize, size}};
}

const char* EndOf(std::string_view text) {
    return text.data() + text.size();
}

/// @return where the attributes of an element begin.
const char* AttributesOf(const Head& element) {
    const char* begin = element.rest.data();
    return element.word == Word::Other ? begin + std::strlen(begin) + 1 : begin;
}

/// @param at  an attribute, or the zero behind the last.
/// @return where the content begins.
const char* SkipAttributes(const char* at) {
    while (WordAt(at) != Word::None) {
        at = EndOf(ReadHead(at).rest);
    }
    return at + 1;
}

const char* ContentOf(const Head& element) {
    return SkipAttributes(AttributesOf(element));
}

void SetSize(std::string& bytes, std::size_t head) {
    const std::size_t size = bytes.size() - head - kHeadSize;
    if (size > std::numeric_limits<Size>::max()) {
        throw std::length_error("XML tree too large");
    }
    const auto narrow = static_cast<Size>(size);
    std::memcpy(&bytes[head + 1], &narrow, sizeof(narrow));
}

/// @return where the head is, whose size is still to be set.
std::size_t AddHead(std::string& bytes, Word word) {
    const std::size_t head = bytes.size();
    bytes.append(kHeadSize, '\0');
    bytes[head] = static_cast<char>(word);
    return head;
}

void Add(std::string& bytes, Word word, std::string_view text) {
    const std::size_t head = AddHead(bytes, word);
    bytes.append(text);
    SetSize(bytes, head);
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
    return word == Word::Other ? std::string_view(_bytes + kHeadSize) : SpellingOf(word);
}

std::string_view XmlElement::Attribute(Word name) const {
    if (_bytes == nullptr) {
        return {};
    }
    const char* at = AttributesOf(ReadHead(_bytes));
    while (WordAt(at) != Word::None) {
        const auto [word, value] = ReadHead(at);
        if (word == name) {
            return value;
        }
        at = EndOf(value);
    }
    return {};
}

/// The texts of elements further down are met on the way: what is below an element lies in it.
template <typename Take>
void XmlElement::ForEachText(const Take& take) const {
    if (_bytes == nullptr) {
        return;
    }
    const Head element = ReadHead(_bytes);
    const char* at = ContentOf(element);
    while (at != EndOf(element.rest)) {
        const Head item = ReadHead(at);
        if (item.word == Word::None) {
            take(item.rest);
            at = EndOf(item.rest);
        } else {
            at = ContentOf(item);
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
        const Head item = ReadHead(at);
        if (item.word == Word::None) {
            handler.Text(item.rest);
            at = EndOf(item.rest);
        } else {
            attributes.clear();
            for (at = AttributesOf(item); WordAt(at) != Word::None;) {
                const auto [word, value] = ReadHead(at);
                attributes.push_back({SpellingOf(word), value});
                at = EndOf(value);
            }
            ++at;
            handler.StartElement(XmlElement(item.rest.data() - kHeadSize).Name(),
                                 XmlAttributes(attributes));
            ends.push_back(EndOf(item.rest));
        }
        while (!ends.empty() && at == ends.back()) {
            handler.EndElement();
            ends.pop_back();
        }
    } while (!ends.empty());
}

XmlChildren::XmlChildren(XmlElement parent) {
    if (parent) {
        const Head element = ReadHead(parent._bytes);
        _begin = ContentOf(element);
        _end = EndOf(element.rest);
    }
}

XmlChildren::Iterator& XmlChildren::Iterator::operator++() {
    _at = EndOf(ReadHead(_at).rest);
    SkipTexts();
    return *this;
}

void XmlChildren::Iterator::SkipTexts() {
    while (_at != _end && WordAt(_at) == Word::None) {
        _at = EndOf(ReadHead(_at).rest);
    }
}

XmlTreeBuilder::XmlTreeBuilder() {
    // Enough for nearly every descriptor. The tree is copied to where it fits exactly in the end, so
    // this memory serves the next one again.
    constexpr std::size_t kUsualSize = std::size_t{16} * 1024;
    _bytes.reserve(kUsualSize);
}

XmlTreeBuilder::~XmlTreeBuilder() = default;

void XmlTreeBuilder::StartElement(std::string_view name, const XmlAttributes& attributes) {
    const Word word = WordOf(name);
    // Whoever asks for the content of an element wants all that is in it.
    const bool keepsText = !_open.empty() && (_open.back().keepsText || !HoldsElementsOnly(word));
    _open.push_back({AddHead(_bytes, word), keepsText});
    if (word == Word::Other) {
        _bytes.append(name).push_back('\0');
    }
    for (const auto& [attribute, value] : attributes) {
        const Word attributeWord = WordOf(attribute);
        if (attributeWord != Word::Other) {
            Add(_bytes, attributeWord, value);
        }
    }
    _bytes.push_back('\0');
}

void XmlTreeBuilder::Text(std::string_view text) {
    // The parser refuses longer texts, but not those that it can hand over in one piece.
    constexpr std::size_t kLongestText = 10'000'000;
    _isTooLong |= text.size() > kLongestText;
    if (_open.back().keepsText) {
        Add(_bytes, Word::None, text);
    }
}

void XmlTreeBuilder::EndElement() {
    SetSize(_bytes, _open.back().begin);
    _open.pop_back();
}

std::shared_ptr<const XmlTree> XmlTreeBuilder::Finish() const {
    return _isTooLong ? nullptr : std::make_shared<const XmlTree>(_bytes);
}

}  // namespace Corvel::AutoCli

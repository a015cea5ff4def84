#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Corvel::AutoCli {

/// What stands in a template where a token was replaced: values of a call, which nothing that
/// follows looks into, and what the template itself put between them.
class InsertedValue final {
public:
    struct Piece {
        std::string text;
        /// Whose value the text is; empty when it comes from the template.
        std::string parameter;
    };

    void Append(Piece piece);
    const std::vector<Piece>& Pieces() const { return _pieces; }
    std::size_t Size() const { return _size; }

private:
    std::vector<Piece> _pieces;
    std::size_t _size = 0;
};

/// A command template while its tokens are being replaced: characters of the template, which the
/// following steps read, and inserted values, which they step over.
///
/// Each inserted value, an empty one too, stands among the characters as one kPlaceholder. That is
/// no character of any token, brace or quote; the same character in a template's own text is told
/// from it by its position.
class TemplateText final {
public:
    static constexpr char kPlaceholder = '\1';

    TemplateText() = default;
    explicit TemplateText(std::string characters) : _characters(std::move(characters)) {}

    const std::string& Characters() const { return _characters; }
    std::size_t Size() const { return _characters.size(); }
    /// @return the value that stands at this position, or null.
    const InsertedValue* ValueAt(std::size_t position) const;

    void Append(std::string_view characters) { _characters += characters; }
    void Append(std::shared_ptr<const InsertedValue> value);
    /// Appends the characters from begin to before end of another text, with their values.
    void Append(const TemplateText& other, std::size_t begin, std::size_t end);
    /// Drops everything from this position on.
    void Truncate(std::size_t size);

    /// @return the text with every value in its place.
    std::string Render() const;
    /// @return how long the characters from begin to before end are when they are rendered.
    std::size_t RenderedSize(std::size_t begin, std::size_t end) const;
    /// @return the first position from `begin` on that is at least this much rendered text away
    ///         from it; the end of the text when there is none.
    std::size_t PositionBehind(std::size_t begin, std::size_t renderedSize) const;

private:
    struct Insertion {
        std::size_t position;
        std::shared_ptr<const InsertedValue> value;
    };

    std::vector<Insertion>::const_iterator FirstInsertionFrom(std::size_t position) const;

    std::string _characters;
    /// By ascending position.
    std::vector<Insertion> _insertions;
};

}  // namespace Corvel::AutoCli

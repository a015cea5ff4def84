#include "corvel/autocli/plugins/TemplateText.h"

#include <algorithm>
#include <utility>

namespace Corvel::AutoCli {

void InsertedValue::Append(Piece piece) {
    _size += piece.text.size();
    _pieces.push_back(std::move(piece));
}

const InsertedValue* TemplateText::ValueAt(std::size_t position) const {
    const auto found = FirstInsertionFrom(position);
    return found != _insertions.end() && found->position == position ? found->value.get() : nullptr;
}

void TemplateText::Append(std::shared_ptr<const InsertedValue> value) {
    _insertions.push_back({Size(), std::move(value)});
    _characters += kPlaceholder;
}

void TemplateText::Append(const TemplateText& other, std::size_t begin, std::size_t end) {
    const auto last = other.FirstInsertionFrom(end);
    for (auto insertion = other.FirstInsertionFrom(begin); insertion != last; ++insertion) {
        _insertions.push_back({insertion->position - begin + Size(), insertion->value});
    }
    _characters.append(other._characters, begin, end - begin);
}

void TemplateText::Truncate(std::size_t size) {
    _insertions.erase(FirstInsertionFrom(size), _insertions.cend());
    _characters.resize(size);
}

std::string TemplateText::Render() const {
    std::string rendered;
    std::size_t done = 0;
    for (const Insertion& insertion : _insertions) {
        rendered.append(_characters, done, insertion.position - done);
        for (const InsertedValue::Piece& piece : insertion.value->Pieces()) {
            rendered += piece.text;
        }
        done = insertion.position + 1;
    }
    return rendered.append(_characters, done);
}

std::size_t TemplateText::RenderedSize(std::size_t begin, std::size_t end) const {
    std::size_t size = end - begin;
    const auto last = FirstInsertionFrom(end);
    for (auto insertion = FirstInsertionFrom(begin); insertion != last; ++insertion) {
        size += insertion->value->Size() - 1;
    }
    return size;
}

std::size_t TemplateText::PositionBehind(std::size_t begin, std::size_t renderedSize) const {
    for (auto insertion = FirstInsertionFrom(begin); insertion != _insertions.end(); ++insertion) {
        const std::size_t gap = insertion->position - begin;
        if (renderedSize <= gap) {
            break;
        }
        renderedSize -= gap + std::min(renderedSize - gap, insertion->value->Size());
        begin = insertion->position + 1;
    }
    return std::min(begin + renderedSize, Size());
}

std::vector<TemplateText::Insertion>::const_iterator TemplateText::FirstInsertionFrom(
    std::size_t position) const {
    return std::lower_bound(
        _insertions.begin(),
        _insertions.end(),
        position,
        [](const Insertion& insertion, std::size_t from) { return insertion.position < from; });
}

}  // namespace Corvel::AutoCli

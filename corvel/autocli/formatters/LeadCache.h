#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "corvel/autocli/formatters/TextBuffer.h"

namespace Corvel::AutoCli {

/// What stands before the values of fields ("      \"Size\": "), made once for many structures
/// alike. Remembers a fixed number of short texts, each for the address of a name and a variant;
/// every other text is made again, so that no text depends on what is remembered.
///
/// Lifetime: no name may change or end its life while the cache is used.
class LeadCache {
public:
    /// A place for the first of several texts, which are to follow it.
    /// @param owner  the address of what they belong to; different ones give different places.
    static std::size_t PlaceOf(const void* owner) {
        return reinterpret_cast<std::uintptr_t>(owner) / alignof(std::max_align_t);
    }

    /// @param name     its address.
    /// @param place    where it is remembered; should differ for texts that are needed in turn.
    /// @param variant  tells the texts for one name apart, for example by level.
    /// @param make     called with a TextBuffer to append the text to.
    /// @return the text; may be read in whole blocks (PutBlocks), until the next call.
    template <typename Make>
    std::string_view Get(std::size_t place, int variant, const void* name, const Make& make) {
        const auto spread = static_cast<std::size_t>(variant) * kVariantStep;
        Lead& lead = _leads[(place + spread) % kPlaces];
        if (lead.name != name || lead.variant != variant) {
            _made.Clear();
            make(_made);
            if (_made.Size() > kMostSize) {
                return _made.View();
            }
            lead.name = name;
            lead.variant = variant;
            lead.size = static_cast<std::uint32_t>(_made.Size());
            Put(lead.text.data(), _made.View());
        }
        return {lead.text.data(), lead.size};
    }

private:
    static constexpr std::size_t kPlaces = 128;
    /// Keeps apart the fields of nested structures, as long as they are not many.
    static constexpr std::size_t kVariantStep = 37;
    static constexpr std::size_t kMostSize = 112;
    static_assert(kMostSize % TextBuffer::kSlack == 0, "whole blocks are copied");

    struct Lead {
        const void* name = nullptr;
        std::int32_t variant = 0;
        std::uint32_t size = 0;
        std::array<char, kMostSize> text;  // not set beyond its size
    };

    std::array<Lead, kPlaces> _leads;
    TextBuffer _made;
};

}  // namespace Corvel::AutoCli

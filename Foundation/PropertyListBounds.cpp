#include "Foundation/PropertyListBounds.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace vantor {
namespace {

constexpr std::size_t kMostBytes = 16u << 20;
constexpr int kMostContainers = 10'000;  // of an XML list: also what its nesting can't exceed
constexpr int kMostObjects = 100'000;    // of a binary list, each counted as often as it is built
constexpr int kDeepest = 256;
constexpr std::string_view kBinaryMagic = "bplist00";

// --- XML ---------------------------------------------------------------------------------------

int occurrences(std::string_view text, std::string_view part) noexcept {
    int found = 0;
    for (auto at = text.find(part); at != text.npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

// --- Binary ------------------------------------------------------------------------------------

/// Goes through a binary list as its reader will: objects by number, through the table of offsets
/// that the trailer at the end of the file tells of.
class BinaryWalk {
public:
    explicit BinaryWalk(std::string_view bytes) noexcept : bytes_(bytes) {}

    bool isWithinBounds() noexcept { return readTrailer() && visit(topObject_, 0); }

private:
    static constexpr std::size_t kTrailerBytes = 32;
    enum Kind : std::uint8_t {
        integer = 1,
        text = 5,
        wideText = 6,
        utf8Text = 7,
        array = 0xA,
        set = 0xC,
        dictionary = 0xD
    };

    /// What an object holds: `count` letters, references or pairs of them.
    struct Content {
        std::uint64_t offset = 0, count = 0;
    };

    bool readTrailer() noexcept {
        if (bytes_.size() < kBinaryMagic.size() + kTrailerBytes)
            return false;
        const std::uint64_t trailer = bytes_.size() - kTrailerBytes;
        offsetBytes_ = number(trailer + 6, 1).value_or(0);
        referenceBytes_ = number(trailer + 7, 1).value_or(0);
        objects_ = number(trailer + 8, 8).value_or(0);
        topObject_ = number(trailer + 16, 8).value_or(0);
        offsetTable_ = number(trailer + 24, 8).value_or(0);
        return true;
    }

    /// A big-endian number, or nothing where it isn't inside the file.
    std::optional<std::uint64_t> number(std::uint64_t at, std::uint64_t width) const noexcept {
        if (width == 0 || width > 8 || at > bytes_.size() || width > bytes_.size() - at)
            return std::nullopt;
        std::uint64_t value = 0;
        for (std::uint64_t byte = at; byte < at + width; ++byte)
            value = value << 8 | static_cast<unsigned char>(bytes_[byte]);
        return value;
    }

    /// Entry `index` of a table whose entries are `width` bytes wide.
    std::optional<std::uint64_t> entry(std::uint64_t table, std::uint64_t index,
                                       std::uint64_t width) const noexcept {
        if (table > bytes_.size() || index > bytes_.size())
            return std::nullopt;  // so that the sum below can't overflow
        return number(table + index * width, width);
    }

    bool visit(std::uint64_t object, int depth) noexcept {
        if (depth > kDeepest || ++visited_ > kMostObjects || object >= objects_)
            return false;
        const auto offset = entry(offsetTable_, object, offsetBytes_);
        const auto marker = offset ? number(*offset, 1) : std::nullopt;
        if (!marker)
            return false;
        const auto held = content(*offset, *marker & 0xF);
        switch (*marker >> 4) {
        case text:
        case utf8Text:
            return held && isWithoutNull(*held, 1);
        case wideText:
            return held && isWithoutNull(*held, 2);
        case array:
        case set:
            return held && visitAll(*held, 1, depth + 1);
        case dictionary:
            return held && visitAll(*held, 2, depth + 1);
        default:
            return true;
        }
    }

    /// Up to 14 entries are counted in the marker itself; more in an integer behind it.
    std::optional<Content> content(std::uint64_t offset, std::uint64_t count) const noexcept {
        if (count != 0xF)
            return Content{offset + 1, count};
        const auto marker = number(offset + 1, 1);
        if (!marker || *marker >> 4 != integer || (*marker & 0xF) > 3)
            return std::nullopt;
        const std::uint64_t width = std::uint64_t{1} << (*marker & 0xF);
        const auto counted = number(offset + 2, width);
        return counted ? std::optional(Content{offset + 2 + width, *counted}) : std::nullopt;
    }

    /// A null inside a key would trip an assertion of the library and end the program.
    bool isWithoutNull(const Content& letters, std::uint64_t width) const noexcept {
        for (std::uint64_t index = 0; index < letters.count; ++index)
            if (entry(letters.offset, index, width).value_or(0) == 0)
                return false;
        return true;
    }

    bool visitAll(const Content& references, std::uint64_t perEntry, int depth) noexcept {
        if (references.count > bytes_.size())
            return false;
        for (std::uint64_t index = 0; index < references.count * perEntry; ++index) {
            const auto object = entry(references.offset, index, referenceBytes_);
            if (!object || !visit(*object, depth))
                return false;
        }
        return true;
    }

    std::string_view bytes_;
    std::uint64_t offsetBytes_ = 0, referenceBytes_ = 0, objects_ = 0;
    std::uint64_t topObject_ = 0, offsetTable_ = 0;
    int visited_ = 0;
};

}  // namespace

bool propertyListIsWithinBounds(std::string_view bytes) noexcept {
    if (bytes.size() > kMostBytes)
        return false;
    if (bytes.substr(0, kBinaryMagic.size()) == kBinaryMagic)
        return BinaryWalk(bytes).isWithinBounds();
    return bytes.find('\0') == bytes.npos &&
           occurrences(bytes, "<array") + occurrences(bytes, "<dict") <= kMostContainers;
}

}  // namespace vantor

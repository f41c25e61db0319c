#include "Foundation/KeyedArchive.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Foundation/NumberText.h"
#include "Foundation/PropertyListTree.h"

namespace vantor {
namespace {

constexpr std::string_view kArchiver = "NSKeyedArchiver", kColourClass = "NSColor";
constexpr int kMostNames = 8;  // a colour of a list may stand for one of another list

using Components = std::vector<double>;

// --- Nodes. Each of these takes null, and a node of any kind. ------------------------------------

plist_t entry(plist_t dictionary, const char* key) noexcept {
    return plist_get_node_type(dictionary) == PLIST_DICT ? plist_dict_get_item(dictionary, key)
                                                         : nullptr;
}

std::string_view text(plist_t node) noexcept {
    if (plist_get_node_type(node) != PLIST_STRING)
        return {};
    std::uint64_t length = 0;
    const char* const letters = plist_get_string_ptr(node, &length);
    return letters == nullptr ? std::string_view{} : std::string_view(letters, length);
}

/// The bytes up to the null that archivers put behind a text.
std::optional<std::string_view> textInData(plist_t node) noexcept {
    if (plist_get_node_type(node) != PLIST_DATA)
        return std::nullopt;
    std::uint64_t length = 0;
    const char* const bytes = plist_get_data_ptr(node, &length);
    const std::string_view all(bytes == nullptr ? "" : bytes, bytes == nullptr ? 0 : length);
    return all.substr(0, all.find('\0'));
}

std::optional<std::uint64_t> integer(plist_t node) noexcept {
    if (plist_get_node_type(node) != PLIST_UINT)
        return std::nullopt;
    std::uint64_t value = 0;
    plist_get_uint_val(node, &value);
    return value;
}

/// The number of the object that is referred to. XML has no kind of its own for a reference.
std::optional<std::uint64_t> reference(plist_t node) noexcept {
    if (plist_get_node_type(node) != PLIST_UID)
        return integer(entry(node, "CF$UID"));
    std::uint64_t number = 0;
    plist_get_uid_val(node, &number);
    return number;
}

// --- Objects -----------------------------------------------------------------------------------

class Archive {
public:
    explicit Archive(plist_t list) noexcept
        : objects_(entry(list, "$objects")), root_(entry(entry(list, "$top"), "root")),
          isKeyed_(text(entry(list, "$archiver")) == kArchiver &&
                   plist_get_node_type(objects_) == PLIST_ARRAY) {}

    /// Null where this is no archive, or one of nothing.
    plist_t root() const noexcept { return isKeyed_ ? referred(root_) : nullptr; }

    plist_t referred(plist_t node) const noexcept {
        const auto number = reference(node);
        return number && *number < plist_array_get_size(objects_)
                   ? plist_array_get_item(objects_, static_cast<std::uint32_t>(*number))
                   : nullptr;
    }

    bool isColour(plist_t object) const noexcept {
        const plist_t itsClass = referred(entry(object, "$class"));
        if (text(entry(itsClass, "$classname")) == kColourClass)
            return true;
        const plist_t ancestors = entry(itsClass, "$classes");
        const bool listed = plist_get_node_type(ancestors) == PLIST_ARRAY;
        for (std::uint32_t index = 0; listed && index < plist_array_get_size(ancestors); ++index)
            if (text(plist_array_get_item(ancestors, index)) == kColourClass)
                return true;
        return false;
    }

private:
    plist_t objects_, root_;
    bool isKeyed_;
};

// --- Colours -----------------------------------------------------------------------------------

Colour fromGrey(const Components& parts) { return {parts[0], parts[0], parts[0]}; }
Colour fromRGB(const Components& parts) { return {parts[0], parts[1], parts[2]}; }
Colour fromInks(const Components& parts) {
    const double light = 1 - parts[3];
    return {(1 - parts[0]) * light, (1 - parts[1]) * light, (1 - parts[2]) * light};
}

/// A way to put down a colour. Its components are texts under a key of its own, or under one that
/// all share where the space's number tells what they are; alpha may stand behind them.
struct Model {
    const char* key;
    std::array<std::uint64_t, 2> spaces;
    std::size_t count;
    Colour (*colour)(const Components&);
};
constexpr const char* kSharedKey = "NSComponents";
constexpr Model kModels[] = {{"NSRGB", {1, 2}, 3, fromRGB},
                             {"NSWhite", {3, 4}, 1, fromGrey},
                             {"NSCMYK", {5, 5}, 4, fromInks}};

/// Nothing where one isn't a number.
std::optional<Components> components(std::string_view list) {
    constexpr std::size_t kMost = 5;
    Components parts;
    for (std::size_t at = 0; (at = list.find_first_not_of(' ', at)) != list.npos;) {
        const std::size_t end = std::min(list.find(' ', at), list.size());
        const auto number = wholeNumber(list.substr(at, end - at));
        if (!number || parts.size() == kMost)
            return std::nullopt;
        parts.push_back(std::clamp(*number, 0.0, 1.0));
        at = end;
    }
    return parts;
}

std::optional<Colour> colourFrom(const Model& model, std::string_view list) {
    const auto parts = components(list);
    if (!parts || (parts->size() != model.count && parts->size() != model.count + 1))
        return std::nullopt;
    Colour colour = model.colour(*parts);
    if (parts->size() > model.count)
        colour.alpha = parts->back();
    return colour;
}

std::optional<Colour> colourByComponents(plist_t object) {
    const auto space = integer(entry(object, "NSColorSpace"));
    const auto shared = textInData(entry(object, kSharedKey));
    for (const Model& model : kModels) {
        if (const auto own = textInData(entry(object, model.key)))
            return colourFrom(model, *own);
        if (shared && space && std::ranges::find(model.spaces, *space) != model.spaces.end())
            return colourFrom(model, *shared);
    }
    return std::nullopt;
}

std::optional<Colour> colourOf(const Archive& archive, plist_t object) {
    for (int names = 0; names < kMostNames && archive.isColour(object); ++names) {
        if (const auto colour = colourByComponents(object))
            return colour;
        object = archive.referred(entry(object, "NSColor"));
    }
    return std::nullopt;
}

}  // namespace

ArchivedObject objectInKeyedArchive(std::string_view bytes) {
    const PropertyListTree tree(bytes);
    const Archive archive(tree.root());
    const plist_t root = archive.root();
    if (root == nullptr)
        return NotAnArchive{};
    const auto colour = colourOf(archive, root);
    return colour ? ArchivedObject(*colour) : AnotherObject{};
}

}  // namespace vantor

#include "Programs/vantorbar-preferences/Model/MenubarModes.h"

#include <algorithm>

#include "Foundation/PropertyValue.h"
#include "Programs/vantorbar-preferences/Model/SettingCatalogue.h"

namespace vantor {
namespace {

using Rows = std::vector<MenubarModes::Row>;

Rows shownIn(std::string_view stored) {
    Rows rows;
    for (std::size_t begin = 0; begin <= stored.size();) {
        const std::size_t end = std::min(stored.find(',', begin), stored.size());
        rows.push_back({PropertyValue(stored.substr(begin, end - begin)).integerValue(), true});
        begin = end + 1;
    }
    return rows;
}

}  // namespace

MenubarModes::MenubarModes(std::string_view stored) : rows_(shownIn(stored)) {
    for (const ModeDescription& known : modeDescriptions())
        if (std::ranges::find(rows_, known.mode, &Row::mode) == rows_.end())
            rows_.push_back({known.mode, false});
}

bool MenubarModes::isKnown(std::int64_t mode) noexcept {
    return std::ranges::find(modeDescriptions(), mode, &ModeDescription::mode) !=
           modeDescriptions().end();
}

std::string MenubarModes::text() const {
    std::string text;
    for (const Row& row : rows_)
        if (row.shown)
            text += (text.empty() ? "" : ",") + std::to_string(row.mode);
    return text;
}

bool MenubarModes::canHide(std::size_t row) const noexcept {
    const auto showing = [](const Row& other) { return other.shown && isKnown(other.mode); };
    return rows_[row].shown && std::ranges::count_if(rows_, showing) > 1;
}

bool MenubarModes::setShown(std::size_t row, bool shown) noexcept {
    if (rows_[row].shown == shown || (!shown && !canHide(row)))
        return false;
    rows_[row].shown = shown;
    return true;
}

bool MenubarModes::move(std::size_t row, std::size_t to) noexcept {
    if (row == to || row >= rows_.size() || to >= rows_.size())
        return false;
    const auto at = [this](std::size_t place) {
        return rows_.begin() + static_cast<std::ptrdiff_t>(place);
    };
    if (row < to)
        std::rotate(at(row), at(row + 1), at(to + 1));
    else
        std::rotate(at(to), at(row), at(row + 1));
    return true;
}

std::size_t MenubarModes::neighbour(std::size_t row, int step) const noexcept {
    for (auto place = static_cast<std::ptrdiff_t>(row) + step;
         place >= 0 && place < std::ssize(rows_); place += step)
        if (isKnown(rows_[static_cast<std::size_t>(place)].mode))
            return static_cast<std::size_t>(place);
    return row;
}

bool MenubarModes::follow(std::string_view stored) {
    if (text() == MenubarModes(stored).text())
        return false;
    *this = MenubarModes(stored);
    return true;
}

}  // namespace vantor

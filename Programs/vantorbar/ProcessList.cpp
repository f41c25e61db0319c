#include "Programs/vantorbar/ProcessList.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Foundation/UTF8.h"

namespace vantor {
namespace {

constexpr char kStandIn = '?';

const PropertyValue* fieldOf(const PropertyValue::Dictionary& record, const char* name) {
    const auto field = record.find(name);
    return field == record.end() ? nullptr : &field->second;
}

/// Whether a terminal would take the letter for an order.
bool isControl(std::string_view letter) noexcept {
    const auto first = static_cast<unsigned char>(letter[0]);
    const bool isSecondSet = first == 0xC2 && static_cast<unsigned char>(letter[1]) < 0xA0;
    return first < 0x20 || first == 0x7F || isSecondSet;
}

/// At most that many letters of `name`.
std::string shownName(std::string_view name, std::size_t letters, Glyphs glyphs) {
    std::string shown;
    for (; letters > 0 && !name.empty(); --letters) {
        const std::size_t length = utf8LetterLength(name);
        const std::string_view letter = name.substr(0, std::max(length, std::size_t{1}));
        const bool hasGlyph = length == 1 || (length > 1 && glyphs == Glyphs::unicode);
        if (hasGlyph && !isControl(letter))
            shown += letter;
        else
            shown += kStandIn;
        name.remove_prefix(letter.size());
    }
    return shown;
}

}  // namespace

std::vector<ListedProcess> processesIn(const PropertyValue::Dictionary& response) {
    std::vector<ListedProcess> processes;
    const PropertyValue* const records = fieldOf(response, "processes");
    if (records == nullptr || records->array() == nullptr)
        return processes;
    for (const PropertyValue& record : *records->array()) {
        ListedProcess& process = processes.emplace_back();
        if (record.dictionary() == nullptr)
            continue;
        if (const PropertyValue* const name = fieldOf(*record.dictionary(), "name"))
            process.name = name->stringValue();
        if (const PropertyValue* const percent = fieldOf(*record.dictionary(), "c"))
            process.percent = percent->doubleValue();
    }
    return processes;
}

std::string processesAsJSON(double time, const std::vector<ListedProcess>& processes) {
    nlohmann::ordered_json list{{"time", time}, {"processes", nlohmann::ordered_json::array()}};
    for (const auto& [name, percent] : processes)
        list["processes"].push_back({{"name", name}, {"percent", percent}});
    return list.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::vector<std::string> processesAsLines(const std::vector<ListedProcess>& processes,
                                          std::size_t columns, Glyphs glyphs) {
    constexpr std::string_view kHeading = "  CPU %  PROCESS";
    constexpr std::size_t kNameColumn = kHeading.find("PROCESS");
    std::vector<std::string> lines{std::string(kHeading.substr(0, columns))};
    const std::size_t room = columns > kNameColumn ? columns - kNameColumn : 0;
    for (const auto& [name, percent] : processes) {
        const std::string figure = fmt::format("{:7.1f}  ", percent);
        lines.push_back(figure.substr(0, columns) + shownName(name, room, glyphs));
    }
    return lines;
}

}  // namespace vantor

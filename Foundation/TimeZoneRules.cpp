#include "Foundation/TimeZoneRules.h"

#include <algorithm>

namespace vantor {
namespace {

constexpr std::size_t kHeaderBytes = 44, kTypeBytes = 6;

/// Big-endian, and signed.
std::int64_t integerOf(std::string_view bytes) noexcept {
    std::uint64_t value = static_cast<unsigned char>(bytes.front()) & 0x80 ? ~std::uint64_t{0} : 0;
    for (const char byte : bytes)
        value = value << 8 | static_cast<unsigned char>(byte);
    return static_cast<std::int64_t>(value);
}

/// One of a zone file's blocks: the first has times of 4 bytes, the second of 8.
struct Block {
    char version = 0;
    std::size_t timeBytes = 4, timeCount = 0, typeCount = 0, afterTypes = 0;
    std::string_view data;  // from behind the header to the end of the file

    std::size_t size() const noexcept {
        return timeCount * (timeBytes + 1) + typeCount * kTypeBytes + afterTypes;
    }
    std::int64_t time(std::size_t index) const noexcept {
        return integerOf(data.substr(index * timeBytes, timeBytes));
    }
    std::size_t typeOfTime(std::size_t index) const noexcept {
        return static_cast<unsigned char>(data[timeCount * timeBytes + index]);
    }
    std::int32_t offset(std::size_t type) const noexcept {
        const std::size_t place = timeCount * (timeBytes + 1) + type * kTypeBytes;
        return static_cast<std::int32_t>(integerOf(data.substr(place, 4)));
    }
};

/// Nothing where the block isn't whole.
std::optional<Block> blockAt(std::string_view bytes, std::size_t timeBytes) noexcept {
    if (bytes.size() < kHeaderBytes || !bytes.starts_with("TZif"))
        return std::nullopt;
    const auto count = [&](std::size_t index) {
        return static_cast<std::size_t>(integerOf(bytes.substr(20 + 4 * index, 4)) & 0xFFFFFFFF);
    };
    Block block{.version = bytes[4],
                .timeBytes = timeBytes,
                .timeCount = count(3),
                .typeCount = count(4),
                .afterTypes = count(5) + count(2) * (timeBytes + 4) + count(1) + count(0),
                .data = bytes.substr(kHeaderBytes)};
    if (block.typeCount == 0 || block.size() > block.data.size())
        return std::nullopt;
    return block;
}

std::optional<std::vector<TimeZoneRules::Transition>> transitionsOf(const Block& block) {
    std::vector<TimeZoneRules::Transition> transitions;
    for (std::size_t index = 0; index < block.timeCount; ++index) {
        const std::size_t type = block.typeOfTime(index);
        const bool rises = transitions.empty() || transitions.back().time < block.time(index);
        if (type >= block.typeCount || !rises)
            return std::nullopt;
        transitions.push_back({block.time(index), block.offset(type)});
    }
    return transitions;
}

/// Between two line breaks, behind the block.
std::optional<YearlyZoneRule> laterRule(const Block& block) {
    const std::string_view footer = block.data.substr(block.size());
    if (block.timeBytes != 8 || footer.size() < 2 || footer.front() != '\n')
        return std::nullopt;
    return YearlyZoneRule::fromText(footer.substr(1, footer.find('\n', 1) - 1));
}

}  // namespace

std::optional<TimeZoneRules> TimeZoneRules::fromZoneFile(std::string_view bytes) {
    auto block = blockAt(bytes, 4);
    if (block && block->version >= '2')
        block = blockAt(block->data.substr(block->size()), 8);
    if (!block)
        return std::nullopt;
    auto transitions = transitionsOf(*block);
    if (!transitions)
        return std::nullopt;
    TimeZoneRules rules;
    rules.firstOffset_ = block->offset(0);
    rules.transitions_ = *std::move(transitions);
    rules.later_ = laterRule(*block);
    return rules;
}

std::int32_t TimeZoneRules::secondsFromGMT(std::int64_t time) const noexcept {
    const auto next = std::ranges::upper_bound(transitions_, time, {}, &Transition::time);
    if (next == transitions_.end() && later_)
        return later_->secondsFromGMT(time);
    return next == transitions_.begin() ? firstOffset_ : std::prev(next)->offset;
}

}  // namespace vantor

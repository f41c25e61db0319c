#include <algorithm>
#include <string>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "Platform/SystemLog.h"
#include "Shared/Collectors/StatCollector.h"

// A collector's list of the things that it measures, and the keys that the user selected.

namespace vantor::inline VANTOR_MODULE {
namespace {

std::vector<std::string> keysInText(std::string_view text) {
    std::vector<std::string> keys;
    for (;;) {
        const auto comma = text.find(',');
        keys.emplace_back(text.substr(0, comma));
        if (comma == std::string_view::npos)
            return keys;
        text.remove_prefix(comma + 1);
    }
}

}  // namespace

StatCollectorItem* StatCollector::itemWithKey(const PropertyValue& key) {
    return itemWithKey(key, Temporary::no);
}

StatCollectorItem* StatCollector::itemWithKey(const PropertyValue& key, Temporary temporary) {
    const std::string text = key.stringValue();
    for (const auto& item : items_)
        if ((temporary == Temporary::yes || !item->temporary()) && item->key == text)
            return item.get();
    if (temporary == Temporary::no)
        return nullptr;
    StatCollectorItem* const made = newItemWithKey(text);
    if (made != nullptr)
        made->setTemporary(true);
    return made;
}

StatCollectorItem* StatCollector::newItemWithKey(std::string_view key) {
    for (const auto& item : items_)
        if (item->key == key) {
            item->setTemporary(false);
            return item.get();
        }
    std::unique_ptr<StatCollectorItem> item = makeItem();
    if (!item)
        return nullptr;
    item->config = config_;
    item->key = key;
    item->setTemporary(false);
    return items_.emplace_back(std::move(item)).get();
}

void StatCollector::sort() {
    // Items that don't order themselves stay as they are: only one that stands behind its
    // successor moves.
    std::ranges::stable_sort(items_, [](const auto& left, const auto& right) {
        return right->sort(*left) > 0;
    });
}

bool StatCollector::removeOldItems() {
    return std::erase_if(items_, [](const auto& item) { return !item->exists; }) > 0;
}

void StatCollector::setItemsExist(bool exist) noexcept {
    for (const auto& item : items_)
        item->exists = exist;
}

SampleFields StatCollector::sampleItemsFromStorage(int type, int index, double time,
                                                   int minimum) const {
    const double cutoff = time - sampleIndex_[static_cast<std::size_t>(index)].interval;
    const double identifier = ring(type).sampleID(0);
    SampleFields sample;
    for (const auto& item : items_) {
        if (item->temporary() || item->nohistory)
            continue;
        if (auto mean = item->sampleFromStorage(type, cutoff, minimum, identifier))
            sample.items.push_back(std::move(*mean));
    }
    sample.set("empty", 0);
    return sample;
}

void StatCollector::setSelectionKeys(const std::vector<std::string>& keys) {
    if (keys.empty())
        selectionKey_.reset();
    else
        selectionKey_ = fmt::format("{}", fmt::join(keys, ","));
    ports_.systemLog.write(fmt::format("selection key '{}'", selectionKey_.value_or("(null)")));
}

void StatCollector::addSelectionKeyItem(std::string_view key) {
    std::vector<std::string> keys;
    if (selectionKey_ && !selectionKey_->empty())
        keys = keysInText(*selectionKey_);
    if (std::ranges::find(keys, key) == keys.end())
        keys.emplace_back(key);
    setSelectionKeys(keys);
}

void StatCollector::removeSelectionKeyItem(std::string_view key) {
    std::vector<std::string> keys;
    if (selectionKey_ && !selectionKey_->empty())
        keys = keysInText(*selectionKey_);
    std::erase(keys, key);
    setSelectionKeys(keys);
}

}  // namespace vantor::inline VANTOR_MODULE

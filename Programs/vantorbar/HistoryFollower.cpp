#include "Programs/vantorbar/HistoryFollower.h"

#include <algorithm>
#include <ostream>

#include "Programs/Common/PropertyJSON.h"

namespace vantor {
namespace {

constexpr int kProtocol = 0;

}  // namespace

HistoryFollower::HistoryFollower(const HistorySource& source, int index, double sinceID,
                                 std::ostream& out)
    : source_(source), type_(static_cast<StorageType>(index)), lastID_(sinceID), out_(out) {}

HistoryFollower::~HistoryFollower() = default;

/// One item for each thing of the table, its ring filled as the table is.
HistoryFollower::Items HistoryFollower::itemsOf(const HistoryTable& table) const {
    Items items;
    for (const HistoryRow& row : table.rows) {
        auto& item = items[row.uuid];
        if (!item) {
            item = std::make_unique<StatCollectorItem>(source_.columns.size());
            item->clearAllStorages();
            item->config.xmlSampleKeys = source_.exported;
        }
        add(row, table.columns, *item);
    }
    return items;
}

void HistoryFollower::add(const HistoryRow& row, const std::vector<std::string>& columns,
                          StatCollectorItem& item) const {
    SampleRing& ring = item.storageForType(static_cast<int>(type_));
    PushSamples(ring);
    ring.setSampleID(0, row.sampleID);
    ring.setTime(0, row.time);
    ring.setEmpty(0, row.empty ? 1 : 0);
    for (const SampleKey& key : source_.columns) {
        const auto place =
            static_cast<std::size_t>(std::ranges::find(columns, key.key) - columns.begin());
        const bool isThere = place < columns.size() && row.figures[place];
        ring.mutableValues(0)[static_cast<std::size_t>(key.position)] =
            isThere ? *row.figures[place] : 0;
    }
}

std::size_t HistoryFollower::print(const HistoryTable& table, std::size_t most) {
    if (table.rows.empty())
        return 0;
    const double newest = table.rows.back().sampleID;
    if (newest < newestSeen_)
        lastID_ = 0;
    newestSeen_ = newest;
    std::size_t printed = 0;
    for (const auto& [uuid, item] : itemsOf(table))
        for (PropertyValue::Dictionary& sample : item->samplesSinceID(lastID_, type_, kProtocol)) {
            if (printed == most)
                break;
            if (!uuid.empty())
                sample["uuid"] = uuid;
            out_ << jsonOfValue(sample).dump(-1, ' ', false,
                                             nlohmann::ordered_json::error_handler_t::replace)
                 << '\n';
            ++printed;
        }
    lastID_ = std::max(lastID_, newest);
    out_.flush();
    return printed;
}

}  // namespace vantor

#include "Foundation/NotificationCenter.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace vantor {

struct Observation::Observers {
    struct Entry {
        std::uint64_t id;
        std::string name;
        std::shared_ptr<NotificationCenter::Observer> call;
    };

    std::shared_ptr<NotificationCenter::Observer> find(std::uint64_t id) {
        const std::scoped_lock lock(mutex);
        const auto entry = std::ranges::find(entries, id, &Entry::id);
        return entry == entries.end() ? nullptr : entry->call;
    }

    std::vector<std::uint64_t> named(std::string_view name) {
        const std::scoped_lock lock(mutex);
        std::vector<std::uint64_t> ids;
        for (const Entry& entry : entries)
            if (entry.name == name)
                ids.push_back(entry.id);
        return ids;
    }

    std::mutex mutex;
    std::vector<Entry> entries;
    std::uint64_t lastID = 0;
};

std::string_view infoValue(const NotificationInfo& info, std::string_view key) noexcept {
    const auto entry = info.find(key);
    return entry == info.end() ? std::string_view{} : std::string_view{entry->second};
}

Observation::Observation(std::weak_ptr<Observers> observers, std::uint64_t id) noexcept
    : observers_(std::move(observers)), id_(id) {}

Observation::Observation(Observation&& other) noexcept
    : observers_(std::move(other.observers_)), id_(std::exchange(other.id_, 0)) {}

Observation& Observation::operator=(Observation&& other) noexcept {
    if (this != &other) {
        end();
        observers_ = std::move(other.observers_);
        id_ = std::exchange(other.id_, 0);
    }
    return *this;
}

void Observation::end() noexcept {
    const std::uint64_t id = std::exchange(id_, 0);
    const auto observers = std::exchange(observers_, {}).lock();
    if (!observers)
        return;
    std::shared_ptr<NotificationCenter::Observer> dropped;  // dies after the lock is released
    const std::scoped_lock lock(observers->mutex);
    const auto entry = std::ranges::find(observers->entries, id, &Observers::Entry::id);
    if (entry == observers->entries.end())
        return;
    dropped = std::move(entry->call);
    observers->entries.erase(entry);
}

NotificationCenter::NotificationCenter() : observers_(std::make_shared<Observation::Observers>()) {}
NotificationCenter::~NotificationCenter() = default;

Observation NotificationCenter::observe(std::string name, Observer observer) {
    const std::scoped_lock lock(observers_->mutex);
    const std::uint64_t id = ++observers_->lastID;
    observers_->entries.push_back(
        {id, std::move(name), std::make_shared<Observer>(std::move(observer))});
    return {observers_, id};
}

void NotificationCenter::post(std::string_view name, const NotificationInfo& info) {
    const auto observers = observers_;  // an observer may end this centre
    for (const std::uint64_t id : observers->named(name))
        if (const auto call = observers->find(id))
            (*call)({name, info});
}

}  // namespace vantor

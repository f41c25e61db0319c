#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace vantor {

/// The small text dictionary that a notification carries.
using NotificationInfo = std::map<std::string, std::string, std::less<>>;

/// The entry under `key`, or "" where there is none.
std::string_view infoValue(const NotificationInfo& info, std::string_view key) noexcept;

struct Notification {
    std::string_view name;
    const NotificationInfo& info;
};

class NotificationCenter;

/// Keeps an observer registered for as long as it lives. May outlive its centre.
class [[nodiscard]] Observation {
public:
    Observation() noexcept = default;
    ~Observation() { end(); }
    Observation(Observation&& other) noexcept;
    Observation& operator=(Observation&& other) noexcept;

    void end() noexcept;
    explicit operator bool() const noexcept { return id_ != 0; }

private:
    friend class NotificationCenter;
    struct Observers;
    Observation(std::weak_ptr<Observers> observers, std::uint64_t id) noexcept;
    std::weak_ptr<Observers> observers_;
    std::uint64_t id_ = 0;
};

/// Tells observers by name, synchronously, in the order in which they came.
/// One that is added while a notification is being told doesn't hear it; one that is removed
/// meanwhile doesn't either.
/// Thread: observers are called where `post` is called; adding and removing is safe anywhere.
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification&)>;

    NotificationCenter();
    virtual ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    Observation observe(std::string name, Observer observer);
    virtual void post(std::string_view name, const NotificationInfo& info = {});

private:
    std::shared_ptr<Observation::Observers> observers_;
};

}  // namespace vantor

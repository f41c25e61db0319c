#pragma once

#include <memory>

namespace vantor {

template <class Owner>
class WeakSource;

/// What a callback that may arrive late holds in place of a pointer: it looks before it calls.
/// Thread: copied and dropped anywhere; `get` only on the thread on which the owner dies.
template <class Owner>
class WeakHandle {
public:
    WeakHandle() noexcept = default;
    /// The owner, or null once it is gone.
    Owner* get() const noexcept { return cell_ ? *cell_ : nullptr; }

private:
    friend class WeakSource<Owner>;
    explicit WeakHandle(std::shared_ptr<Owner*> cell) noexcept : cell_(std::move(cell)) {}
    std::shared_ptr<Owner*> cell_;
};

/// A member of the object that hands out handles to itself. Declare it last, so that it is the
/// first to go and no handle sees a half-destroyed owner.
template <class Owner>
class WeakSource {
public:
    explicit WeakSource(Owner& owner) : cell_(std::make_shared<Owner*>(&owner)) {}
    ~WeakSource() { *cell_ = nullptr; }
    WeakSource(const WeakSource&) = delete;
    WeakSource& operator=(const WeakSource&) = delete;

    WeakHandle<Owner> handle() const noexcept { return WeakHandle<Owner>(cell_); }

private:
    std::shared_ptr<Owner*> cell_;
};

}  // namespace vantor

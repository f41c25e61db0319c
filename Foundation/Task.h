#pragma once

#include <concepts>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace vantor {

/// A closure without arguments or result, kept inside the object, so that arming a timer or
/// posting to a queue never touches the heap. Move-only.
/// Shape:  up to kCapacityBytes of captures; a larger closure doesn't compile: capture a
///         `std::unique_ptr` in its place.
/// Errors: calling an empty task does nothing. What the closure throws passes through.
class Task {
public:
    static constexpr std::size_t kCapacityBytes = 96;

    Task() noexcept = default;

    template <class Closure>
        requires(!std::same_as<std::remove_cvref_t<Closure>, Task> &&
                 std::invocable<std::remove_cvref_t<Closure>&>)
    Task(Closure&& closure) {
        using Stored = std::remove_cvref_t<Closure>;
        static_assert(sizeof(Stored) <= kCapacityBytes, "capture less, or a unique_ptr");
        static_assert(alignof(Stored) <= alignof(std::max_align_t));
        static_assert(std::is_nothrow_move_constructible_v<Stored>);
        ::new (static_cast<void*>(storage_)) Stored(std::forward<Closure>(closure));
        kind_ = &kindOf<Stored>;
    }

    Task(Task&& other) noexcept { take(other); }
    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            reset();
            take(other);
        }
        return *this;
    }
    ~Task() { reset(); }

    void operator()() {
        if (kind_ != nullptr)
            kind_->call(storage_);
    }
    explicit operator bool() const noexcept { return kind_ != nullptr; }

private:
    struct Kind {
        void (*call)(void*);
        void (*moveTo)(void* from, void* to) noexcept;
        void (*destroy)(void*) noexcept;
    };

    template <class Stored>
    static constexpr Kind kindOf{
        [](void* closure) { (*static_cast<Stored*>(closure))(); },
        [](void* from, void* to) noexcept {
            ::new (to) Stored(std::move(*static_cast<Stored*>(from)));
            static_cast<Stored*>(from)->~Stored();
        },
        [](void* closure) noexcept { static_cast<Stored*>(closure)->~Stored(); }};

    void take(Task& other) noexcept {
        if (other.kind_ == nullptr)
            return;
        other.kind_->moveTo(other.storage_, storage_);
        kind_ = std::exchange(other.kind_, nullptr);
    }
    void reset() noexcept {
        if (kind_ != nullptr)
            std::exchange(kind_, nullptr)->destroy(storage_);
    }

    alignas(std::max_align_t) std::byte storage_[kCapacityBytes];
    const Kind* kind_ = nullptr;
};

}  // namespace vantor

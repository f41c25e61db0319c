#pragma once

#include <utility>

#include <unistd.h>

namespace vantor {

/// Owns one file descriptor, or none (-1).
class [[nodiscard]] Descriptor {
public:
    Descriptor() noexcept = default;
    explicit Descriptor(int descriptor) noexcept : descriptor_(descriptor) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            reset();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }

    int get() const noexcept { return descriptor_; }
    explicit operator bool() const noexcept { return descriptor_ >= 0; }
    void reset() noexcept {
        if (descriptor_ >= 0)
            close(std::exchange(descriptor_, -1));  // gone, whatever the kernel answers
    }

private:
    int descriptor_ = -1;
};

}  // namespace vantor

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantor::test {

/// A mouse for a Wayland compositor that has none, for as long as this lives: a client that speaks
/// just so much of the protocol, the extension of virtual pointers included.
/// Errors: what fails leaves a pointer that isn't there.
class VirtualPointer {
public:
    explicit VirtualPointer(const std::string& socket);
    ~VirtualPointer();
    VirtualPointer(const VirtualPointer&) = delete;
    VirtualPointer& operator=(const VirtualPointer&) = delete;

    bool isThere() const noexcept { return isThere_; }
    /// To a place on a desktop of that size, in points.
    void move(std::uint32_t x, std::uint32_t y, std::uint32_t width, std::uint32_t height);
    /// The first button, down and up.
    void click();

private:
    void request(std::uint32_t object, std::uint16_t opcode, std::string_view arguments);
    void button(std::uint32_t state);
    /// Waits until the compositor has done all that it was asked.
    bool roundTrip(std::uint32_t callback);
    bool readEvent(std::uint32_t& object, std::uint16_t& opcode, std::string& arguments);
    bool bind();

    int socket_ = -1;
    std::uint32_t lastObject_ = 0, milliseconds_ = 0;
    bool isThere_ = false;
};

}  // namespace vantor::test

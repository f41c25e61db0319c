#include "Tests/Support/VirtualPointer.h"

#include <cstring>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vantor::test {
namespace {

// In the order in which they are made: the protocol allows no gaps.
constexpr std::uint32_t kDisplay = 1, kRegistry = 2, kGlobals = 3, kManager = 4, kSeat = 5;
constexpr std::uint32_t kPointer = 6;
constexpr std::uint32_t kLeftButton = 0x110;
constexpr const char* kManagerInterface = "zwlr_virtual_pointer_manager_v1";

std::string bytesOf(std::uint32_t number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

template <class... Numbers>
std::string bytesOf(std::uint32_t first, Numbers... others) {
    return bytesOf(first) + (bytesOf(static_cast<std::uint32_t>(others)) + ...);
}

/// Its length with the byte of its end, then the text up to a whole number of words.
std::string bytesOfText(std::string_view text) {
    std::string bytes = bytesOf(static_cast<std::uint32_t>(text.size() + 1)).append(text);
    bytes.append(4 - text.size() % 4, '\0');
    return bytes;
}

std::uint32_t numberAt(const std::string& bytes, std::size_t place) {
    std::uint32_t number = 0;
    if (place + 4 <= bytes.size())
        std::memcpy(&number, bytes.data() + place, 4);
    return number;
}

int connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, path.data(), path.size());
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

}  // namespace

VirtualPointer::VirtualPointer(const std::string& socket) : socket_(connectTo(socket)) {
    isThere_ = socket_ >= 0 && bind();
}

VirtualPointer::~VirtualPointer() {
    if (socket_ >= 0)
        close(socket_);
}

/// Finds the seat and the extension among the globals, and has a pointer made.
bool VirtualPointer::bind() {
    request(kDisplay, 1, bytesOf(kRegistry));
    request(kDisplay, 0, bytesOf(kGlobals));
    std::uint32_t object = 0, manager = 0, seat = 0;
    std::uint16_t opcode = 0;
    std::string arguments;
    while (readEvent(object, opcode, arguments) && object != kGlobals) {
        if (object != kRegistry || opcode != 0)
            continue;
        const std::uint32_t name = numberAt(arguments, 0);
        const char* const interface = arguments.c_str() + 8;
        if (std::strcmp(interface, kManagerInterface) == 0)
            manager = name;
        else if (std::strcmp(interface, "wl_seat") == 0)
            seat = name;
    }
    if (manager == 0 || seat == 0)
        return false;
    request(kRegistry, 0, bytesOf(manager) + bytesOfText(kManagerInterface) + bytesOf(1, kManager));
    request(kRegistry, 0, bytesOf(seat) + bytesOfText("wl_seat") + bytesOf(1, kSeat));
    request(kManager, 0, bytesOf(kSeat, kPointer));
    lastObject_ = kPointer;
    return roundTrip(++lastObject_);
}

void VirtualPointer::move(std::uint32_t x, std::uint32_t y, std::uint32_t width,
                          std::uint32_t height) {
    request(kPointer, 1, bytesOf(++milliseconds_, x, y, width, height));
    request(kPointer, 4, "");
    roundTrip(++lastObject_);
}

void VirtualPointer::click() {
    button(1);
    button(0);
}

void VirtualPointer::button(std::uint32_t state) {
    request(kPointer, 2, bytesOf(++milliseconds_, kLeftButton, state));
    request(kPointer, 4, "");
    roundTrip(++lastObject_);
}

bool VirtualPointer::roundTrip(std::uint32_t callback) {
    request(kDisplay, 0, bytesOf(callback));
    std::uint32_t object = 0;
    std::uint16_t opcode = 0;
    std::string arguments;
    while (readEvent(object, opcode, arguments))
        if (object == callback)
            return true;
    return false;
}

void VirtualPointer::request(std::uint32_t object, std::uint16_t opcode,
                             std::string_view arguments) {
    const auto size = static_cast<std::uint32_t>(8 + arguments.size());
    const std::string message = bytesOf(object, size << 16 | opcode).append(arguments);
    [[maybe_unused]] const auto sent = send(socket_, message.data(), message.size(), MSG_NOSIGNAL);
}

bool VirtualPointer::readEvent(std::uint32_t& object, std::uint16_t& opcode,
                               std::string& arguments) {
    std::string head(8, '\0');
    if (recv(socket_, head.data(), head.size(), MSG_WAITALL) != 8)
        return false;
    object = numberAt(head, 0);
    opcode = static_cast<std::uint16_t>(numberAt(head, 4) & 0xFFFF);
    arguments.assign((numberAt(head, 4) >> 16) - 8, '\0');
    return arguments.empty() || recv(socket_, arguments.data(), arguments.size(), MSG_WAITALL) ==
                                    static_cast<ssize_t>(arguments.size());
}

}  // namespace vantor::test

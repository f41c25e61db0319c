#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Linux/GPUFigures.h"

namespace vantor {

/// Asks NVIDIA's library on a thread of its own; the main queue takes the last answer and never
/// waits. A library that hangs is left hanging, also when the readings go.
/// Shape:  no thread before the first request, none while the library isn't there.
/// Errors: an answer older than kStaleAfter is none. A library that refused is tried again after
///         kRetryAfter; one that isn't there isn't.
/// Thread: main queue.
class NVMLReadings {
public:
    /// Whether the library keeps hold of the graphics processors between two readings.
    enum class Hold : std::uint8_t { kept, letGo };

    static constexpr const char* kLibrary = "libnvidia-ml.so.1";
    static constexpr std::chrono::seconds kStaleAfter{5}, kRetryAfter{60};
    static constexpr std::chrono::milliseconds kPatience{500};

    /// `addresses` are those on the PCI bus.
    explicit NVMLReadings(std::vector<std::string> addresses, std::string library = kLibrary);
    ~NVMLReadings();
    NVMLReadings(const NVMLReadings&) = delete;
    NVMLReadings& operator=(const NVMLReadings&) = delete;

    /// Asks for a reading of all; passed over while another one is under way.
    void request(Hold hold);
    /// Makes the library let go of everything before it is asked for anything else.
    void letGo();
    std::optional<GPUFigures> answer(const std::string& address) const;
    /// Nothing is asked any more. Waits for a reading under way, kPatience at most: a program that
    /// ends inside the library may not end well.
    void end();

private:
    struct State;
    void askToEnd();
    void ask(bool reads, Hold hold);
    void startThread() noexcept;

    std::shared_ptr<State> state_;
};

}  // namespace vantor

#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Platform/Linux/DRMClientText.h"
#include "Platform/Linux/GPUFigures.h"

namespace vantor {

class DeviceFiles;

/// Adds up what the programs that this user may see do with one graphics processor: all that i915
/// and xe tell of load. It doesn't touch the device. Where the processor uses the machine's
/// memory, all of that is its memory: so its driver counts, too.
/// Shape:  looks for new programs every kFindSeconds, and at each of them kLooks times: who draws
///         begins to soon after it starts.
class DRMClientsReader final : public GPUReader {
public:
    enum class Memory { own, shared };
    static constexpr double kFindSeconds = 10;
    static constexpr int kLooks = 3;

    /// `proc` is the folder of processes, `address` the device's on the PCI bus.
    DRMClientsReader(DeviceFiles& files, std::string proc, std::string address, Memory memory);
    GPUFigures read(double now) override;

private:
    struct Client {
        std::string file;
        bool isKnown = false;  // `last` is of an earlier reading
        bool isCounted = false;
        DRMClientFigures last;
    };

    void find();
    void lookAt(const std::string& process);
    bool readClient(Client& client, double seconds);
    bool isCounted(std::uint64_t client) const noexcept;

    DeviceFiles& files_;
    std::string proc_, address_;
    Memory memory_;
    std::optional<std::uint64_t> memoryTotal_;
    std::map<std::string, int, std::less<>> looks_;  // by process
    std::vector<Client> clients_;
    std::array<double, DRMClientFigures::kEngines.size()> loads_{};
    std::uint64_t systemBytes_ = 0, localBytes_ = 0;
    double found_, read_;
};

}  // namespace vantor

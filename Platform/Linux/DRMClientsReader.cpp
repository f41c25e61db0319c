#include "Platform/Linux/DRMClientsReader.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "Platform/Linux/DeviceFiles.h"

namespace vantor {
namespace {

constexpr double kLongAgo = std::numeric_limits<double>::lowest();
constexpr std::string_view kDevices = "/dev/dri/";

bool isProcess(std::string_view name) noexcept {
    return std::ranges::all_of(name, [](char digit) { return digit >= '0' && digit <= '9'; });
}

std::optional<std::uint64_t> memoryOfMachine(DeviceFiles& files, const std::string& proc) {
    std::array<char, 4096> buffer;
    const auto text = files.read(proc + "/meminfo", buffer);
    const auto value = text ? valueOfLine(*text, "MemTotal") : std::nullopt;
    const auto kilobytes = value ? wholeCount(value->substr(0, value->find(' '))) : std::nullopt;
    return kilobytes ? std::optional(*kilobytes * 1024) : std::nullopt;
}

}  // namespace

DRMClientsReader::DRMClientsReader(DeviceFiles& files, std::string proc, std::string address,
                                   Memory memory)
    : files_(files), proc_(std::move(proc)), address_(std::move(address)), memory_(memory),
      memoryTotal_(memory == Memory::shared ? memoryOfMachine(files, proc_) : std::nullopt),
      found_(kLongAgo), read_(kLongAgo) {}

void DRMClientsReader::find() {
    std::map<std::string, int, std::less<>> still;
    for (const std::string& process : files_.names(proc_)) {
        if (!isProcess(process))
            continue;
        const auto known = looks_.find(process);
        int& looks = still[process] = known == looks_.end() ? 0 : known->second;
        if (looks < kLooks) {
            ++looks;
            lookAt(process);
        }
    }
    looks_ = std::move(still);
}

void DRMClientsReader::lookAt(const std::string& process) {
    const std::string folder = proc_ + "/" + process;
    for (const std::string& number : files_.names(folder + "/fd")) {
        if (!files_.linkTarget(folder + "/fd/" + number).value_or("").starts_with(kDevices))
            continue;
        std::string file = folder + "/fdinfo/" + number;
        if (std::ranges::find(clients_, file, &Client::file) == clients_.end())
            clients_.push_back({.file = std::move(file), .last = {}});
    }
}

/// A client that several descriptors share counts once.
bool DRMClientsReader::isCounted(std::uint64_t client) const noexcept {
    return std::ranges::any_of(clients_, [client](const Client& other) {
        return other.isCounted && other.last.client == client;
    });
}

/// False when it is gone, or isn't one of this device.
bool DRMClientsReader::readClient(Client& client, double seconds) {
    std::array<char, 4096> buffer;
    const auto text = files_.read(client.file, buffer);
    if (!text)
        return false;
    DRMClientFigures figures = drmClientFiguresOf(*text);
    if (figures.address != address_)
        return false;
    figures.address = {};  // the text goes
    if (!isCounted(figures.client)) {
        client.isCounted = true;
        if (client.isKnown && client.last.client == figures.client)
            addEngineLoads(client.last, figures, seconds, loads_);
        systemBytes_ += figures.systemBytes;
        localBytes_ += figures.localBytes;
    }
    client.last = figures;
    client.isKnown = true;
    return true;
}

GPUFigures DRMClientsReader::read(double now) {
    if (now - found_ >= kFindSeconds) {
        find();
        found_ = now;
    }
    const double seconds = now - read_;
    const bool isFirst = read_ == kLongAgo;
    read_ = now;
    loads_.fill(0);
    systemBytes_ = localBytes_ = 0;
    for (Client& client : clients_)
        client.isCounted = false;
    std::erase_if(clients_, [&](Client& client) { return !readClient(client, seconds); });
    GPUFigures figures;
    figures.memoryTotal = memoryTotal_;
    figures.memoryUsed = memory_ == Memory::shared ? systemBytes_ + localBytes_ : localBytes_;
    if (!isFirst)
        figures.load = std::min(*std::ranges::max_element(loads_), 100.0);
    return figures;
}

}  // namespace vantor

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "Platform/Simulated/SimulatedClock.h"
#include "Platform/Simulated/SimulatedFacilities.h"
#include "Platform/Simulated/SimulatedProcessSource.h"
#include "Programs/vantorbar-daemon/ProcessService.h"

namespace vantor {
namespace {

constexpr int kOperations = static_cast<int>(DaemonOperation::setFanSet) + 1;
constexpr int kProcesses = 30;

void require(bool holds) noexcept {
    if (!holds)
        std::abort();
}

/// A daemon of which any clients ask anything at any time, while processes come and go. It counts
/// by itself who should be served.
class Play final : public ProcessService::Outlet {
public:
    void step(std::uint8_t what, std::uint8_t who, std::uint8_t how) {
        const std::string client(1, static_cast<char>('a' + who % 16));
        switch (what % 6) {
        case 0:
            return enter(client, who);
        case 1:
            service_.removeClient(client);
            requests_.erase(client);
            return;
        case 2:
            return ask(client, {static_cast<DaemonOperation>(how % kOperations), how / 64});
        case 3:
            return live(who % kProcesses + 1, how);
        case 4:
            return source_.setFailing(how % 4 == 0);
        default:
            pass(how * 0.05);
        }
    }
    void sendProcesses(const std::string& client,
                       const std::vector<ProcessRecord>& records) override {
        require(requests_.contains(client) && requests_[client] > 0);
        require(!records.empty() && records.size() <= ProcessService::kRecords);
        for (std::size_t place = 0; place < records.size(); ++place) {
            require(records[place].percent >= 0 && records[place].percent < 1e9);
            require(place == 0 || records[place].percent <= records[place - 1].percent);
        }
    }

private:
    void enter(const std::string& client, std::uint32_t user) {
        if (service_.addClient(client, user % 2))
            requests_.try_emplace(client, 0);
        require(requests_.size() <= 2 * RequestBook::kClientsOfUser);
        require(service_.hasClients() == !requests_.empty());
    }
    void ask(const std::string& client, const DaemonRequest& request) {
        const bool isOurs = requests_.contains(client) && request.key == kProcessesKey;
        if (isOurs && request.operation == DaemonOperation::startRequestWithKey)
            ++requests_[client];
        if (isOurs && request.operation == DaemonOperation::stopRequestWithKey &&
            requests_[client] > 0)
            --requests_[client];
        service_.handle(client, request);
    }
    void live(int id, std::uint8_t how) {
        if (how % 3 == 0)
            source_.end(id);
        else if (how % 3 == 1)
            source_.start(id, how % 2 == 0 ? "sh" : "a", how % kProcesses + 1);
        else if (lives(id))
            source_.spend(id, how);
    }
    bool lives(int id) {
        std::vector<ProcessReading> readings;
        source_.setFailing(false);
        require(source_.read(readings));
        for (const ProcessReading& process : readings)
            if (process.id == id)
                return true;
        return false;
    }
    void pass(double seconds) {
        const int readings = source_.readings();
        bool isAsked = false;
        for (const auto& [client, count] : requests_)
            isAsked = isAsked || count > 0;
        queue_.runUntil(queue_.now() + seconds);
        require(isAsked || source_.readings() == readings);
        require(source_.readings() - readings <= seconds / ProcessService::kPaceSeconds + 2);
    }

    simulated::SimulatedMainQueue queue_{1000, 0};
    simulated::SimulatedClock clock_{queue_};
    simulated::SimulatedProcessSource source_{queue_};
    simulated::SimulatedSystemLog log_{nullptr};
    std::map<std::string, std::uint64_t> requests_;  // by client
    ProcessService service_{{queue_, clock_, source_, log_}, *this, [] {}};
};

}  // namespace
}  // namespace vantor

/// Three bytes a step: what happens, to whom, and how.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vantor::Play play;
    for (std::size_t at = 0; at + 2 < size && at < 3000; at += 3)
        play.step(data[at], data[at + 1], data[at + 2]);
    return 0;
}

#pragma once

#include <array>
#include <bitset>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Platform/MainQueue.h"
#include "Platform/SystemLog.h"
#include "Programs/vantorbar-daemon/DaemonRequest.h"
#include "Programs/vantorbar-daemon/ProcessMeter.h"
#include "Programs/vantorbar-daemon/RequestBook.h"

namespace vantor {

/// Sends the busiest processes to those who ask, and reads nothing while nobody does.
/// The first list comes at once where a reading of the last seconds is there to compare with, and
/// else after kFirstSeconds: of a process that was read once nothing is known. From then on one
/// comes every kPaceSeconds.
/// Thread: main queue. Everything it was made from outlives it.
class ProcessService {
public:
    static constexpr double kPaceSeconds = 2;
    static constexpr double kFirstSeconds = 0.2;
    /// What is older says too little of now.
    static constexpr double kOldestSeconds = 2 * kPaceSeconds;
    static constexpr double kAloneSeconds = 60;
    static constexpr std::size_t kRecords = 20;

    /// Where lists leave.
    class Outlet {
    public:
        virtual ~Outlet() = default;
        virtual void sendProcesses(const std::string& client,
                                   const std::vector<ProcessRecord>& records) = 0;
    };
    struct Environs {
        MainQueue& queue;
        const Clock& clock;
        ProcessSource& source;
        SystemLog& log;
    };

    /// `alone` is told when there has been no client for kAloneSeconds, and again so much later.
    ProcessService(const Environs& environs, Outlet& outlet, std::function<void()> alone);
    ~ProcessService();
    ProcessService(const ProcessService&) = delete;
    ProcessService& operator=(const ProcessService&) = delete;

    /// False where that user has as many clients as one may have.
    [[nodiscard]] bool addClient(const std::string& client, std::uint32_t user);
    void removeClient(std::string_view client);
    bool hasClients() const noexcept { return !book_.isEmpty(); }
    /// The version is not asked here.
    void handle(const std::string& client, const DaemonRequest& request);

private:
    void start(const std::string& client, const DaemonRequest& request);
    void stop(std::string_view client, const DaemonRequest& request);
    void refuse(const DaemonRequest& request);
    void begin();
    void readAndSend();
    void sendTo(const std::string& client);
    const std::vector<ProcessRecord>& list(Hierarchy hierarchy);
    void readAfter(double delaySeconds);
    void restIfNobodyAsks();
    void waitForClients();
    void leaveAlone();

    Environs environs_;
    Outlet& outlet_;
    std::function<void()> alone_;
    RequestBook book_;
    ProcessMeter meter_;
    std::array<std::optional<std::vector<ProcessRecord>>, 2> lists_;  // of the last reading
    std::bitset<16> refused_;  // operations, so that the log hears of each once
    MainQueue::CallID reading_ = MainQueue::CallID::none;
    MainQueue::CallID ending_ = MainQueue::CallID::none;
};

}  // namespace vantor

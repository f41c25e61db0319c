#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "Platform/Clock.h"
#include "Platform/Simulated/Journal.h"
#include "Platform/Simulated/SimulatedMainQueue.h"

namespace vantor {

/// Writes one JSON object a line for each thing that the outside world could notice.
/// Errors: the first failed write is remembered; `finish` throws it as std::system_error.
class EventJournal final : public simulated::Journal {
public:
    /// Opens `file` for writing; throws std::system_error.
    explicit EventJournal(const std::filesystem::path& file);
    /// Before the first event: whose times the lines bear.
    void attach(const Clock& clock, const simulated::SimulatedMainQueue& queue, double start);
    /// Everything is in the file.
    void finish();

    void length(double length) override;
    void repaint() override;
    void notification(std::string_view center, std::string_view name,
                      const NotificationInfo& info) override;
    void systemLog(std::string_view text) override;
    void launch(std::string_view path) override;
    void daemon(std::string_view call, const PropertyValue::Array& arguments) override;
    void measures(std::string_view collector, std::optional<int> sequence) override;
    void updated(std::string_view collector, int mode) override;
    void committed(std::string_view file, std::size_t statements, std::size_t failed) override;
    void extraLoaded(std::string_view extra) override;
    void extraUnloaded(std::string_view extra) override;
    void logged(std::string_view text) override;

private:
    struct Close {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    void begin(std::string_view kind);
    void text(std::string_view key, std::string_view value);
    void number(std::string_view key, double value);
    void end();
    void flush();

    std::unique_ptr<std::FILE, Close> file_;
    int error_ = 0;
    const Clock* clock_ = nullptr;
    const simulated::SimulatedMainQueue* queue_ = nullptr;
    double start_ = 0;
    double prefixTime_ = -1, prefixAt_ = -1;  // what `prefix_` was written for
    std::string prefix_, buffer_;
};

}  // namespace vantor

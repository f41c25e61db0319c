#include "Shared/Collectors/UptimeStatCollector.h"

#include <span>

#include "Platform/BootTime.h"
#include "Shared/Database/HistoryDatabaseController.h"
#include "Shared/External/Logging/LGLog.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

void addStart(HistoryDatabaseItem& file, double boottime, std::string_view line) {
    const PropertyValue start(boottime);
    const std::span<const PropertyValue> arguments(&start, 1);
    file.queryDatabase([&](SQLDatabase& database) {
        const auto rows =
            database.executeQuery("SELECT * FROM boottimes WHERE time = ?", arguments);
        if (rows && rows->next())
            return;
        LGLogInfo(line);
        database.executeUpdate("insert into boottimes (time) values (?)", arguments);
    });
}

}  // namespace

UptimeStatCollector::UptimeStatCollector(const Ports& ports)
    : StatCollector(ports, "uptime", "<UptimeStatCollector>", sampleCount(), Rings::none) {}

UptimeStatCollector& UptimeStatCollector::sharedUptimeCollector() {
    return ProcessContext::current().uptimeCollector();
}

void UptimeStatCollector::cleanupShared() noexcept {
    ProcessContext& context = ProcessContext::current();
    if (UptimeStatCollector* const collector = context.existingUptimeCollector())
        collector->cleanup();
    context.dropUptimeCollector();
}

bool UptimeStatCollector::prepareDatabase(bool result) {
    for (HistoryDatabaseItem* const file : historyFiles())
        if (file != nullptr)
            file->queryDatabase([&](SQLDatabase& database) {
                if (database.tableExists("boottimes"))
                    return;
                // One that can't be made shows in that nothing is written to it.
                database.executeUpdate("create table boottimes (time double NOT NULL)");
                result = true;
            });
    return result;
}

void UptimeStatCollector::loadUptime() {
    boottime_ = static_cast<double>(ports().bootTime.bootSeconds().value_or(0));
    addToDatabase();
}

void UptimeStatCollector::addToDatabase() {
    const auto [file, longFile] = historyFiles();
    if (file != nullptr)
        addStart(*file, boottime(), "adding new boot");
    if (longFile != nullptr)
        addStart(*longFile, boottime(), "adding new boot long");
}

}  // namespace vantor::inline VANTOR_MODULE

#include "Programs/vantorbar/EventJournal.h"

#include <fstream>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

class EventJournalTest : public testing::Test {
protected:
    EventJournalTest() { journal.attach(machine.clock, machine.mainQueue, machine.kStart); }
    std::string written() {
        journal.finish();
        std::ifstream stream(folder / "events.jsonl");
        std::string line;
        std::getline(stream, line, '\0');
        return line;
    }

    test::TemporaryFolder folder;
    simulated::SimulatedMachine machine;
    EventJournal journal{folder / "events.jsonl"};
};

TEST_F(EventJournalTest, ACallToTheDaemonIsALineWithItsArguments) {
    journal.daemon("smartTemps", {});
    journal.daemon("startRequestWithKey:", {std::int64_t{9007199254740993}});
    journal.daemon("setFanSet:", {PropertyValue(PropertyValue::Array{"fan \"1\"", 1.5})});
    const auto line = [](std::string_view call, std::string_view arguments) {
        return fmt::format(R"({{"time":1425900000,"at":0,"kind":"daemon","call":"{}",)"
                           R"("arguments":[{}]}})"
                           "\n",
                           call, arguments);
    };
    EXPECT_EQ(written(), line("smartTemps", "") + line("startRequestWithKey:", "9007199254740993") +
                             line("setFanSet:", R"(["fan \"1\"",1.5])"));
}

TEST_F(EventJournalTest, ACommitIsALine) {
    journal.committed("cpu.db", 25, 1);
    EXPECT_EQ(written(), R"({"time":1425900000,"at":0,"kind":"commit","file":"cpu.db",)"
                         R"("statements":25,"failed":1})"
                         "\n");
}

}  // namespace
}  // namespace vantor

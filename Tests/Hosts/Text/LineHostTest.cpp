#include "Hosts/Text/LineHost.h"

#include <array>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor {
namespace {

using testing::StartsWith;

/// A machine with its collectors, and a pipe that its lines go into.
class LineHostTest : public testing::Test {
protected:
    LineHostTest() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            throw std::runtime_error("no pipe");
        readEnd_ = ends[0];
        writeEnd_ = ends[1];
        machine_.loadAverages.setLoads({{3072, 2048, 1024}, 2048});
        machine_.processorCounters.setProcessCounts({245, 1034});
        LoadStatCollector::sharedLoadCollector();
        CPUStatCollector::sharedCPUCollector();
    }
    ~LineHostTest() override {
        close(readEnd_);
        close(writeEnd_);
    }

    void measure() {
        machine_.processorCounters.spend(0, {.user = 50, .idle = 50});
        machine_.processorCounters.spend(1, {.system = 25, .idle = 75});
        LoadStatCollector::sharedLoadCollector().updateStats();
        CPUStatCollector::sharedCPUCollector().updateStats();
    }
    void show(LineHost& host) {
        host.setNeedsDisplay();
        host.displayIfNeeded();
    }
    int writeEnd() const { return writeEnd_; }
    std::string written() const {
        std::array<char, 4096> bytes;
        const auto size = read(readEnd_, bytes.data(), bytes.size());
        return {bytes.data(), static_cast<std::size_t>(size < 0 ? 0 : size)};
    }

private:
    simulated::SimulatedMachine machine_;
    ProcessContext context_{machine_.ports()};
    int readEnd_ = -1, writeEnd_ = -1;
};

TEST_F(LineHostTest, ASampleIsALineOfItsFigures) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::json);
    measure();
    show(host);
    const auto json = nlohmann::json::parse(written());
    EXPECT_EQ(json["time"], simulated::SimulatedMachine::kStart);
    EXPECT_EQ(json["user"], 25);
    EXPECT_EQ(json["system"], 12.5);
    EXPECT_EQ(json["cores"], nlohmann::json::parse("[[50,0,0],[0,25,0]]"));
    EXPECT_EQ(json["load"], nlohmann::json::parse("[1.5,1,0.5]"));
    EXPECT_EQ(json["tasks"], 245);
    EXPECT_EQ(json["threads"], 1034);
}

TEST_F(LineHostTest, ASampleIsWrittenOnce) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::json);
    measure();
    show(host);
    written();
    show(host);
    EXPECT_EQ(written(), "");
    EXPECT_EQ(host.samplesShown(), 1u);
    measure();
    show(host);
    EXPECT_EQ(host.samplesShown(), 2u);
}

TEST_F(LineHostTest, BeforeTheFirstSampleThereIsNoLine) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::json);
    show(host);
    EXPECT_EQ(written(), "");
    EXPECT_EQ(host.samplesShown(), 0u);
}

TEST_F(LineHostTest, NothingIsShownUnlessTheItemAsks) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::json);
    measure();
    host.displayIfNeeded();
    EXPECT_EQ(written(), "");
}

TEST_F(LineHostTest, AnItemThatUnloadedIsNotShown) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::json);
    measure();
    host.setNeedsDisplay();
    host.willUnload();
    host.displayIfNeeded();
    EXPECT_EQ(written(), "");
}

TEST_F(LineHostTest, PlainLinesAreForReading) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::plain);
    measure();
    show(host);
    EXPECT_THAT(written(), StartsWith("cpu  37.5 %  user  25.0  system  12.5  nice   0.0"));
}

TEST_F(LineHostTest, ThePlaceIsAsWideAsTheItemLikes) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::json);
    host.setLength(31);
    host.setViewFrameSize({31, 22});
    EXPECT_EQ(host.length(), 31);
    EXPECT_EQ(host.viewFrame(), (Rect{0, 0, 31, 22}));
    EXPECT_FALSE(host.isMenuDown());
}

TEST_F(LineHostTest, LinesAfterTheFirstDoNotAllocate) {
    OutputStream output(writeEnd());
    LineHost host(output, LineHost::Format::json);
    for (int warmUp = 0; warmUp < 3; ++warmUp) {
        measure();
        show(host);
    }
    measure();
    const test::AllocationCounter allocations;
    show(host);
    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace
}  // namespace vantor

#include "Platform/Linux/NVMLReadings.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Platform/Linux/Descriptor.h"
#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/FakeNVML.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

using namespace std::chrono_literals;
using namespace nvml_functions;
using Hold = NVMLReadings::Hold;

constexpr const char* kAddress = "0000:01:00.0";

class NVMLReadingsTest : public testing::Test {
protected:
    std::string library(std::initializer_list<std::string_view> functions) {
        return nvml.library(functions);
    }
    std::string calls() const { return nvml.calls(); }

    /// Asks until `done`, for ten seconds at most.
    static bool askUntil(NVMLReadings& readings, Hold hold, const std::function<bool()>& done) {
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (!done() && std::chrono::steady_clock::now() < end) {
            readings.request(hold);
            std::this_thread::sleep_for(2ms);
        }
        return done();
    }

    TemporaryFolder folder;
    FakeNVML nvml;
};

TEST_F(NVMLReadingsTest, AnswerComesLater) {
    NVMLReadings readings({kAddress}, library({kInit, kShutdown, kHandle, kMemory, kRates}));
    EXPECT_FALSE(readings.answer(kAddress));
    ASSERT_TRUE(
        askUntil(readings, Hold::kept, [&] { return readings.answer(kAddress).has_value(); }));
    const GPUFigures figures = *readings.answer(kAddress);
    EXPECT_EQ(figures.memoryTotal, 1000u);
    EXPECT_EQ(figures.memoryUsed, 400u);
    EXPECT_EQ(figures.load, 37.0);
}

TEST_F(NVMLReadingsTest, NothingIsOpenedBeforeTheFirstRequest) {
    const std::string file = library({kInit, kShutdown, kHandle, kMemory, kRates});
    { NVMLReadings readings({kAddress}, file); }
    EXPECT_EQ(calls(), "");
}

TEST_F(NVMLReadingsTest, LibraryThatMayNotHoldOnBeginsAndEndsEachReading) {
    {
        NVMLReadings readings({kAddress}, library({kInit, kShutdown, kHandle, kMemory, kRates}));
        ASSERT_TRUE(askUntil(readings, Hold::letGo, [&] { return calls().size() >= 6; }));
    }
    EXPECT_EQ(calls().substr(0, 6), "irsirs");
}

TEST_F(NVMLReadingsTest, LibraryThatHoldsOnBeginsOnceAndLetsGoWhenAsked) {
    {
        NVMLReadings readings({kAddress}, library({kInit, kShutdown, kHandle, kMemory, kRates}));
        ASSERT_TRUE(askUntil(readings, Hold::kept, [&] { return calls().size() >= 3; }));
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (!calls().ends_with("s") && std::chrono::steady_clock::now() < end) {
            readings.letGo();
            std::this_thread::sleep_for(2ms);
        }
    }
    const std::string all = calls();
    EXPECT_EQ(all.substr(0, 3), "irr");
    EXPECT_EQ(all.find('s'), all.size() - 1);
    EXPECT_EQ(all.find('i', 1), all.npos);
}

TEST_F(NVMLReadingsTest, LibraryThatIsMissingOrIsNoneGivesNoAnswers) {
    writeText(folder / "empty.so", "");
    for (const std::string& file :
         {std::string("/nonexistent/libnvidia-ml.so.1"), (folder / "empty.so").string()}) {
        NVMLReadings readings({kAddress}, file);
        for (int times = 0; times < 5; ++times) {
            readings.request(Hold::kept);
            std::this_thread::sleep_for(1ms);
        }
        EXPECT_FALSE(readings.answer(kAddress));
    }
}

TEST_F(NVMLReadingsTest, LibraryOfAnotherVersionIsRefused) {
    NVMLReadings readings({kAddress}, library({kInit, kShutdown}));
    for (int times = 0; times < 20; ++times) {
        readings.request(Hold::kept);
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_FALSE(readings.answer(kAddress));
    EXPECT_EQ(calls(), "");
}

TEST_F(NVMLReadingsTest, OlderNamesServe) {
    NVMLReadings readings({kAddress},
                          library({"API int nvmlInit() { return 0; }\n"
                                   "API int nvmlDeviceGetHandleByPciBusId(const char*, void**) "
                                   "{ return 0; }\n",
                                   kShutdown, kMemory, kRates}));
    EXPECT_TRUE(
        askUntil(readings, Hold::kept, [&] { return readings.answer(kAddress).has_value(); }));
}

TEST_F(NVMLReadingsTest, LibraryThatRefusesIsNotAskedAgainAndAgain) {
    const std::string file = library(
        {"API int nvmlInit_v2() { note('i'); return 9; }\n", kShutdown, kHandle, kMemory, kRates});
    NVMLReadings readings({kAddress}, file);
    ASSERT_TRUE(askUntil(readings, Hold::kept, [&] { return calls() == "i"; }));
    for (int times = 0; times < 20; ++times) {
        readings.request(Hold::kept);
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(calls(), "i");
    EXPECT_FALSE(readings.answer(kAddress));
}

TEST_F(NVMLReadingsTest, ErrorsAndNonsenseAreNoFigures) {
    NVMLReadings readings(
        {kAddress, "0000:02:00.0"},
        library({kInit, kShutdown, kHandle,
                 "API int nvmlDeviceGetMemoryInfo(void*, Memory* m) { *m = {5, 0, 9}; return 0; }\n"
                 "API int nvmlDeviceGetUtilizationRates(void*, Utilization* r) { note('r'); "
                 "*r = {101, 0}; return 0; }\n"}));
    ASSERT_TRUE(askUntil(readings, Hold::kept, [&] { return calls().size() >= 4; }));
    EXPECT_FALSE(readings.answer(kAddress));
    EXPECT_FALSE(readings.answer("0000:02:00.0"));
    EXPECT_FALSE(readings.answer("unheard of"));
}

TEST_F(NVMLReadingsTest, EndLetsAReadingUnderWayFinish) {
    NVMLReadings readings({kAddress}, library({kInit, kShutdown, kHandle, kMemory, kRates}));
    ASSERT_TRUE(askUntil(readings, Hold::kept, [&] { return calls().size() >= 2; }));
    readings.end();
    EXPECT_TRUE(calls().ends_with('s')) << "the library was let go of before";
}

TEST_F(NVMLReadingsTest, HangingLibraryNeverBlocks) {
    const std::string gate = (folder / "gate").string();
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    const std::string rates =
        fmt::format("API int nvmlDeviceGetUtilizationRates(void*, Utilization*) {{ note('r'); "
                    "close(open(\"{}\", O_RDONLY)); return 1; }}\n",
                    gate);
    const std::string file = library({kInit, kShutdown, kHandle, kMemory, rates});
    {
        NVMLReadings readings({kAddress}, file);
        ASSERT_TRUE(askUntil(readings, Hold::kept, [&] { return calls() == "ir"; }));
        for (int times = 0; times < 1000; ++times) {
            readings.request(Hold::kept);
            EXPECT_FALSE(readings.answer(kAddress));
        }
    }
    EXPECT_EQ(calls(), "ir") << "the readings went while the library hung";
    Descriptor(open(gate.c_str(), O_WRONLY)).reset();  // lets it go on
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (calls() != "irs" && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(2ms);
    EXPECT_EQ(calls(), "irs");
}

}  // namespace
}  // namespace vantor::test

#include "Hosts/Text/SampleLine.h"

#include <limits>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vantor {
namespace {

TextFigures figures() {
    TextFigures figures;
    figures.time = 1425900000.125;
    figures.mean = ProcessorShares{12.5, 0.1, 0};
    figures.cores = {{25, 0, 0}, {0, 0.2, 0}};
    figures.loads = {0.5, 1, 100.25};
    figures.tasks = 245;
    figures.threads = 1034;
    return figures;
}

TEST(SampleLineTest, ASampleIsOneLine) {
    std::string line;
    writeSampleLine(line, figures());
    EXPECT_EQ(line, "{\"time\":1425900000.125,\"user\":12.5,\"system\":0.1,\"nice\":0,"
                    "\"cores\":[[25,0,0],[0,0.2,0]],\"load\":[0.5,1,100.25],"
                    "\"tasks\":245,\"threads\":1034}\n");
}

TEST(SampleLineTest, NumbersReadBackTheSame) {
    TextFigures exact = figures();
    exact.mean->user = 1.0 / 3;
    exact.mean->system = std::numeric_limits<double>::denorm_min();
    std::string line;
    writeSampleLine(line, exact);
    const auto json = nlohmann::json::parse(line);
    EXPECT_EQ(json["user"].get<double>(), exact.mean->user);
    EXPECT_EQ(json["system"].get<double>(), exact.mean->system);
    EXPECT_EQ(json["time"].get<double>(), exact.time);
}

TEST(SampleLineTest, WhatIsAbsentOrNoNumberIsNull) {
    TextFigures empty;
    empty.cores = {
        {std::numeric_limits<double>::quiet_NaN(), 0, std::numeric_limits<double>::infinity()}};
    std::string line;
    writeSampleLine(line, empty);
    EXPECT_EQ(line, "{\"time\":0,\"user\":null,\"system\":null,\"nice\":null,"
                    "\"cores\":[[null,0,null]],\"load\":[null,null,null],"
                    "\"tasks\":0,\"threads\":0}\n");
}

TEST(SampleLineTest, ASampleWithoutCoresIsStillJSON) {
    TextFigures bare = figures();
    bare.cores.clear();
    std::string line;
    writeSampleLine(line, bare);
    EXPECT_TRUE(nlohmann::json::parse(line)["cores"].empty());
}

TEST(SampleLineTest, TheNextLineReplacesTheOneBefore) {
    std::string once, twice;
    writeSampleLine(once, figures());
    writeSampleLine(twice, figures());
    writeSampleLine(twice, figures());
    EXPECT_EQ(twice, once);
}

}  // namespace
}  // namespace vantor

#include "Programs/Common/HistoryTool.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Programs/Common/HistoryGaps.h"
#include "Programs/vantorbar/SimulateCommand.h"
#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kCreate = "create table {} (sample double PRIMARY KEY NOT NULL, time double "
                                "NOT NULL, empty integer NOT NULL, user double NOT NULL, system "
                                "double NOT NULL, nice double NOT NULL)";

class HistoryToolTest : public testing::Test {
protected:
    std::filesystem::path path(const std::string& name) const { return folder / name; }
    void run(const std::string& sql, const std::string& file = "cpu.db") {
        test::HistoryFile(path(file)).run(sql);
    }
    /// Samples 2, 3 (a gap) and 4 of the hour, and one of the day.
    void makeCPUFile() {
        run(fmt::format(kCreate, "hour_cpuhistory"));
        run(fmt::format(kCreate, "day_cpuhistory"));
        run("insert into hour_cpuhistory values (2, 1425900012, 0, 12.5, 3.25, 0), "
            "(3, 1425900018, 1, 0, 0, 0), (4, 1425900024, 0, 50, 1, 2)");
        run("insert into day_cpuhistory values (2, 1425900144, 0, 20, 1, 0)");
    }
    void makeGraphicsFile() {
        run("create table hour_gpuidhistory (sample double PRIMARY KEY NOT NULL, time double NOT "
            "NULL, empty integer NOT NULL);"
            "create table hour_gpuhistory (sample double NOT NULL, time double NOT NULL, uuid "
            "varchar(100) NOT NULL, processor double NOT NULL, memory double NOT NULL);"
            "insert into hour_gpuidhistory values (2, 12, 0), (3, 18, 1);"
            "insert into hour_gpuhistory values (2, 12, 'one, left', 5, 6), (2, 12, 'two', 7, 8)",
            "gpu.db");
    }
    void spoil(const std::string& name) const {
        std::ofstream(path(name), std::ios::binary) << std::string(5000, 'x');
    }
    int exports(const std::string& source, HistoryExport wanted = {}) {
        wanted.source = source;
        return tool.exportSamples(wanted);
    }

    test::TemporaryFolder folder;
    std::ostringstream out, err;
    HistoryTool tool{folder.path(), out, err};
};

TEST_F(HistoryToolTest, ListShowsEveryTableWithItsTimesRowsAndGaps) {
    makeCPUFile();
    EXPECT_EQ(tool.list(HistoryListFormat::table), 0);
    EXPECT_THAT(out.str(), HasSubstr("cpu.db           hour_cpuhistory      2015-03-09T11:20:12Z "
                                     "2015-03-09T11:20:24Z     3     1\n"));
    EXPECT_THAT(out.str(), HasSubstr("day_cpuhistory"));
}

TEST_F(HistoryToolTest, ListForScriptsIsAnArray) {
    makeCPUFile();
    run(fmt::format(kCreate, "week_cpuhistory"));
    EXPECT_EQ(tool.list(HistoryListFormat::json), 0);
    const json list = json::parse(out.str());
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0], (json{{"file", "cpu.db"},
                             {"table", "hour_cpuhistory"},
                             {"first", 1425900012.0},
                             {"last", 1425900024.0},
                             {"rows", 3},
                             {"gaps", 1}}));
    EXPECT_EQ(list[2]["first"], nullptr);
}

TEST_F(HistoryToolTest, ListSaysWhatItCantReadAndShowsTheRest) {
    makeGraphicsFile();
    spoil("cpu.db");
    EXPECT_EQ(tool.list(HistoryListFormat::table), 1);
    EXPECT_EQ(err.str(),
              fmt::format("vantorbar: {}: file is not a database\n", path("cpu.db").string()));
    EXPECT_THAT(out.str(), HasSubstr("hour_gpuidhistory"));
}

TEST_F(HistoryToolTest, FolderWithoutHistoryIsToldOf) {
    const HistoryTool nothing(folder / "nowhere", out, err);
    EXPECT_EQ(nothing.list(HistoryListFormat::table), 1);
    EXPECT_EQ(nothing.check(), 1);
    EXPECT_THAT(err.str(), HasSubstr("there is no history\n"));
    EXPECT_EQ(out.str(), "");
}

TEST_F(HistoryToolTest, ExportShowsFiguresAndGapsWithoutAny) {
    makeCPUFile();
    EXPECT_EQ(exports("cpu"), 0);
    EXPECT_EQ(out.str(), "time,sample,empty,user,system,nice\n"
                         "1425900012,2,0,12.5,3.25,0\n"
                         "1425900018,3,1,,,\n"
                         "1425900024,4,0,50,1,2\n");
}

TEST_F(HistoryToolTest, ExportedJSONReadsBackAsTheSameNumbers) {
    makeCPUFile();
    run("update hour_cpuhistory set user = 0.1 + 0.2 where sample = 4");
    EXPECT_EQ(exports("cpu", {.format = HistoryExportFormat::json}), 0);
    const json samples = json::parse(out.str());
    ASSERT_EQ(samples.size(), 3U);
    EXPECT_EQ(samples[1], json::parse(R"({"time": 1425900018.0, "sample": 3.0, "empty": true,
                                          "user": null, "system": null, "nice": null})"));
    EXPECT_EQ(samples[2]["user"], 0.1 + 0.2);
}

TEST_F(HistoryToolTest, ExportBeginsAtATime) {
    makeCPUFile();
    EXPECT_EQ(exports("cpu", {.since = 1425900024}), 0);
    EXPECT_EQ(out.str(), "time,sample,empty,user,system,nice\n1425900024,4,0,50,1,2\n");
}

TEST_F(HistoryToolTest, ExportTakesTheScaleAndTheFileThatItIsToldTo) {
    makeCPUFile();
    std::filesystem::rename(path("cpu.db"), path("combined_cpu.db"));
    EXPECT_EQ(exports("cpu", {.scale = "day", .combined = true}), 0);
    EXPECT_THAT(out.str(), HasSubstr("\n1425900144,2,0,20,1,0\n"));
}

TEST_F(HistoryToolTest, ThingsOfOneSampleHaveALineEach) {
    makeGraphicsFile();
    EXPECT_EQ(exports("gpu"), 0);
    EXPECT_EQ(out.str(), "time,sample,empty,uuid,processor,memory\n"
                         "12,2,0,\"one, left\",5,6\n"
                         "12,2,0,two,7,8\n"
                         "18,3,1,,,\n");
}

TEST_F(HistoryToolTest, FigureThatIsNoNumberIsNone) {
    makeCPUFile();
    run("update hour_cpuhistory set user = 9e999 where sample = 4");
    EXPECT_EQ(exports("cpu", {.since = 1425900024}), 0);
    EXPECT_THAT(out.str(), HasSubstr("1425900024,4,0,,1,2\n"));
}

TEST_F(HistoryToolTest, MissingFileAndMissingTableAreToldOf) {
    EXPECT_EQ(exports("load"), 1);
    makeCPUFile();
    EXPECT_EQ(exports("cpu", {.scale = "week"}), 1);
    EXPECT_EQ(err.str(), fmt::format("vantorbar: {}: there is no such file\n"
                                     "vantorbar: {}: has no table week_cpuhistory\n",
                                     path("load.db").string(), path("cpu.db").string()));
    EXPECT_FALSE(std::filesystem::exists(path("load.db")));
}

TEST_F(HistoryToolTest, FolderInThePlaceOfAFileIsToldOf) {
    std::filesystem::create_directory(path("cpu.db"));
    EXPECT_EQ(exports("cpu"), 1);
    EXPECT_THAT(err.str(), HasSubstr("isn't a file\n"));
}

TEST_F(HistoryToolTest, MoreRowsThanAreReadAreSaid) {
    run(fmt::format(kCreate, "hour_cpuhistory"));
    run(fmt::format("with recursive n(i) as (select 1 union all select i + 1 from n where i <= {}) "
                    "insert into hour_cpuhistory select i, i * 6, 0, 0, 0, 0 from n",
                    HistoryFileReader::kMostRows));
    EXPECT_EQ(exports("cpu"), 0);
    EXPECT_THAT(err.str(), HasSubstr("only the newest 20000 rows"));
    EXPECT_THAT(out.str(), HasSubstr("nice\n12,2,0"));
}

TEST_F(HistoryToolTest, SoundFilesPassTheCheck) {
    makeCPUFile();
    makeGraphicsFile();
    EXPECT_EQ(tool.check(), 0) << err.str();
    EXPECT_EQ(out.str(), "cpu.db: sound\ngpu.db: sound\n");
}

TEST_F(HistoryToolTest, CheckFindsWhatTheProgramNeverWrites) {
    struct Case {
        std::string change, finding;
    };
    const std::vector<Case> cases{
        {"delete from hour_cpuhistory where sample = 3", "hour_cpuhistory: sample 4 follows 2"},
        {"update hour_cpuhistory set time = 1425900018 where sample = 4",
         "hour_cpuhistory: the time of sample 4 isn't behind that of 3"},
        {"update hour_cpuhistory set sample = 7 where sample = 4",
         "hour_cpuhistory: sample 7 follows 3"}};
    for (const auto& [change, finding] : cases) {
        std::filesystem::remove(path("cpu.db"));
        err.str("");
        makeCPUFile();
        run(change);
        EXPECT_EQ(tool.check(), 1);
        EXPECT_EQ(err.str(), fmt::format("vantorbar: {}: {}\n", path("cpu.db").string(), finding));
    }
}

TEST_F(HistoryToolTest, CheckFindsADamagedPage) {
    makeCPUFile();
    std::fstream file(path("cpu.db"), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(4096 + 8) << std::string(64, '\xFF');
    file.close();
    EXPECT_EQ(tool.check(), 1);
    EXPECT_THAT(err.str(), StartsWith("vantorbar: " + path("cpu.db").string() + ": "));
}

TEST_F(HistoryToolTest, WriteThatWasCutShortIsNamedAndLeftAlone) {
    makeCPUFile();
    std::string original(std::filesystem::file_size(path("cpu.db")), 0);
    std::ifstream(path("cpu.db"), std::ios::binary)
        .read(original.data(), static_cast<std::streamsize>(original.size()));
    // What a process leaves that dies in a commit: a journal that nobody has locked.
    test::HistoryFile writer(path("cpu.db"));
    writer.run("pragma cache_size = 1; pragma cache_spill = 1; begin; "
               "update hour_cpuhistory set user = 1");
    writer.run("with recursive n(i) as (select 10 union all select i + 1 from n where i < 2000) "
               "insert into hour_cpuhistory select i, i * 6, 0, 0, 0, 0 from n");
    test::TemporaryFolder later;
    std::filesystem::copy(folder.path(), later.path());
    ASSERT_TRUE(std::filesystem::exists(later / "cpu.db-journal"));
    const HistoryTool cut(later.path(), out, err);
    EXPECT_EQ(cut.check(), 1);
    EXPECT_THAT(err.str(), HasSubstr("its last write was cut short"));
    EXPECT_TRUE(std::filesystem::exists(later / "cpu.db-journal"));
}

TEST_F(HistoryToolTest, ReadingLeavesTheFileAsItIsAndFree) {
    makeCPUFile();
    const auto written = std::filesystem::last_write_time(path("cpu.db"));
    EXPECT_EQ(exports("cpu"), 0);
    EXPECT_EQ(tool.list(HistoryListFormat::table), 0);
    EXPECT_EQ(tool.check(), 0);
    EXPECT_EQ(std::filesystem::last_write_time(path("cpu.db")), written);
    run("begin exclusive transaction; commit");
}

TEST_F(HistoryToolTest, HistoryWithTwoKillsShowsItsGapsWhereTheyWere) {
    std::ofstream(path("scenario.json")) << R"({"start": 1425900000, "until": 3600,
        "machine": {"rate": [[30, 10, 60, 0], [10, 0, 85, 5]]},
        "events": [{"at": 1000, "kill": 100}, {"at": 2500, "kill": 60}]})";
    ASSERT_EQ(simulate({.scenario = path("scenario.json"), .folder = path("out")}, err), 0);
    const HistoryTool kept(folder / "out/databases", out, err);
    ASSERT_EQ(kept.exportSamples({.source = "cpu", .format = HistoryExportFormat::json}), 0);
    std::vector<HistoryRow> rows;
    for (const json& sample : json::parse(out.str())) {
        rows.push_back({.sampleID = sample["sample"],
                        .time = sample["time"].get<double>() - 1425900000,
                        .empty = sample["empty"],
                        .uuid = {},
                        .figures = {}});
        EXPECT_EQ(sample["user"].is_null(), rows.back().empty);
    }
    // The last batches before the kills were written at 864 and 2448. The slot in which the
    // program starts again was measured for too short a time.
    EXPECT_THAT(gapsOf(rows, 6), ElementsAre(HistoryGap{870, 1104}, HistoryGap{2454, 2562}));
    EXPECT_EQ(kept.check(), 0) << err.str();
}

}  // namespace
}  // namespace vantor

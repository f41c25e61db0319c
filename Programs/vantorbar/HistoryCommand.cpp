#include "Programs/vantorbar/HistoryCommand.h"

#include <cmath>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Platform/Linux/LinuxDirectories.h"
#include "Programs/Common/HistoryTool.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/vantorbar/FollowHistory.h"

namespace vantor {
namespace {

const std::map<std::string, HistoryExportFormat> kFormats{{"csv", HistoryExportFormat::csv},
                                                          {"json", HistoryExportFormat::json}};

/// Where the user's history is, unless a folder was named.
std::filesystem::path folderFrom(const std::string& named) {
    if (!named.empty())
        return named;
    const auto data = LinuxDirectories(programDirectories()).applicationSupport();
    if (!data)
        throw std::runtime_error("this user has no folder for a history");
    return *data / "Vantor Bar/databases";
}

/// `status`, unless the output went nowhere.
int withOutputWritten(int status) {
    std::cout.flush();
    return status == 0 && !std::cout ? 1 : status;
}

/// Nothing where the text is an ID, or the one that stands for the newest sample.
std::string complaintAboutID(const std::string& text) {
    double sampleID = 0;
    const bool isID = CLI::detail::lexical_cast(text, sampleID) &&
                      ((sampleID >= 0 && std::isfinite(sampleID)) || sampleID == -1);
    return isID ? "" : text + " is no ID of a sample";
}

using Folder = std::shared_ptr<std::string>;

int withTool(const Folder& folder, const std::function<int(const HistoryTool&)>& work) {
    const HistoryTool tool(folderFrom(*folder), std::cout, std::cerr);
    return withOutputWritten(work(tool));
}

Folder addFolder(CLI::App& command) {
    const auto folder = std::make_shared<std::string>();
    command.add_option("--folder", *folder, "Where the files are, if not where the program's are")
        ->type_name("DIR");
    return folder;
}

/// What is measured, its scale, and whether a combined item measured it.
void addTable(CLI::App& command, std::string& source, std::string& scale, bool& combined) {
    command.add_option("SOURCE", source, "cpu, load or gpu")
        ->required()
        ->check(CLI::IsMember({"cpu", "load", "gpu"}));
    command
        .add_option("--scale", scale,
                    "The time between samples: hour (6 s), day (144 s) or week "
                    "(1008 s); hour if none is named")
        ->check(CLI::IsMember({"hour", "day", "week"}))
        ->type_name("SCALE");
    command.add_flag("--combined", combined,
                     "What an item measured that is part of a combined one");
}

void addList(CLI::App& history, int& exitStatus) {
    CLI::App* const list = history.add_subcommand("list", "Show the tables and what is in them");
    const Folder folder = addFolder(*list);
    const auto json = std::make_shared<bool>(false);
    list->add_flag("--json", *json, "As a JSON array");
    list->callback([folder, json, &exitStatus] {
        exitStatus = withTool(folder, [&](const HistoryTool& tool) {
            return tool.list(*json ? HistoryListFormat::json : HistoryListFormat::table);
        });
    });
}

void addExport(CLI::App& history, int& exitStatus) {
    CLI::App* const command = history.add_subcommand("export", "Write the samples of one table");
    const Folder folder = addFolder(*command);
    const auto wanted = std::make_shared<HistoryExport>();
    addTable(*command, wanted->source, wanted->scale, wanted->combined);
    command->add_option("--format", wanted->format, "csv or json; csv if none is named")
        ->transform(CLI::CheckedTransformer(kFormats).description(""))
        ->type_name("FORMAT");
    command->add_option("--since", wanted->since, "Only from that time on, in seconds since 1970")
        ->type_name("T");
    command->callback([folder, wanted, &exitStatus] {
        exitStatus =
            withTool(folder, [&](const HistoryTool& tool) { return tool.exportSamples(*wanted); });
    });
}

void addCheck(CLI::App& history, int& exitStatus) {
    CLI::App* const check = history.add_subcommand("check", "Say whether the files are sound");
    const Folder folder = addFolder(*check);
    check->callback([folder, &exitStatus] {
        exitStatus = withTool(folder, [](const HistoryTool& tool) { return tool.check(); });
    });
}

void addFollow(CLI::App& history, int& exitStatus) {
    CLI::App* const command =
        history.add_subcommand("follow", "Write each new sample as a line of JSON");
    const Folder folder = addFolder(*command);
    const auto wanted = std::make_shared<FollowOptions>();
    addTable(*command, wanted->source, wanted->scale, wanted->combined);
    command
        ->add_option("--since", wanted->since,
                     "Begin behind the sample of that ID; -1 begins with the newest")
        ->check(&complaintAboutID)
        ->type_name("ID");
    command->add_option("--count", wanted->count, "End after that many lines")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
    CLI::Option* const scenario =
        command->add_option("--scenario", wanted->scenario, "Follow a scripted machine, to its end")
            ->type_name("FILE");
    scenario->excludes(command->get_option("--folder"));
    command->callback([folder, wanted, &exitStatus] {
        const bool isScripted = !wanted->scenario.empty();
        exitStatus = withOutputWritten(
            isScripted ? followScenario(*wanted, std::cout, std::cerr)
                       : followFolder(*wanted, folderFrom(*folder), std::cout, std::cerr));
    });
}

}  // namespace

void addHistoryCommand(CLI::App& app, int& exitStatus) {
    CLI::App* const history =
        app.add_subcommand("history", "Show what was measured, check it, and follow it");
    history->require_subcommand(1);
    addList(*history, exitStatus);
    addExport(*history, exitStatus);
    addCheck(*history, exitStatus);
    addFollow(*history, exitStatus);
}

}  // namespace vantor

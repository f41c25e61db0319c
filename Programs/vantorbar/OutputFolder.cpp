#include "Programs/vantorbar/OutputFolder.h"

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

#include <stdlib.h>

namespace vantor {
namespace {

namespace fs = std::filesystem;

fs::path hiddenFolderBeside(const fs::path& destination) {
    const fs::path whole = fs::absolute(destination).lexically_normal();
    const fs::path named = whole.has_filename() ? whole : whole.parent_path();
    fs::create_directories(named.parent_path());
    std::string pattern =
        (named.parent_path() / ("." + named.filename().string() + ".XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw fs::filesystem_error("can't make a folder", named.parent_path(),
                                   std::error_code(errno, std::generic_category()));
    fs::permissions(pattern, fs::perms(0755));
    return pattern;
}

}  // namespace

OutputFolder::OutputFolder(fs::path destination)
    : destination_(std::move(destination)), staging_(hiddenFolderBeside(destination_)) {}

OutputFolder::~OutputFolder() {
    std::error_code ignored;  // what can't be removed is hidden and does no harm
    fs::remove_all(staging_, ignored);
}

void OutputFolder::writeFile(std::string_view name, std::string_view contents) const {
    const fs::path file = staging_ / name;
    std::ofstream stream(file, std::ios::binary);
    stream << contents << std::flush;
    if (!stream)
        throw fs::filesystem_error("can't write", file,
                                   std::make_error_code(std::errc::io_error));
}

void OutputFolder::publish() {
    fs::create_directories(destination_);
    for (const fs::directory_entry& entry : fs::directory_iterator(staging_)) {
        const fs::path target = destination_ / entry.path().filename();
        if (fs::is_directory(fs::symlink_status(target)) || entry.is_directory())
            fs::remove_all(target);
        fs::rename(entry.path(), target);
    }
}

}  // namespace vantor

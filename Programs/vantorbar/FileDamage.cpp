#include "Programs/vantorbar/FileDamage.h"

#include <fstream>
#include <string>
#include <string_view>

namespace vantor {
namespace {

namespace fs = std::filesystem;
using Kind = simulated::Corruption::Kind;

std::string spoiltContents(Kind kind, std::size_t sizeBytes) {
    constexpr std::string_view kText = "This is no database.\n";
    std::string contents(kind == Kind::empty ? 0 : sizeBytes, '\0');
    if (kind == Kind::text)
        for (std::size_t place = 0; place < contents.size(); ++place)
            contents[place] = kText[place % kText.size()];
    return contents;
}

}  // namespace

bool spoilFile(const fs::path& file, Kind kind) {
    std::error_code error;
    const auto sizeBytes = fs::file_size(file, error);  // fails for what is no regular file
    if (error)
        return false;
    if (kind == Kind::truncated) {
        fs::resize_file(file, sizeBytes / 2, error);
        return !error;
    }
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << spoiltContents(kind, sizeBytes) << std::flush;
    return stream.good();
}

}  // namespace vantor

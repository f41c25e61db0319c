#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "Foundation/Image.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// An image that the bar item asks for by name, with its size in points.
struct Artwork {
    std::string_view name;
    int width = 0, height = 0;
};

constexpr Artwork kArtwork[]{
    {"menubar-label-cpu", 8, 18},
    {"menubar-label-cpu-white", 8, 18},
    {"menubar-graph-light", 9, 18},
    {"menubar-graph-dark", 9, 18},
    {"menubar-graph-darkmode", 9, 18},
    {"menubar-graph-darkmode-black", 9, 18},
    {"menubar-piegraph-light", 18, 18},
    {"menubar-piegraph-dark", 18, 18},
    {"menubar-piegraph-darkmode", 18, 18},
    {"menubar-piegraph-darkmode-black", 18, 18},
    {"menubar-gpu-intelorintegrated", 6, 18},
    {"menubar-gpu-intelorintegrated-white", 6, 18},
    {"menubar-gpu-nvidia", 14, 18},
    {"menubar-gpu-nvidia-white", 14, 18},
    {"menubar-gpu-ati", 12, 18},
    {"menubar-gpu-ati-white", 12, 18},
    {"menubar-gpu-discrete", 12, 18},
    {"menubar-gpu-discrete-white", 12, 18},
    {"menubar-combined", 12, 18},
    {"menubar-combined-white", 12, 18},
    {"menubar-network-dot-on", 7, 7},
    {"menubar-network-dot-off-light", 7, 7},
    {"menubar-network-dot-off-dark", 7, 7},
    {"menubar-network-dot-off-darkmode", 7, 7},
    {"menubar-network-dot-off-darkmode-black", 7, 7},
    {"menubar-network-arrowup-on", 7, 7},
    {"menubar-network-arrowup-off-light", 7, 7},
    {"menubar-network-arrowup-off-dark", 7, 7},
    {"menubar-network-arrowup-off-darkmode", 7, 7},
    {"menubar-network-arrowup-off-darkmode-black", 7, 7},
    {"menubar-network-arrowdown-on", 7, 7},
    {"menubar-network-arrowdown-off-light", 7, 7},
    {"menubar-network-arrowdown-off-dark", 7, 7},
    {"menubar-network-arrowdown-off-darkmode", 7, 7},
    {"menubar-network-arrowdown-off-darkmode-black", 7, 7},
};

constexpr int kScales[]{1, 2, 3};

std::shared_ptr<Image> imageNamed(std::string_view name, int scale) {
    const std::string ending = scale == 1 ? "" : fmt::format("@{}x", scale);
    return Image::fromFile(fs::path(VANTOR_BUNDLE_DIR) / fmt::format("{}{}.png", name, ending));
}

std::uint32_t pixel(const Image& image, int column, int row) {
    return image.pixels()[static_cast<std::size_t>(row * image.widthPixels() + column)];
}

std::uint32_t alpha(std::uint32_t pixel) { return pixel >> 24; }

std::vector<std::uint32_t> alphas(const Image& image) {
    std::vector<std::uint32_t> values;
    std::ranges::transform(image.pixels(), std::back_inserter(values), alpha);
    return values;
}

const fs::path& drawings() {
    static const fs::path folder = fs::path(VANTOR_SOURCE_DIR) / "Resources/Artwork";
    return folder;
}

std::string contents(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// What is wrong with `text` as a document of elements, attributes and comments, which is all that
/// a drawing is made of; "" if nothing is.
std::string flawIn(const std::string& text) {
    static const std::regex between(R"(\s+|<!--(?:[^-]|-[^-])*-->)");
    static const std::regex tag(R"(<(/?)([A-Za-z]+)(?:\s+[A-Za-z0-9:-]+="[^"<&]*")*\s*(/?)>)");
    std::vector<std::string> open;
    bool begun = false;
    std::smatch found;
    for (auto at = text.cbegin(); at != text.cend(); at = found[0].second) {
        if (std::regex_search(at, text.cend(), found, between,
                              std::regex_constants::match_continuous))
            continue;
        if (!std::regex_search(at, text.cend(), found, tag, std::regex_constants::match_continuous))
            return "neither an element nor a comment: " + std::string(at, text.cend());
        const bool closes = found[1].length() > 0, empty = found[3].length() > 0;
        if (closes ? open.empty() || open.back() != found[2] : begun && open.empty())
            return "out of place: " + found.str();
        begun = true;
        if (closes)
            open.pop_back();
        else if (!empty)
            open.push_back(found[2]);
    }
    return begun && open.empty() ? "" : "an element is missing or left open";
}

TEST(ArtworkTest, EveryImageIsInTheBundleAtEachScale) {
    for (const Artwork& artwork : kArtwork) {
        for (const int scale : kScales) {
            SCOPED_TRACE(fmt::format("{} at {}x", artwork.name, scale));
            const auto image = imageNamed(artwork.name, scale);
            ASSERT_NE(image, nullptr);
            EXPECT_EQ(image->scale(), scale);
            EXPECT_EQ(image->widthPixels(), artwork.width * scale);
            EXPECT_EQ(image->heightPixels(), artwork.height * scale);
        }
    }
}

TEST(ArtworkTest, NoImageIsBlank) {
    for (const Artwork& artwork : kArtwork) {
        const auto image = imageNamed(artwork.name, 1);
        ASSERT_NE(image, nullptr) << artwork.name;
        EXPECT_GT(std::ranges::max(alphas(*image)), 0u) << artwork.name;
    }
}

TEST(ArtworkTest, EveryDrawingIsAnImageThatTheItemAsksFor) {
    std::set<std::string> drawn, wanted;
    for (const auto& entry : fs::directory_iterator(drawings() / "menubar"))
        drawn.insert(entry.path().filename());
    for (const Artwork& artwork : kArtwork)
        wanted.insert(fmt::format("{}.svg", artwork.name));
    EXPECT_EQ(drawn, wanted);
}

TEST(ArtworkTest, EveryDrawingIsWellFormed) {
    for (const auto& entry : fs::recursive_directory_iterator(drawings()))
        if (entry.is_regular_file()) {
            EXPECT_EQ(flawIn(contents(entry.path())), "") << entry.path();
        }
}

TEST(ArtworkTest, FlawsOfADocumentAreFound) {
    EXPECT_EQ(flawIn("<!-- a -->\n<svg a=\"1\"><g><path d=\"M0 0\"/></g></svg>\n"), "");
    for (const std::string flawed :
         {"", "<svg>", "<svg></g>", "<svg><g></svg></g>", "<svg/><svg/>", "</svg>", "<svg a=1/>",
          "<svg a=\"/>", "<svg a=\"<\"/>", "<svg>&</svg>", "<!-- <svg/>", "<svg"})
        EXPECT_NE(flawIn(flawed), "") << flawed;
}

TEST(ArtworkTest, TheWhiteImageHasTheShapeOfTheDarkOne) {
    for (const Artwork& artwork : kArtwork) {
        const auto white = imageNamed(fmt::format("{}-white", artwork.name), 3);
        if (white == nullptr)
            continue;
        const auto dark = imageNamed(artwork.name, 3);
        ASSERT_NE(dark, nullptr) << artwork.name;
        EXPECT_EQ(alphas(*white), alphas(*dark)) << artwork.name;
        EXPECT_EQ(std::ranges::max(white->pixels()), 0xFFFFFFFFu) << artwork.name;
        EXPECT_EQ(std::ranges::max(dark->pixels()), 0xFF1C1C1Cu) << artwork.name;
    }
}

/// The tiles are stretched at their middle column, with four points kept at either side.
TEST(ArtworkTest, ATileIsTheSameAroundItsMiddle) {
    for (const auto* name : {"menubar-graph-light", "menubar-graph-dark", "menubar-graph-darkmode",
                             "menubar-graph-darkmode-black"}) {
        for (const int scale : kScales) {
            const auto tile = imageNamed(name, scale);
            ASSERT_NE(tile, nullptr) << name;
            for (int row = 0; row < tile->heightPixels(); ++row)
                for (int column = 3 * scale; column < 6 * scale; ++column)
                    ASSERT_EQ(pixel(*tile, column, row), pixel(*tile, 3 * scale, row))
                        << name << " at " << column << ", " << row;
        }
    }
}

TEST(ArtworkTest, TheFrameOfATileIsOnePointWide) {
    for (const auto* name :
         {"menubar-graph-light", "menubar-graph-darkmode", "menubar-graph-darkmode-black"}) {
        for (const int scale : kScales) {
            const auto tile = imageNamed(name, scale);
            ASSERT_NE(tile, nullptr) << name;
            const auto alphaAt = [&](int row) { return alpha(pixel(*tile, 4 * scale, row)); };
            const int bottom = tile->heightPixels() - 1;
            EXPECT_GT(alphaAt(scale - 1), alphaAt(scale)) << name;
            EXPECT_EQ(alphaAt(scale), alphaAt(bottom - scale)) << name;
            EXPECT_GT(alphaAt(bottom - scale + 1), alphaAt(bottom - scale)) << name;
        }
    }
}

}  // namespace
}  // namespace vantor

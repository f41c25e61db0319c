#include "Tests/Support/PlainPicture.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "Foundation/Image.h"
#include "Painting/ImageSurface.h"

namespace vantor::test {
namespace {

constexpr int kProbes = 16;             // a side of a pixel
constexpr double kRounding = 2;         // steps of 255 that each layer may be off by
constexpr double kEdgeRounding = 0.12;  // of a pixel, along the edge of a shape

}  // namespace

Coverage::Coverage(int widthPoints, int scale, const Rect& bounds, const Shape& shape,
                   Outline outline) {
    const int width = widthPoints * scale, height = PlainPicture::kHeight * scale;
    const auto pixel = [scale](double points) {
        return static_cast<int>(std::floor(points * scale));
    };
    const int left = std::max(0, pixel(bounds.x) - 1);
    const int right = std::min(width, pixel(bounds.x + bounds.width) + 2);
    for (int row = 0; row < height; ++row)
        for (int column = left; column < right; ++column) {
            int inside = 0;
            for (int probe = 0; probe < kProbes * kProbes; ++probe) {
                const double x = column + (probe % kProbes + 0.5) / kProbes;
                const double y = height - row - (probe / kProbes + 0.5) / kProbes;
                inside += shape({x / scale, y / scale}) ? 1 : 0;
            }
            const double share = inside / double{kProbes * kProbes};
            pixels_.push_back({column, row, share, share > 0 && share < 1});
        }
    if (outline == Outline::round)
        blurEdges();
    std::erase_if(pixels_, [](const Pixel& each) { return each.share == 0 && !each.edge; });
}

/// The pixels beside an edge belong to it as well.
void Coverage::blurEdges() {
    const std::vector<Pixel> sharp = pixels_;
    for (Pixel& each : pixels_)
        each.edge = std::ranges::any_of(sharp, [&each](const Pixel& other) {
            return std::abs(other.column - each.column) <= 1 &&
                   std::abs(other.row - each.row) <= 1 && other.share != each.share;
        });
}

PlainPicture::PlainPicture(int widthPoints, int scale)
    : width_(widthPoints * scale), height_(kHeight * scale), scale_(scale),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)) {}

PlainPicture::Pixel& PlainPicture::at(int column, int row) {
    return pixels_.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                      static_cast<std::size_t>(column));
}

void PlainPicture::cover(Pixel& pixel, const Colour& colour, double share) {
    const double alpha = colour.alpha * share, rest = 1 - alpha;
    pixel.red = pixel.red * rest + colour.red * alpha;
    pixel.green = pixel.green * rest + colour.green * alpha;
    pixel.blue = pixel.blue * rest + colour.blue * alpha;
    pixel.alpha = pixel.alpha * rest + alpha;
    pixel.slack = pixel.slack * rest + kRounding;
}

void PlainPicture::fill(const Coverage& coverage, const Colour& start, const Colour& end,
                        double top, double bottom) {
    for (const Coverage::Pixel& covered : coverage.pixels()) {
        const double y = (height_ - covered.row - 0.5) / scale_;
        const double along = top > bottom ? std::clamp((top - y) / (top - bottom), 0.0, 1.0) : 0;
        const auto mixed = [along](double from, double to) { return from + (to - from) * along; };
        Pixel& pixel = at(covered.column, covered.row);
        cover(pixel,
              {mixed(start.red, end.red), mixed(start.green, end.green),
               mixed(start.blue, end.blue), mixed(start.alpha, end.alpha)},
              covered.share);
        if (covered.edge)
            pixel.slack += 255 * kEdgeRounding;
    }
}

void PlainPicture::drawColumn(const Image& image, int from, int column, int y, double alpha) {
    const int bottom = height_ - y * scale_;
    for (int row = 0; row < image.heightPixels(); ++row) {
        const std::uint32_t source =
            image.pixels()[static_cast<std::size_t>(row * image.widthPixels() + from)];
        const double opacity = (source >> 24) / 255.0;
        const auto part = [&](int shift) {
            return opacity > 0 ? (source >> shift & 0xFF) / 255.0 / opacity : 0;
        };
        cover(at(column, bottom - image.heightPixels() + row),
              {part(16), part(8), part(0), opacity}, alpha);
    }
}

void PlainPicture::draw(const Image& image, int x, int y, double alpha) {
    for (int column = 0; column < image.widthPixels(); ++column)
        drawColumn(image, column, x * scale_ + column, y, alpha);
}

void PlainPicture::drawStretched(const Image& image, int x, int y, int width, int cap,
                                 double alpha) {
    const int length = width * scale_, end = cap * scale_;
    for (int column = 0; column < length; ++column) {
        const int fromRight = length - column;
        const int from = column < end       ? column
                         : fromRight <= end ? image.widthPixels() - fromRight
                                            : end;
        drawColumn(image, from, x * scale_ + column, y, alpha);
    }
}

std::string PlainPicture::differenceFrom(const Painting::ImageSurface& painted) const {
    if (painted.widthPixels() != width_ || painted.heightPixels() != height_)
        return fmt::format("{} x {} pixels", painted.widthPixels(), painted.heightPixels());
    for (int row = 0; row < height_; ++row)
        for (int column = 0; column < width_; ++column) {
            const Pixel& wanted = pixels_[static_cast<std::size_t>(row * width_ + column)];
            const std::uint32_t found = painted.pixel(column, row);
            const auto fits = [&](double want, int shift) {
                return std::abs(want * 255 - (found >> shift & 0xFF)) <= wanted.slack + 1e-6;
            };
            if (!fits(wanted.alpha, 24) || !fits(wanted.red, 16) || !fits(wanted.green, 8) ||
                !fits(wanted.blue, 0))
                return fmt::format(
                    "column {}, row {}: {:08X}, not {:02X}{:02X}{:02X}{:02X} give or take {:.0f}",
                    column, row, found, std::lround(wanted.alpha * 255),
                    std::lround(wanted.red * 255), std::lround(wanted.green * 255),
                    std::lround(wanted.blue * 255), wanted.slack);
        }
    return {};
}

}  // namespace vantor::test

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Foundation/Colour.h"
#include "Foundation/Geometry.h"

namespace vantor {
class Image;
namespace Painting {
class ImageSurface;
}
}  // namespace vantor

namespace vantor::test {

/// How much of each pixel of a bar a shape covers, found by asking of many places whether they lie
/// in it.
class Coverage {
public:
    /// Whether a place of the bar, in points, lies in a shape. Outside of `bounds` none does.
    using Shape = std::function<bool(Point)>;
    /// A round outline is made of short straight lines, which pass a little beside it.
    enum class Outline { straight, round };

    Coverage(int widthPoints, int scale, const Rect& bounds, const Shape& shape,
             Outline outline = Outline::straight);

    struct Pixel {
        int column, row;  // from the upper left
        double share;     // 0 to 1
        bool edge;        // where a painter may round as it likes
    };
    const std::vector<Pixel>& pixels() const noexcept { return pixels_; }

private:
    void blurEdges();

    std::vector<Pixel> pixels_;
};

/// What a piece of a bar should look like: painted one pixel after the other, with no help from
/// what is tested.
/// Units:  points of the bar, 22 high, from its lower left.
class PlainPicture {
public:
    static constexpr int kHeight = 22;

    PlainPicture(int widthPoints, int scale);

    /// In a colour that goes from `start`, at `top` points, to `end`, at `bottom` points.
    void fill(const Coverage& coverage, const Colour& start, const Colour& end, double top,
              double bottom);
    /// The whole picture, in points that are its own, its lower left there.
    void draw(const Image& image, int x, int y, double alpha);
    /// The same as wide as wanted: its outer `cap` points stand at both ends, what is between them
    /// is the column beside the left one.
    void drawStretched(const Image& image, int x, int y, int width, int cap, double alpha);

    /// Where and how the picture differs from that; "" if it doesn't.
    std::string differenceFrom(const Painting::ImageSurface& painted) const;

private:
    struct Pixel {
        double red = 0, green = 0, blue = 0, alpha = 0;  // multiplied by the alpha
        double slack = 0;  // by how many steps of 255 a painter may differ
    };
    Pixel& at(int column, int row);
    void drawColumn(const Image& image, int from, int column, int y, double alpha);
    static void cover(Pixel& pixel, const Colour& colour, double share);

    int width_, height_, scale_;
    std::vector<Pixel> pixels_;
};

}  // namespace vantor::test

#include "Painting/Context.h"

#include "Painting/Engine.h"
#include "Painting/Image.h"
#include "Painting/ImageSurface.h"
#include "Painting/PlainText.h"

namespace vantor::Painting {
namespace {

/// Coordinates that begin at the upper left of a view of that height, turned to `origin`.
void turn(Engine& engine, _cairo* cairo, double height, Origin origin) noexcept {
    if (origin == Origin::lowerLeft)
        engine.transform(cairo, {0, height}, 1, -1);
}

/// Where `part` of an image, counted from its lower left, lies when the image fills `rect`.
Rect placeOf(const Rect& part, Size image, const Rect& rect, Origin origin) noexcept {
    const double xScale = rect.width / image.width, yScale = rect.height / image.height;
    const double y = origin == Origin::lowerLeft ? part.y : image.height - part.y - part.height;
    return {rect.x + part.x * xScale, rect.y + y * yScale, part.width * xScale,
            part.height * yScale};
}

}  // namespace

Context::Context(_cairo* cairo, Size view, double scale, Origin origin) noexcept
    : cairo_(cairo), scale_(scale), origin_(origin) {
    Engine& engine = Engine::shared();
    engine.save(cairo_);
    turn(engine, cairo_, view.height, origin);
}

Context::Context(Context& parent, const Rect& frame, Origin origin) noexcept
    : cairo_(parent.cairo_), scale_(parent.scale_), origin_(origin) {
    Engine& engine = Engine::shared();
    engine.save(cairo_);
    engine.clip(cairo_, frame);
    if (parent.isFlipped())
        engine.transform(cairo_, {frame.x, frame.y}, 1, 1);
    else
        engine.transform(cairo_, {frame.x, frame.y + frame.height}, 1, -1);
    turn(engine, cairo_, frame.height, origin);
}

Context::~Context() { Engine::shared().restore(cairo_); }

Rect Context::clipBounds() const noexcept { return Engine::shared().clipBounds(cairo_); }

void Context::clip(const Rect& rect) noexcept { Engine::shared().clip(cairo_, rect); }

void Context::clip(const Path& path) noexcept { Engine::shared().clip(cairo_, path); }

void Context::translate(double x, double y) noexcept {
    Engine::shared().transform(cairo_, {x, y}, 1, 1);
}

void Context::stretch(double x, double y) noexcept {
    Engine::shared().transform(cairo_, {0, 0}, x, y);
}

void Context::setColour(const Colour& colour) noexcept {
    Engine::shared().setColour(cairo_, colour);
}

void Context::fill(const Path& path) noexcept { Engine::shared().fill(cairo_, path); }

void Context::fill(const Path& path, const Colour& colour) noexcept {
    setColour(colour);
    fill(path);
}

void Context::fill(const Path& path, const Gradient& gradient) noexcept {
    const Rect bounds = path.bounds();
    const double low = bounds.y, high = bounds.y + bounds.height;
    if (isFlipped())
        Engine::shared().fill(cairo_, path, gradient, low, high);
    else
        Engine::shared().fill(cairo_, path, gradient, high, low);
}

void Context::fill(const Rect& rect, const Colour& colour) noexcept {
    setColour(colour);
    Engine::shared().fill(cairo_, rect);
}

void Context::stroke(const Path& path, const Colour& colour, double lineWidth) noexcept {
    setColour(colour);
    Engine::shared().stroke(cairo_, path, lineWidth);
}

void Context::drawBitmap(const Bitmap& bitmap, const Rect& rect, double alpha) noexcept {
    if (!bitmap.isEmpty())
        Engine::shared().paint(cairo_, bitmap, rect, alpha, origin_);
}

void Context::drawImage(const Image& image, Point point, double alpha) noexcept {
    drawImage(image, {point.x, point.y, image.size().width, image.size().height}, alpha);
}

void Context::drawImage(const Image& image, const Rect& rect, double alpha) noexcept {
    const ImageView view = image.viewForScale(scale_);
    drawBitmap(view.bitmap, placeOf(view.filled, image.size(), rect, origin_), alpha);
}

void Context::drawImage(const ImageSurface& image, Point point, double alpha) noexcept {
    drawImage(image, {point.x, point.y, image.size().width, image.size().height}, alpha);
}

void Context::drawImage(const ImageSurface& image, const Rect& rect, double alpha) noexcept {
    // Its last column and row of pixels may reach beyond its size.
    const Bitmap bitmap = image.bitmap();
    const Size size = image.size();
    const double width = bitmap.width / image.scale(), height = bitmap.height / image.scale();
    const Rect filled{0, size.height - height, width, height};
    drawBitmap(bitmap, placeOf(filled, size, rect, origin_), alpha);
}

void Context::drawText(std::string_view text, const Rect& rect,
                       const TextAttributes& attributes) noexcept {
    Engine::shared().drawText(cairo_, PlainText(text).view(), rect, attributes, origin_);
}

void Context::drawText(std::string_view text, Point point,
                       const TextAttributes& attributes) noexcept {
    const PlainText plain(text);
    const Size size = Engine::shared().sizeOfText(plain.view(), attributes);
    Engine::shared().drawText(cairo_, plain.view(), {point.x, point.y, size.width, size.height},
                              attributes, origin_);
}

StateSaver::StateSaver(Context& context) noexcept : context_(context) {
    Engine::shared().save(context_.cairo_);
}

StateSaver::~StateSaver() { Engine::shared().restore(context_.cairo_); }

}  // namespace vantor::Painting

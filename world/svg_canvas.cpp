#include "world/svg_canvas.h"

#include <fmt/format.h>

#include <iterator>

#include "station/code_page.h"

namespace corvenna {

namespace {

constexpr double WidthOfACharacter = 0.6;  // of its size, in a common sans-serif face

/// What XML keeps for itself is written out, control characters become blanks.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : CodePageToUtf8(text)) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
                break;
        }
    }
    return escaped;
}

std::string Attributes(const Stroke& stroke) {
    std::string attributes = fmt::format("stroke=\"{}\" stroke-width=\"{:.1f}\"", stroke.Color, stroke.Width);
    if (!stroke.Dashes.empty()) attributes += fmt::format(" stroke-dasharray=\"{}\"", stroke.Dashes);
    if (stroke.RoundEnds) attributes += " stroke-linecap=\"round\"";
    return attributes;
}

}  // namespace

void SvgCanvas::Line(DrawingPoint from, DrawingPoint to, const Stroke& stroke) {
    fmt::format_to(std::back_inserter(shapes_),
                   "<line x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\" {}/>\n", from.X, from.Y,
                   to.X, to.Y, Attributes(stroke));
}

void SvgCanvas::Polygon(std::span<const DrawingPoint> corners, std::string_view fill) {
    shapes_ += "<polygon points=\"";
    for (const DrawingPoint corner : corners) {
        fmt::format_to(std::back_inserter(shapes_), "{:.1f},{:.1f} ", corner.X, corner.Y);
    }
    fmt::format_to(std::back_inserter(shapes_), "\" fill=\"{}\"/>\n", fill);
}

void SvgCanvas::Circle(DrawingPoint centre, double radius, std::string_view fill, const Stroke& stroke) {
    fmt::format_to(std::back_inserter(shapes_),
                   "<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"{:.1f}\" fill=\"{}\" {}/>\n", centre.X, centre.Y,
                   radius, fill, Attributes(stroke));
}

void SvgCanvas::Box(DrawingPoint corner, double width, double height, std::string_view fill,
                    const Stroke& stroke) {
    fmt::format_to(std::back_inserter(shapes_),
                   "<rect x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\" fill=\"{}\" {}/>\n",
                   corner.X, corner.Y, width, height, fill, Attributes(stroke));
}

void SvgCanvas::Text(DrawingPoint place, std::string_view text, const Lettering& lettering) {
    const std::string turn = lettering.Turn == 0 ? std::string()
                                                 : fmt::format(" transform=\"rotate({:.1f} {:.1f} {:.1f})\"",
                                                               lettering.Turn, place.X, place.Y);
    fmt::format_to(std::back_inserter(shapes_),
                   "<text x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"{:.1f}\" fill=\"{}\" text-anchor=\"{}\" "
                   "dy=\"0.35em\"{}{}>{}</text>\n",
                   place.X, place.Y, lettering.Size, lettering.Color, lettering.Anchor,
                   lettering.Bold ? " font-weight=\"bold\"" : "", turn, Escaped(text));
}

void SvgCanvas::BeginInset(DrawingPoint corner, double width, double height, DrawingPoint seenCorner,
                           double seenWidth, double seenHeight) {
    fmt::format_to(std::back_inserter(shapes_),
                   "<svg x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\" "
                   "viewBox=\"{:.1f} {:.1f} {:.1f} {:.1f}\">\n",
                   corner.X, corner.Y, width, height, seenCorner.X, seenCorner.Y, seenWidth, seenHeight);
}

void SvgCanvas::EndInset() { shapes_ += "</svg>\n"; }

std::string SvgCanvas::Document(DrawingPoint corner, double width, double height, double pixelsPerUnit,
                                std::string_view title) const {
    return fmt::format(
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{:.0f}\" height=\"{:.0f}\" "
               "viewBox=\"{:.1f} {:.1f} {:.1f} {:.1f}\" font-family=\"Helvetica, Arial, sans-serif\">\n"
               "<title>{}</title>\n",
               width * pixelsPerUnit, height * pixelsPerUnit, corner.X, corner.Y, width, height,
               Escaped(title)) +
           shapes_ + "</svg>\n";
}

double TextWidth(std::string_view text, double size) {
    return static_cast<double>(text.size()) * size * WidthOfACharacter;
}

}  // namespace corvenna

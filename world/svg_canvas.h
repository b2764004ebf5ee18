#pragma once

#include <span>
#include <string>
#include <string_view>

namespace corvenna {

/// A place on a drawing, in the drawing's own units; x to the right, y down.
struct DrawingPoint {
    double X = 0;
    double Y = 0;
};

struct Stroke {
    std::string_view Color = "#1c1c1c";
    double Width = 1;
    std::string_view Dashes{};  ///< lengths of dashes and gaps, empty for a whole line
    bool RoundEnds = false;
};

struct Lettering {
    double Size = 12;
    std::string_view Color = "#1c1c1c";
    std::string_view Anchor = "middle";  ///< "start", "middle" or "end"
    bool Bold = false;
    double Turn = 0;  ///< degrees clockwise about its place
};

/// Builds an SVG drawing, shape by shape, later ones on top. Texts come in the program's code page.
class SvgCanvas {
  public:
    void Line(DrawingPoint from, DrawingPoint to, const Stroke& stroke);
    void Polygon(std::span<const DrawingPoint> corners, std::string_view fill);
    void Circle(DrawingPoint centre, double radius, std::string_view fill, const Stroke& stroke);
    void Box(DrawingPoint corner, double width, double height, std::string_view fill, const Stroke& stroke);

    /// A text whose middle line goes through its place.
    void Text(DrawingPoint place, std::string_view text, const Lettering& lettering);

    /// What follows, up to EndInset, is drawn to another scale: the part of the drawing from `seenCorner` on
    /// appears in a box, and what leaves that is cut off.
    void BeginInset(DrawingPoint corner, double width, double height, DrawingPoint seenCorner,
                    double seenWidth, double seenHeight);
    void EndInset();

    /// The document: the part of the drawing from `corner` on, shown with so many pixels to the unit.
    std::string Document(DrawingPoint corner, double width, double height, double pixelsPerUnit,
                         std::string_view title) const;

  private:
    std::string shapes_;
};

/// The room that a text takes from left to right, near enough for layouts.
double TextWidth(std::string_view text, double size);

}  // namespace corvenna

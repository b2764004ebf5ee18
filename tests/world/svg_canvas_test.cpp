#include "world/svg_canvas.h"

#include <gmock/gmock.h>

namespace corvenna {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string Drawn(const SvgCanvas& canvas) { return canvas.Document({-10, 5}, 200, 100, 2, "A & B"); }

TEST(SvgCanvas, TheDocumentShowsItsPartOfTheDrawingInSoManyPixels) {
    EXPECT_THAT(Drawn(SvgCanvas()),
                AllOf(StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "),
                      HasSubstr("width=\"400\" height=\"200\" viewBox=\"-10.0 5.0 200.0 100.0\""),
                      HasSubstr("<title>A &amp; B</title>"), EndsWith("</svg>\n")));
}

TEST(SvgCanvas, ShapesStandInTheOrderInWhichTheyWereDrawn) {
    SvgCanvas canvas;
    canvas.Line({0, 1}, {2, 3.25}, {.Color = "red", .Width = 4, .Dashes = "1 2", .RoundEnds = true});
    const DrawingPoint corners[] = {{0, 0}, {1, 0}, {1, 1}};
    canvas.Polygon(corners, "blue");
    canvas.Circle({5, 6}, 7, "none", {});
    canvas.Box({1, 2}, 3, 4, "white", {});
    EXPECT_THAT(Drawn(canvas),
                HasSubstr("<line x1=\"0.0\" y1=\"1.0\" x2=\"2.0\" y2=\"3.2\" stroke=\"red\" "
                          "stroke-width=\"4.0\" stroke-dasharray=\"1 2\" stroke-linecap=\"round\"/>\n"
                          "<polygon points=\"0.0,0.0 1.0,0.0 1.0,1.0 \" fill=\"blue\"/>\n"
                          "<circle cx=\"5.0\" cy=\"6.0\" r=\"7.0\" fill=\"none\" "));
    EXPECT_THAT(Drawn(canvas), HasSubstr("<rect x=\"1.0\" y=\"2.0\" width=\"3.0\" height=\"4.0\""));
}

TEST(SvgCanvas, TextsAreTurnedAboutTheirPlaceAndKeepNoMarkup) {
    SvgCanvas canvas;
    canvas.Text({1, 2}, "<M\xFCnchen> \"x\"\x02", {.Size = 9, .Bold = true, .Turn = 90});
    EXPECT_THAT(Drawn(canvas),
                AllOf(HasSubstr(">&lt;M\xC3\xBCnchen&gt; &quot;x&quot; </text>"),
                      HasSubstr("transform=\"rotate(90.0 1.0 2.0)\""), HasSubstr("font-weight=\"bold\"")));
    SvgCanvas plain;
    plain.Text({1, 2}, "x", {});
    EXPECT_THAT(Drawn(plain), AllOf(Not(HasSubstr("transform")), Not(HasSubstr("font-weight"))));
}

TEST(SvgCanvas, AnInsetIsADrawingOfItsOwnWithinTheOther) {
    SvgCanvas canvas;
    canvas.BeginInset({1, 2}, 30, 40, {5, 6}, 7, 8);
    canvas.EndInset();
    EXPECT_THAT(Drawn(canvas), HasSubstr("<svg x=\"1.0\" y=\"2.0\" width=\"30.0\" height=\"40.0\" "
                                         "viewBox=\"5.0 6.0 7.0 8.0\">\n</svg>\n"));
}

}  // namespace
}  // namespace corvenna

#include "world/airport_diagram.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include "station/text.h"
#include "world/diagram_layout.h"
#include "world/svg_canvas.h"

namespace corvenna {

namespace {

constexpr std::string_view Ground = "#f4f3ea";
constexpr std::string_view Pavement = "#c6cad0";
constexpr std::string_view TaxiLine = "#d9a400";
constexpr std::string_view RunwaySurface = "#3d434b";
constexpr std::string_view RunwayPaint = "#ffffff";
constexpr std::string_view SignPlate = "#ffd83b";
constexpr std::string_view SpotFill = "#dbe8f7";
constexpr std::string_view SpotEdge = "#2f5d94";
constexpr std::string_view Active = "#c81e1e";
constexpr std::string_view Ink = "#1c1c1c";

constexpr double SignsApart = 0.16;  // of the map's larger side, between two signs of one taxiway

DrawingPoint operator+(DrawingPoint a, DrawingPoint b) { return {a.X + b.X, a.Y + b.Y}; }
DrawingPoint operator-(DrawingPoint a, DrawingPoint b) { return {a.X - b.X, a.Y - b.Y}; }
DrawingPoint operator*(DrawingPoint a, double factor) { return {a.X * factor, a.Y * factor}; }

double Length(DrawingPoint a) { return std::hypot(a.X, a.Y); }

DrawingPoint Unit(DrawingPoint a) { return Length(a) > 0 ? a * (1 / Length(a)) : DrawingPoint{0, -1}; }

/// To the right of a direction.
DrawingPoint RightOf(DrawingPoint direction) { return {-direction.Y, direction.X}; }

double TurnOf(DrawingPoint direction) {
    return std::atan2(direction.X, -direction.Y) * 180 / std::numbers::pi;
}

struct Plate {
    DrawingPoint Centre;
    double Width, Height;

    bool Touches(const Plate& other) const {
        return std::abs(Centre.X - other.Centre.X) < (Width + other.Width) / 2 &&
               std::abs(Centre.Y - other.Centre.Y) < (Height + other.Height) / 2;
    }
};

/// Half a taxiway is as wide as that to both sides of its line, in keeping with the runway.
double TaxiwayWidthOf(const Airport& airport) {
    return std::clamp(airport.MainRunwayWidth * 0.5, 30.0, 75.0);
}

/// The map of an airport, or a part of it, in feet.
class MapDrawing {
  public:
    /// `side` is the larger side of what is seen; letters are sized by it.
    MapDrawing(SvgCanvas& canvas, const DiagramLayout& layout, const DrawingBounds& seen, double taxiwayWidth)
        : canvas_(canvas),
          layout_(layout),
          seen_(seen),
          side_(std::max(seen.Width(), seen.Height())),
          taxiwayWidth_(taxiwayWidth) {}

    void Draw(bool letterSpots) {
        DrawTaxiways();
        for (const DiagramRunway& runway : layout_.Runways) DrawRunway(runway);
        for (const DiagramRunway& runway : layout_.Runways) DrawRunwaySigns(runway);
        DrawParking(letterSpots);
        DrawTaxiwaySigns();
    }

    /// Whether letters inside all circles, or beside them where there is room, could be read.
    bool SpotsAreLegible() const {
        return std::all_of(layout_.Spots.begin(), layout_.Spots.end(), [&](const DiagramSpot& spot) {
            return std::max(InsideLetterSize(spot), OutsideLetterSize(spot)) >= SmallestLetters();
        });
    }

  private:
    void DrawTaxiways() {
        for (const DiagramTaxiway& taxiway : layout_.Taxiways) {
            canvas_.Line(taxiway.From, taxiway.To,
                         {.Color = Pavement, .Width = taxiwayWidth_, .RoundEnds = true});
        }
        for (const DiagramTaxiway& taxiway : layout_.Taxiways) {
            canvas_.Line(taxiway.From, taxiway.To,
                         {.Color = TaxiLine, .Width = taxiwayWidth_ / 12, .RoundEnds = true});
        }
    }

    void DrawRunway(const DiagramRunway& runway) {
        const DrawingPoint along = Unit(runway.FarEnd - runway.Threshold);
        const DrawingPoint side = RightOf(along) * (runway.Width / 2);
        const DrawingPoint corners[] = {runway.Threshold - side, runway.Threshold + side,
                                        runway.FarEnd + side, runway.FarEnd - side};
        canvas_.Polygon(corners, RunwaySurface);
        const double paint = runway.Width * 3;
        canvas_.Line(runway.Threshold + along * paint, runway.FarEnd - along * paint,
                     {.Color = RunwayPaint, .Width = 4, .Dashes = "120 80"});
        PaintEnd(runway.Threshold, along, runway.Width, runway.Designator);
        PaintEnd(runway.FarEnd, along * -1, runway.Width, runway.OtherDesignator);
    }

    /// Threshold stripes and the designator, as the pilot on final reads it.
    void PaintEnd(DrawingPoint end, DrawingPoint along, double width, std::string_view designator) {
        constexpr int Stripes = 8;
        for (int i = 0; i < Stripes; ++i) {
            const DrawingPoint foot =
                end + RightOf(along) * (width * ((i + 0.5) / Stripes - 0.5) * 0.9) + along * (width * 0.15);
            canvas_.Line(foot, foot + along * (width * 0.8), {.Color = RunwayPaint, .Width = width / 20});
        }
        canvas_.Text(end + along * (width * 1.6), designator,
                     {.Size = width * 0.5, .Color = RunwayPaint, .Bold = true, .Turn = TurnOf(along)});
    }

    /// Designators beside the ends, large enough for the whole map, and the mark of the active threshold.
    void DrawRunwaySigns(const DiagramRunway& runway) {
        const DrawingPoint along = Unit(runway.FarEnd - runway.Threshold);
        const double size = side_ / 62;
        const double away = size * (runway.Main ? 2.6 : 1.0);
        if (runway.Main) MarkActiveThreshold(runway.Threshold, along, runway.Width, size);
        Sign(runway.Threshold - along * away, runway.Designator, size, runway.Main ? Active : Ink);
        Sign(runway.FarEnd + along * size, runway.OtherDesignator, size, Ink);
    }

    void Sign(DrawingPoint place, std::string_view text, double size, std::string_view color) {
        canvas_.Text(place, text, {.Size = size, .Color = color, .Bold = true});
        signs_.push_back({place, TextWidth(text, size), size * 1.2});
    }

    /// A line across the threshold and an arrow that lands on it.
    void MarkActiveThreshold(DrawingPoint threshold, DrawingPoint along, double width, double size) {
        const DrawingPoint side = RightOf(along);
        canvas_.Line(threshold - side * (width * 0.9), threshold + side * (width * 0.9),
                     {.Color = Active, .Width = size / 6});
        const DrawingPoint tip = threshold - along * (size * 0.25);
        const DrawingPoint foot = threshold - along * (size * 1.5);
        const DrawingPoint arrow[] = {tip, foot + side * (size * 0.55), foot - side * (size * 0.55)};
        canvas_.Polygon(arrow, Active);
        signs_.push_back({(tip + foot) * 0.5, size * 1.5, size * 1.5});
    }

    // ---- Parking

    void DrawParking(bool lettered) {
        for (const DiagramTie& tie : layout_.Ties) {
            canvas_.Line(tie.Point, tie.Spot, {.Color = SpotEdge, .Width = side_ / 2500, .Dashes = "18 12"});
        }
        for (const DiagramSpot& spot : layout_.Spots) {
            canvas_.Circle(spot.Centre, spot.Radius, SpotFill, {.Color = SpotEdge, .Width = side_ / 3000});
        }
        if (!lettered) return;
        for (const DiagramSpot& spot : layout_.Spots) LetterSpot(spot);
    }

    double SmallestLetters() const { return side_ / 200; }

    /// For what tells the spot from others, inside the circle as far as the next spot does not cover it. The
    /// rest of its name and the radius stand above and below in smaller letters.
    double InsideLetterSize(const DiagramSpot& spot) const {
        const double width = std::max(TextWidth(SpotNumber(spot.Name), 1), TextWidth("A 1", 1));
        return std::min({RoomInside(spot) * 1.5 / width, spot.Radius * 0.5, side_ / 80});
    }

    static double RoomInside(const DiagramSpot& spot) { return std::min(spot.Room, spot.Radius); }

    /// For one line below or above the circle, as wide as the way to the next spot allows.
    double OutsideLetterSize(const DiagramSpot& spot) const {
        return std::min(spot.Room * 1.8 / TextWidth(NameAndRadius(spot), 1), side_ / 90);
    }

    static std::string NameAndRadius(const DiagramSpot& spot) {
        return fmt::format("{} {:.0f} ft", spot.Name, spot.Radius);
    }

    void LetterSpot(const DiagramSpot& spot) {
        const double inside = InsideLetterSize(spot);
        const double outside = OutsideLetterSize(spot);
        if (inside < SmallestLetters() && outside >= SmallestLetters()) {
            LetterBeside(spot, outside);
        } else {
            LetterInside(spot, std::max(inside, SmallestLetters()));
        }
    }

    void LetterInside(const DiagramSpot& spot, double size) {
        const std::string_view number = SpotNumber(spot.Name);
        const std::string_view kind =
            Trim(std::string_view(spot.Name).substr(0, spot.Name.size() - number.size()));
        canvas_.Text(spot.Centre, number, {.Size = size, .Bold = true});
        const double small =
            std::min(size * 0.65, RoomInside(spot) * 1.5 / TextWidth(kind.empty() ? "x" : kind, 1));
        const DrawingPoint away{0, size * 0.85};
        canvas_.Text(spot.Centre - away, kind, {.Size = small, .Color = SpotEdge});
        canvas_.Text(spot.Centre + away, fmt::format("{:.0f} ft", spot.Radius),
                     {.Size = small, .Color = SpotEdge});
    }

    /// Below the circle, or above it where something else is written below.
    void LetterBeside(const DiagramSpot& spot, double size) {
        const std::string line = NameAndRadius(spot);
        const DrawingPoint away{0, spot.Radius + size * 0.7};
        Plate plate{spot.Centre + away, TextWidth(line, size), size};
        if (TouchesSign(plate)) plate.Centre = spot.Centre - away;
        canvas_.Text(plate.Centre, line, {.Size = size, .Bold = true});
        signs_.push_back(plate);
    }

    // ---- Taxiway signs

    /// Each taxiway's name on its longest stretches, not too close to the last sign of the same name.
    void DrawTaxiwaySigns() {
        std::map<std::string_view, std::vector<const DiagramTaxiway*>> byName;
        for (const DiagramTaxiway& taxiway : layout_.Taxiways) {
            const bool named = taxiway.Name.find_first_not_of(' ') != std::string::npos;
            if (named && seen_.Holds(MiddleOf(taxiway))) byName[taxiway.Name].push_back(&taxiway);
        }
        for (auto& [name, stretches] : byName) {
            std::stable_sort(stretches.begin(), stretches.end(), [](const auto* a, const auto* b) {
                return Length(a->To - a->From) > Length(b->To - b->From);
            });
            SignTaxiway(name, stretches);
        }
    }

    static DrawingPoint MiddleOf(const DiagramTaxiway& taxiway) { return (taxiway.From + taxiway.To) * 0.5; }

    void SignTaxiway(std::string_view name, const std::vector<const DiagramTaxiway*>& stretches) {
        const double size = side_ / 110;
        std::vector<DrawingPoint> placed;
        const auto plateOn = [&](const DiagramTaxiway* stretch) {
            return Plate{MiddleOf(*stretch), TextWidth(name, size) + size * 0.6, size * 1.3};
        };
        for (const DiagramTaxiway* const stretch : stretches) {
            const Plate plate = plateOn(stretch);
            const bool near = std::any_of(placed.begin(), placed.end(), [&](DrawingPoint p) {
                return Length(p - plate.Centre) < side_ * SignsApart;
            });
            if (near || IsCrowded(plate)) continue;
            PutPlate(plate, name, size);
            placed.push_back(plate.Centre);
        }
        if (placed.empty()) PutPlate(plateOn(stretches.front()), name, size);  // better crowded than without
    }

    bool TouchesSign(const Plate& plate) const {
        return std::any_of(signs_.begin(), signs_.end(),
                           [&](const Plate& sign) { return sign.Touches(plate); });
    }

    bool IsCrowded(const Plate& plate) const {
        return TouchesSign(plate) ||
               std::any_of(layout_.Spots.begin(), layout_.Spots.end(),
                           [&](const DiagramSpot& spot) {
                               return plate.Touches({spot.Centre, spot.Radius * 2, spot.Radius * 2});
                           }) ||
               std::any_of(layout_.Runways.begin(), layout_.Runways.end(), [&](const DiagramRunway& runway) {
                   return DistanceToRunway(plate.Centre, runway) < runway.Width / 2 + plate.Height * 0.6;
               });
    }

    static double DistanceToRunway(DrawingPoint place, const DiagramRunway& runway) {
        const DrawingPoint along = Unit(runway.FarEnd - runway.Threshold);
        const DrawingPoint way = place - runway.Threshold;
        const double forward =
            std::clamp(way.X * along.X + way.Y * along.Y, 0.0, Length(runway.FarEnd - runway.Threshold));
        return Length(way - along * forward);
    }

    void PutPlate(const Plate& plate, std::string_view name, double size) {
        canvas_.Box(plate.Centre - DrawingPoint{plate.Width / 2, plate.Height / 2}, plate.Width, plate.Height,
                    SignPlate, {.Color = Ink, .Width = size / 14});
        canvas_.Text(plate.Centre, name, {.Size = size, .Bold = true});
        signs_.push_back(plate);
    }

    SvgCanvas& canvas_;
    const DiagramLayout& layout_;
    const DrawingBounds& seen_;
    double side_;
    double taxiwayWidth_;
    std::vector<Plate> signs_;  // what further signs should keep clear of
};

/// The whole page: header, map, a larger view of the parking where the map is too small for it, footer.
class DiagramPage {
  public:
    DiagramPage(const Airport& airport, std::optional<std::int16_t> variation)
        : airport_(airport), variation_(variation), layout_(LayOut(airport, variation)) {
        const double side = std::max({layout_.All.Width(), layout_.All.Height(), 1500.0});
        margin_ = side * 0.07;
        mapWidth_ = std::max(layout_.All.Width(), side * 0.25) + 2 * margin_;
        mapHeight_ = std::max(layout_.All.Height(), side * 0.25) + 2 * margin_;
        FindDetail(side);
        width_ = std::max(mapWidth_ + detailWidth_, side * 0.75);
        line_ = std::min(width_ / 44, side / 48);
        left_ = (layout_.All.TopLeft.X + layout_.All.BottomRight.X - (width_ - detailWidth_)) / 2;
        mapTop_ = (layout_.All.TopLeft.Y + layout_.All.BottomRight.Y - mapHeight_) / 2;
        top_ = mapTop_ - HeaderLines * line_;
        bottom_ = mapTop_ + mapHeight_ + FooterLines * line_;
    }

    std::string Draw() {
        canvas_.Box({left_, top_}, width_, bottom_ - top_, Ground, {.Color = Ink, .Width = line_ / 10});
        MapDrawing(canvas_, layout_, layout_.All, TaxiwayWidthOf(airport_)).Draw(detailWidth_ == 0);
        if (detailWidth_ > 0) DrawDetail();
        DrawHeader();
        DrawNorthArrow();
        DrawFooter();
        const double pixelsPerFoot = PagePixels / std::max(width_, bottom_ - top_);
        return canvas_.Document({left_, top_}, width_, bottom_ - top_, pixelsPerFoot, AirportLabel(airport_));
    }

  private:
    static constexpr double HeaderLines = 6.5;
    static constexpr double FooterLines = 4.5;
    static constexpr double PagePixels = 2400;

    // ---- The larger view of the parking

    /// Wanted when letters on the map could hardly be read.
    void FindDetail(double side) {
        if (layout_.Spots.empty() || MapDrawing(canvas_, layout_, layout_.All, 0).SpotsAreLegible()) return;
        detail_ = layout_.Parking;
        const double around = std::max(detail_.Width(), detail_.Height()) * 0.08;
        detail_.Include(detail_.TopLeft, around);
        detail_.Include(detail_.BottomRight, around);
        const double scale = std::min((mapHeight_ - margin_) / detail_.Height(), side / detail_.Width());
        if (scale < 1.5) return;  // not worth the paper
        detailWidth_ = detail_.Width() * scale + margin_;
    }

    void DrawDetail() {
        const double width = detailWidth_ - margin_;
        const double height = width * detail_.Height() / detail_.Width();
        const DrawingPoint corner{left_ + width_ - detailWidth_, mapTop_ + (mapHeight_ - height) / 2};
        canvas_.BeginInset(corner, width, height, detail_.TopLeft, detail_.Width(), detail_.Height());
        MapDrawing(canvas_, layout_, detail_, TaxiwayWidthOf(airport_)).Draw(true);
        canvas_.EndInset();
        canvas_.Box(corner, width, height, "none", {.Color = Ink, .Width = line_ / 12});
        canvas_.Text(corner - DrawingPoint{0, line_ * 0.8},
                     fmt::format("Parking, {:.1f} times larger", width / detail_.Width()),
                     {.Size = line_ * 0.8, .Anchor = "start", .Bold = true});
        canvas_.Box(detail_.TopLeft, detail_.Width(), detail_.Height(), "none",
                    {.Color = Ink, .Width = line_ / 16, .Dashes = "60 40"});
    }

    // ---- Around the map

    void HeaderLine(double line, std::string_view text, const Lettering& lettering) {
        canvas_.Text({left_ + line_, top_ + line * line_}, text, lettering);
    }

    void DrawHeader() {
        const std::string title = fmt::format("{} ({})", airport_.Name, airport_.Icao);
        const double room = width_ - 7 * line_;
        const double size = std::min(line_ * 1.6, room / std::max(1.0, TextWidth(title, 1)));
        HeaderLine(1.5, title, {.Size = size, .Anchor = "start", .Bold = true});
        const Lettering plain{.Size = line_ * 0.8, .Anchor = "start"};
        HeaderLine(3.2, RunwayFacts(), plain);
        HeaderLine(4.4, Frequencies(), plain);
        HeaderLine(5.6, "Reference " + Position(), plain);
    }

    std::string Position() const {
        if (!std::isfinite(airport_.Latitude) || !std::isfinite(airport_.Longitude)) return "unknown";
        return fmt::format("{:.4f} {}, {:.4f} {}", std::abs(airport_.Latitude),
                           airport_.Latitude < 0 ? 'S' : 'N', std::abs(airport_.Longitude),
                           airport_.Longitude < 0 ? 'W' : 'E');
    }

    std::string RunwayFacts() const {
        if (airport_.MainRunwayId.empty()) return "No runway";
        return fmt::format("Runway {}: {} x {} ft, heading {:03}, elevation {} ft{}", airport_.MainRunwayId,
                           airport_.MainRunwayLength, airport_.MainRunwayWidth, airport_.MainRunwayHeading,
                           airport_.MainRunwayElevation, airport_.MainRunwayHasIls != 0 ? ", ILS" : "");
    }

    std::string Frequencies() const {
        std::string line;
        const auto add = [&](std::string_view service, const std::string& frequency) {
            if (frequency.empty()) return;
            if (!line.empty()) line += ", ";
            line.append(service).append(" ").append(frequency);
        };
        add("Ground", airport_.GroundFreq);
        add("Tower", airport_.TowerFreq);
        add("Approach", airport_.ApproachFreq);
        add("Center", airport_.CenterFreq);
        add("CTAF", airport_.CtafFreq);
        return line.empty() ? "No frequencies" : line;
    }

    void DrawNorthArrow() {
        const double x = left_ + width_ - 3.2 * line_;
        const DrawingPoint tip{x, top_ + 0.9 * line_};
        const DrawingPoint foot{x, top_ + 3.7 * line_};
        const DrawingPoint head[] = {
            tip, {x - line_ * 0.5, tip.Y + line_ * 1.3}, {x + line_ * 0.5, tip.Y + line_ * 1.3}};
        canvas_.Line(foot, {x, tip.Y + line_}, {.Color = Ink, .Width = line_ / 7});
        canvas_.Polygon(head, Ink);
        canvas_.Text({x, foot.Y + line_ * 0.7}, "N", {.Size = line_ * 1.1, .Bold = true});
        const std::string variation =
            variation_ ? fmt::format("VAR {} {}", std::abs(*variation_), *variation_ < 0 ? 'W' : 'E')
                       : "VAR unknown";
        canvas_.Text({x, foot.Y + line_ * 1.7}, variation, {.Size = line_ * 0.7});
    }

    void DrawFooter() {
        const double y = bottom_ - (FooterLines - 0.8) * line_;
        DrawScale({left_ + line_, y});
        const Lettering plain{.Size = line_ * 0.7, .Anchor = "start"};
        const double x = left_ + width_ * 0.58;
        canvas_.Circle({x, y}, line_ * 0.45, SpotFill, {.Color = SpotEdge, .Width = line_ / 12});
        canvas_.Text({x + line_, y}, "Parking, name and radius", plain);
        canvas_.Line({x - line_ * 0.5, y + line_ * 1.3}, {x + line_ * 0.5, y + line_ * 1.3},
                     {.Color = Active, .Width = line_ / 6});
        canvas_.Text({x + line_, y + line_ * 1.3}, "Threshold of the active runway", plain);
        std::string note = "True north up, headings magnetic. Not for real navigation.";
        if (layout_.LeftOut > 0)
            note += fmt::format(" Not drawn: {} paths or spots off the map.", layout_.LeftOut);
        canvas_.Text({left_ + line_, bottom_ - line_}, note, plain);
    }

    void DrawScale(DrawingPoint start) {
        double feet = 500;
        for (const double longer : {1000.0, 2000.0, 5000.0, 10000.0}) {
            if (longer < width_ * 0.4) feet = longer;
        }
        constexpr int Parts = 4;
        const double thickness = line_ * 0.35;
        for (int i = 0; i < Parts; ++i) {
            canvas_.Box(start + DrawingPoint{feet * i / Parts, -thickness / 2}, feet / Parts, thickness,
                        i % 2 == 0 ? Ink : RunwayPaint, {.Color = Ink, .Width = line_ / 20});
        }
        canvas_.Text(start + DrawingPoint{0, line_ * 0.9}, "0", {.Size = line_ * 0.7, .Anchor = "start"});
        canvas_.Text(start + DrawingPoint{feet, line_ * 0.9},
                     fmt::format("{:.0f} ft ({:.0f} m)", feet, feet * 0.3048),
                     {.Size = line_ * 0.7, .Anchor = "end"});
    }

    const Airport& airport_;
    std::optional<std::int16_t> variation_;
    DiagramLayout layout_;
    SvgCanvas canvas_;
    DrawingBounds detail_;
    double detailWidth_ = 0;  // 0: no larger view
    double margin_, mapWidth_, mapHeight_, mapTop_, width_, left_, line_, top_, bottom_;
};

}  // namespace

std::string DrawAirport(const Airport& airport, std::optional<std::int16_t> variation) {
    return DiagramPage(airport, variation).Draw();
}

}  // namespace corvenna

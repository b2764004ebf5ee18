#include "practice/practice_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

#include "airspace/fixes.h"
#include "practice/flight_phrases.h"
#include "station/geometry.h"
#include "station/text.h"
#include "world/svg_canvas.h"

namespace corvenna {

namespace {

constexpr std::string_view Ground = "#f7f6ef";
constexpr std::string_view Ink = "#1c1c1c";
constexpr std::string_view Faint = "#c9c6b8";
constexpr std::string_view Pavement = "#b9bdc4";
constexpr std::string_view Runway = "#3d434b";
constexpr std::string_view FixColor = "#7a1fa2";

struct ServiceColor {
    ServiceHeard On;
    std::string_view Color;
    std::string_view Name;
};
constexpr ServiceColor Colors[] = {
    {ServiceHeard::None, "#8a8a8a", "no frequency"}, {ServiceHeard::Ground, "#9a6b1f", "Ground"},
    {ServiceHeard::Tower, "#c62828", "Tower"},       {ServiceHeard::Departure, "#2e8b57", "Departure"},
    {ServiceHeard::Approach, "#1565c0", "Approach"}, {ServiceHeard::Artcc, "#e08600", "ARTCC"},
    {ServiceHeard::Advisory, "#00838f", "CTAF"},
};

const ServiceColor& ColorOf(ServiceHeard on) {
    return *std::find_if(std::begin(Colors), std::end(Colors), [&](const auto& row) { return row.On == on; });
}

constexpr std::string_view VectorsWords = "expect vectors";
constexpr std::string_view MenuBegins = "Choose one of the following options";
constexpr double UnitsPerMile = 100;
constexpr double LeastMiles = 1.2;     // from the airport's middle to the frame
constexpr double PictureHeight = 900;  // pixels
constexpr double SameFixMiles = 0.5;
constexpr std::chrono::seconds LongestGap{60};  // between two spots of a track that belong together

/// What a text says besides its menu.
std::string_view Instructions(std::string_view text) { return Trim(text.substr(0, text.find(MenuBegins))); }

/// A drawing in hundredths of a nautical mile around the airport.
class PracticeDrawing {
  public:
    PracticeDrawing(const Station& station, const PracticeLog& log)
        : station_(station), log_(log), chart_(station), middle_(chart_.Middle()) {
        CollectFixes();
        FindFrame();
    }

    std::string Draw() {
        canvas_.Box({left_, top_}, width_, height_, Ground, {.Color = Ground, .Width = 0});
        DrawRings();
        DrawAirport();
        for (const auto& [name, pilot] : log_.Pilots()) DrawTrack(pilot);
        for (const GeoPoint& fix : fixes_) DrawFix(fix);
        DrawMarks();
        DrawNumbers();
        DrawInset(DrawMargin());
        return canvas_.Document({left_, top_}, width_, height_, PictureHeight / height_, Title());
    }

  private:
    DrawingPoint At(Place place) const {
        const double course = CourseTo(middle_, place) * (std::numbers::pi / 180);
        const double units = MilesBetween(middle_, place) * UnitsPerMile;
        return {units * std::sin(course), -units * std::cos(course)};
    }
    DrawingPoint At(const AircraftState& where) const { return At(where.Where()); }
    DrawingPoint At(const GeoPoint& fix) const { return At(Place{fix.Latitude, fix.Longitude}); }

    // ---- What is to be seen

    void CollectFixes() {
        for (const auto& [name, pilot] : log_.Pilots()) {
            for (const PilotLog::Heard& heard : pilot.Texts) {
                if (heard.Text.find(VectorsWords) == std::string::npos) continue;
                for (const GeoPoint& fix : FixesAssignedAt(station_, heard.Where)) AddFix(fix);
            }
        }
    }

    void AddFix(const GeoPoint& fix) {
        const bool known = std::any_of(fixes_.begin(), fixes_.end(), [&](const GeoPoint& other) {
            return MilesBetween({fix.Latitude, fix.Longitude}, {other.Latitude, other.Longitude}) <
                   SameFixMiles;
        });
        if (!known) fixes_.push_back(fix);
    }

    /// All tracks and fixes, with room beside them.
    void FindFrame() {
        DrawingPoint least{-LeastMiles * UnitsPerMile, -LeastMiles * UnitsPerMile};
        DrawingPoint most{LeastMiles * UnitsPerMile, LeastMiles * UnitsPerMile};
        const auto include = [&](DrawingPoint p) {
            least = {std::min(least.X, p.X), std::min(least.Y, p.Y)};
            most = {std::max(most.X, p.X), std::max(most.Y, p.Y)};
        };
        for (const auto& [name, pilot] : log_.Pilots()) {
            for (const PilotLog::Spot& spot : pilot.Track) include(At(spot.Where));
        }
        for (const GeoPoint& fix : fixes_) include(At(fix));
        const double side = std::max(most.X - least.X, most.Y - least.Y) * 1.14;
        mapLeft_ = (least.X + most.X - side) / 2;
        top_ = (least.Y + most.Y - side) / 2;
        map_ = side;
        letter_ = side / 62;
        left_ = mapLeft_;
        height_ = side;
        width_ = side * 1.62;
    }

    bool IsSeen(DrawingPoint p) const {
        return p.X > mapLeft_ && p.X < mapLeft_ + map_ && p.Y > top_ && p.Y < top_ + map_;
    }

    // ---- The map

    void DrawRings() {
        const double miles = RingMiles();
        for (int ring = 1; ring * miles * UnitsPerMile < map_ * 1.5; ++ring) {
            const double radius = ring * miles * UnitsPerMile;
            canvas_.Circle({0, 0}, radius, "none", {.Color = Faint, .Width = letter_ / 14});
            const DrawingPoint place{0, -radius};
            if (IsSeen(place)) {
                canvas_.Text(place, fmt::format("{:g} nm", ring * miles),
                             {.Size = letter_ * 0.8, .Color = "#8d8a7c"});
            }
        }
    }

    double RingMiles() const {
        for (const double miles : {0.5, 1.0, 2.0, 5.0, 10.0, 20.0}) {
            if (map_ / UnitsPerMile / miles < 10) return miles;
        }
        return 50;
    }

    void DrawAirport() {
        for (const TaxiPath& path : station_.AirportTaxiPaths) DrawTaxiway(path);
        const DrawingPoint threshold = At(chart_.Threshold());
        const DrawingPoint end = At(chart_.FromRunway({chart_.RunwayMiles(), 0}));
        canvas_.Line(threshold, At(chart_.FromRunway({-CentrelineMiles, 0})),
                     {.Color = Runway, .Width = letter_ / 12, .Dashes = Dashes()});
        canvas_.Line(threshold, end, {.Color = Runway, .Width = std::max(letter_ / 3, 4.0)});
        canvas_.Text({threshold.X + letter_, threshold.Y + letter_}, station_.ActiveRunway,
                     {.Size = letter_ * 0.9, .Anchor = "start", .Bold = true});
    }

    void DrawTaxiway(const TaxiPath& path) {
        constexpr std::int32_t TieOfASpot = 2;
        const auto& points = station_.AirportTaxiPoints;
        const auto start = static_cast<std::size_t>(path.StartPoint);
        const auto end = static_cast<std::size_t>(path.EndPoint);
        if (path.Kind == TieOfASpot || start == end || start >= points.size() || end >= points.size()) return;
        canvas_.Line(At(Place{points[start].Latitude, points[start].Longitude}),
                     At(Place{points[end].Latitude, points[end].Longitude}),
                     {.Color = Pavement, .Width = TaxiwayUnits, .RoundEnds = true});
    }

    std::string Dashes() const { return fmt::format("{0:.0f} {0:.0f}", letter_ / 2); }

    void DrawTrack(const PilotLog& pilot) {
        for (std::size_t i = 1; i < pilot.Track.size(); ++i) {
            const PilotLog::Spot& from = pilot.Track[i - 1];
            const PilotLog::Spot& to = pilot.Track[i];
            if (to.Time - from.Time > LongestGap) continue;
            canvas_.Line(At(from.Where), At(to.Where),
                         {.Color = ColorOf(from.On).Color, .Width = letter_ / 5, .RoundEnds = true});
        }
        if (pilot.Track.empty()) return;
        const DrawingPoint start = At(pilot.Track.front().Where);
        canvas_.Text({start.X, start.Y - letter_}, pilot.Name, {.Size = letter_ * 0.8, .Bold = true});
    }

    void DrawFix(const GeoPoint& fix) {
        const DrawingPoint p = At(fix);
        const double r = letter_ * 0.55;
        const DrawingPoint corners[] = {{p.X, p.Y - r}, {p.X + r, p.Y + r * 0.8}, {p.X - r, p.Y + r * 0.8}};
        canvas_.Polygon(corners, FixColor);
        canvas_.Text({p.X + r * 1.6, p.Y}, fix.Name.substr(0, fix.Name.find(" - ")),
                     {.Size = letter_ * 0.8, .Color = FixColor, .Anchor = "start"});
    }

    static bool IsInstructed(const PilotLog& pilot) {
        return std::any_of(pilot.Texts.begin(), pilot.Texts.end(),
                           [](const auto& heard) { return !ReadInstructions(heard.Text).empty(); });
    }

    void DrawMarks() {
        for (const auto& [name, pilot] : log_.Pilots()) {
            for (const PilotLog::Heard& heard : pilot.Texts) {
                canvas_.Circle(At(heard.Where), letter_ * 0.2, Ink, {.Color = Ground, .Width = letter_ / 20});
            }
        }
    }

    /// Only where one pilot was alone: of many they would cover each other. Of one they stand side by side.
    void DrawNumbers() {
        const auto& pilots = log_.Pilots();
        const auto alone = std::find_if(pilots.begin(), pilots.end(),
                                        [](const auto& entry) { return IsInstructed(entry.second); });
        if (alone == pilots.end() || std::any_of(std::next(alone), pilots.end(), [](const auto& entry) {
                return IsInstructed(entry.second);
            })) {
            return;
        }
        std::vector<DrawingPoint> placed;
        for (const PilotLog::Heard& heard : alone->second.Texts) {
            if (ReadInstructions(heard.Text).empty()) continue;
            numbered_.push_back(&heard);
            DrawingPoint place = At(heard.Where);
            while (std::any_of(placed.begin(), placed.end(), [&](DrawingPoint other) {
                return std::hypot(place.X - other.X, place.Y - other.Y) < letter_ * 1.3;
            })) {
                place.X += letter_ * 0.4;
            }
            placed.push_back(place);
            canvas_.Circle(place, letter_ * 0.62, "#ffffff", {.Color = Ink, .Width = letter_ / 12});
            canvas_.Text(place, fmt::format("{}", numbered_.size()), {.Size = letter_ * 0.75, .Bold = true});
        }
    }

    // ---- Beside it

    std::string Title() const {
        return fmt::format("{} ({}), runway {}", station_.AirportName, station_.AirportCode,
                           station_.ActiveRunway);
    }

    /// Gives where there is room again.
    double DrawMargin() {
        const double x = mapLeft_ + map_ + letter_;
        double y = top_ + letter_ * 2;
        canvas_.Box({mapLeft_ + map_, top_}, width_ - map_, height_, "#ffffff", {.Color = Ink, .Width = 0});
        canvas_.Text({x, y}, Title(), {.Size = letter_ * 1.3, .Anchor = "start", .Bold = true});
        y += letter_ * 2.2;
        for (const ServiceColor& row : Colors) {
            canvas_.Line({x, y}, {x + letter_ * 2, y}, {.Color = row.Color, .Width = letter_ / 3});
            canvas_.Text({x + letter_ * 2.6, y}, row.Name, {.Size = letter_ * 0.9, .Anchor = "start"});
            y += letter_ * 1.3;
        }
        canvas_.Circle({x + letter_, y}, letter_ * 0.2, Ink, {.Color = Ink, .Width = 0});
        canvas_.Text({x + letter_ * 2.6, y}, "a text was heard here",
                     {.Size = letter_ * 0.9, .Anchor = "start"});
        y += letter_ * 2.2;
        for (std::size_t i = 0; i < numbered_.size() && y < top_ + height_ - letter_ * 2; ++i) {
            y = WriteInstruction(x, y, fmt::format("{}", i + 1), Instructions(numbered_[i]->Text));
        }
        return y;
    }

    /// The airport, when there is room for it and the map shows it too small.
    void DrawInset(double y) {
        const double side = std::min(width_ - map_, top_ + height_ - y) - 2 * letter_;
        const double reach = std::max(chart_.RunwayMiles() * 0.75, LeastMiles) * UnitsPerMile;
        if (side < map_ / 4 || map_ < 6 * reach) return;
        const DrawingPoint corner{mapLeft_ + width_ - side - letter_, top_ + height_ - side - letter_};
        canvas_.Box(corner, side, side, Ground, {.Color = Ink, .Width = letter_ / 10});
        const double outside = letter_;
        letter_ = 2 * reach / 30;
        canvas_.BeginInset(corner, side, side, {-reach, -reach}, 2 * reach, 2 * reach);
        DrawAirport();
        for (const auto& [name, pilot] : log_.Pilots()) DrawTrack(pilot);
        canvas_.EndInset();
        letter_ = outside;
    }

    /// In lines of so many letters; gives where the next one goes.
    double WriteInstruction(double x, double y, const std::string& number, std::string_view words) {
        const double size = letter_ * 0.8;
        const auto most =
            static_cast<std::size_t>((width_ - map_ - letter_ * 4) / TextWidth("x", size) * 1.15);
        canvas_.Text({x, y}, number, {.Size = size, .Anchor = "start", .Bold = true});
        while (!words.empty()) {
            std::size_t end = words.size() <= most ? words.size() : words.rfind(' ', most);
            if (end == std::string_view::npos || end == 0) end = std::min(words.size(), most);
            canvas_.Text({x + letter_ * 1.6, y}, words.substr(0, end), {.Size = size, .Anchor = "start"});
            words = Trim(words.substr(end));
            y += size * 1.25;
        }
        return y + size * 0.3;
    }

    static constexpr double CentrelineMiles = 10;
    static constexpr double TaxiwayUnits = 1.2;  // some 70 ft

    const Station& station_;
    const PracticeLog& log_;
    AirportChart chart_;
    Place middle_;
    std::vector<GeoPoint> fixes_;
    std::vector<const PilotLog::Heard*> numbered_;
    SvgCanvas canvas_;
    double left_ = 0, mapLeft_ = 0, top_ = 0, map_ = 0, width_ = 0, height_ = 0;
    double letter_ = 0;
};

}  // namespace

std::vector<GeoPoint> FixesAssignedAt(Station station, const AircraftState& where) {
    PlayerRecord pilot;
    pilot.Latitude = where.Latitude;
    pilot.Longitude = where.Longitude;
    pilot.Altitude = static_cast<std::int32_t>(std::lround(where.AltitudeFeet));
    ComputeSectorCentres(station);
    UpdatePilotGeometry(station, pilot);
    BuildPatternFixes(station, pilot, "");
    std::vector<GeoPoint> fixes;
    for (const GeoPoint* fix : {&station.LeftDownwindFix, &station.RightDownwindFix, &station.LeftBaseFix,
                                &station.RightBaseFix, &station.FinalFix}) {
        if (!fix->Name.empty()) fixes.push_back(*fix);
    }
    return fixes;
}

std::string DrawPractice(const Station& station, const PracticeLog& log) {
    return PracticeDrawing(station, log).Draw();
}

}  // namespace corvenna

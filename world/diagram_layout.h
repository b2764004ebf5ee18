#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "world/airport.h"
#include "world/svg_canvas.h"

/// Where the things of an airport stand on its diagram: feet from the reference position, x to the east, y
/// to the south.
namespace corvenna {

/// A runway from the threshold of the end that it is named by to its far end.
struct DiagramRunway {
    std::string Designator = {};
    std::string OtherDesignator = {};
    DrawingPoint Threshold = {};
    DrawingPoint FarEnd = {};
    double Width = 0;
    bool Main = false;
};

struct DiagramTaxiway {
    std::string Name;
    DrawingPoint From;
    DrawingPoint To;
};

struct DiagramSpot {
    std::string Name;
    DrawingPoint Centre;
    double Radius = 0;
    double Room = 0;  ///< half the distance to the next spot
};

struct DiagramTie {
    DrawingPoint Point;
    DrawingPoint Spot;
};

/// A rectangle that grows with what it is to hold.
struct DrawingBounds {
    DrawingPoint TopLeft{1e9, 1e9};
    DrawingPoint BottomRight{-1e9, -1e9};

    bool Empty() const { return TopLeft.X > BottomRight.X; }
    double Width() const { return BottomRight.X - TopLeft.X; }
    double Height() const { return BottomRight.Y - TopLeft.Y; }
    void Include(DrawingPoint place, double around);
    bool Holds(DrawingPoint place) const;
};

struct DiagramLayout {
    std::vector<DiagramRunway> Runways;
    std::vector<DiagramTaxiway> Taxiways;
    std::vector<DiagramSpot> Spots;
    std::vector<DiagramTie> Ties;
    int LeftOut = 0;  ///< paths and spots too far from the airport to be drawn, or with ends that are nowhere

    DrawingBounds All;      ///< the rectangle that holds all of it
    DrawingBounds Parking;  ///< the one that holds the spots
};

DiagramLayout LayOut(const Airport& airport, std::optional<std::int16_t> variation);

/// What tells a parking spot from its neighbours: "A 12" of "GATE A 12", "3" of "NE PARKING 3".
std::string_view SpotNumber(std::string_view name);

/// The designator at the other end of a runway: 34R for 16L.
std::string OppositeDesignator(std::string_view designator);

}  // namespace corvenna

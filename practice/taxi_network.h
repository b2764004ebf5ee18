#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "practice/motion.h"
#include "station/model.h"

namespace corvenna {

/// The taxiways of an airport as a pilot has them on his chart: points joined by named paths, and parking
/// spots tied to points. A node is a point, or behind the points a spot. Any thread.
class TaxiNetwork {
  public:
    static constexpr int None = -1;

    /// From the airport's points, paths and spots; a path to a point that isn't there is left out.
    explicit TaxiNetwork(const Station& station);

    bool Empty() const { return nodes_.empty(); }
    int PointCount() const { return pointCount_; }
    Place At(int node) const { return nodes_[static_cast<std::size_t>(node)].Where; }
    bool IsHoldingPoint(int node) const { return nodes_[static_cast<std::size_t>(node)].HoldingPoint; }

    bool IsJoined(int node) const { return !nodes_[static_cast<std::size_t>(node)].Links.empty(); }

    /// Whether a path that is no runway leads away from a point.
    bool HasTaxiway(int node) const;

    /// The nearest node that a path leads to; None in an empty network.
    int Nearest(Place place) const;

    /// The tied spot of this name, whatever its case; None when there is none.
    int Spot(std::string_view name) const;

    /// The nodes from one to another, both included; empty when no way leads there. Of all ways the one
    /// that keeps best to the named taxiways in their order: a detour is worth it, up to several times the
    /// length. Paths without a name may be used in between.
    std::vector<int> Way(int from, int to, std::span<const std::string> taxiways) const;

  private:
    struct Link {
        int To = 0;
        double Miles = 0;
        bool Runway = false;
        std::string Name;  ///< upper case; empty for many a short piece
    };
    struct Node {
        Place Where;
        bool HoldingPoint = false;
        std::string Spot;  ///< upper case
        std::vector<Link> Links;
    };

    void Join(int a, int b, bool runway, std::string_view name);

    std::vector<Node> nodes_;
    int pointCount_ = 0;
};

}  // namespace corvenna

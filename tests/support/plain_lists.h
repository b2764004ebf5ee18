#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "station/model.h"

/// The traffic's lists once more, written down step by step with loops and copies: the yardstick that the
/// lists of the product are held against.
namespace corvenna {

/// An array of Count + 1 elements.
template <class Element>
struct PlainList {
    std::vector<Element> Elements = std::vector<Element>(1);
    int Count = 0;

    void Add(const Element& element) {
        Elements[static_cast<std::size_t>(Count)] = element;
        Resize(Count + 1);
    }

    /// What stands at a place; beyond the array a blank element.
    Element At(int place) const {
        return place < static_cast<int>(Elements.size()) ? Elements[static_cast<std::size_t>(place)]
                                                         : Element{};
    }

    void Resize(int count) {
        Count = count;
        Elements.resize(static_cast<std::size_t>(Count) + 1);
    }

    /// Blanks the hits, moves what stands behind the last one (or behind the first place, without a hit) one
    /// down, shortens the array. False for an empty list, which then has its one blank element.
    template <class IsHit>
    bool Remove(IsHit isHit) {
        if (Count == 0) {
            Elements = std::vector<Element>(1);
            return false;
        }
        std::size_t remembered = 0;
        const auto count = static_cast<std::size_t>(Count);
        for (std::size_t i = 0; i < count; ++i) {
            if (isHit(Elements[i])) {
                Elements[i] = Element{};
                remembered = i;
            }
        }
        for (std::size_t i = remembered; i < count; ++i) {
            Elements[i] = Elements[i + 1];
            Elements[i + 1] = Element{};
        }
        Resize(Count - 1);
        return true;
    }

    /// The purge, with its fixed end and an index that is not held back after a removal. Each element that
    /// is looked at is offered to stays(); gone(element) is run for those that do not stay.
    template <class Stays, class Gone>
    void Purge(Stays stays, Gone gone) {
        const int end = Count;
        for (int i = 0; i < end; ++i) {
            Element looked = At(i);
            if (stays(looked)) continue;
            gone(looked);
            for (int j = i; j < Count; ++j) {
                Elements[static_cast<std::size_t>(j)] = Elements[static_cast<std::size_t>(j) + 1];
            }
            Resize(Count - 1);
        }
    }
};

/// Every element of a list of the product, the spare one included.
template <class Element>
std::vector<Element> AllOf(const SpareList<Element>& list) {
    std::vector<Element> all;
    for (std::int32_t i = 0; i <= list.Count(); ++i) all.push_back(list[i]);
    return all;
}

/// The lists that a pilot's reset touches.
struct PlainTraffic {
    PlainList<PlayerRecord> Players;
    PlainList<TaxiRouteRecord> TaxiRoutes;
    PlainList<std::string> TakeoffQueue;
    PlainList<std::string> LandingQueue;

    void Reset(PlayerRecord& pilot) {
        RemoveForEachHit(TakeoffQueue, [&](const std::string& name) { return name == pilot.Name; });
        RemoveForEachHit(LandingQueue, [&](const std::string& name) { return name == pilot.Name; });
        RemoveForEachHit(TaxiRoutes,
                         [&](const TaxiRouteRecord& route) { return route.PilotName == pilot.Name; });
        pilot.InService = 0;
        pilot.TunedFrequency = "";
        pilot.MenuText = "";
        pilot.Choice = 0;
        pilot.AdvisedTraffic = "";
        pilot.AssignedHeading = "";
        pilot.AssignedAltitude = "";
        pilot.Target.Name = "";
        pilot.Target.Kind = "";
        pilot.Target.Latitude = 0;
        pilot.Target.Longitude = 0;
        pilot.Target.Altitude = 0;
        pilot.FlightRules = 0;
        pilot.Quadrant = "";
        pilot.Phase = "";
    }

    template <class Element, class IsHit>
    static void RemoveForEachHit(PlainList<Element>& list, IsHit isHit) {
        const int end = list.Count;
        for (int i = 0; i < end; ++i) {
            if (isHit(list.At(i))) list.Remove(isHit);
        }
    }
};

}  // namespace corvenna

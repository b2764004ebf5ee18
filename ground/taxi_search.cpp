#include "ground/taxi_search.h"

namespace corvenna {

namespace {

constexpr std::int32_t None = -1;

/// The paths by the points they leave from. A path is two half links: with the number of the path doubled,
/// the one from its start to its end, and with one more than that, the way back.
///
/// What is walked and barred is the step from one point to another, which parallel paths share.
class HalfLinks {
  public:
    explicit HalfLinks(const Station& station)
        : paths_(station.AirportTaxiPaths),
          firstOf_(station.AirportTaxiPoints.size(), None),
          nextOf_(paths_.size() * 2, None),
          stepOf_(paths_.size() * 2, None) {
        // From the back, so that each point's list is in the order of the paths.
        for (std::size_t i = paths_.size(); i-- > 0;) {
            const TaxiPath& path = paths_[i];
            if (!IsWalkable(path) || !IsPlace(path.StartPoint) || !IsPlace(path.EndPoint)) continue;
            Prepend(path.EndPoint, i * 2 + 1);
            Prepend(path.StartPoint, i * 2);
        }
        NumberSteps();
    }

    const TaxiPath& PathOf(std::int32_t half) const { return paths_[static_cast<std::size_t>(half) / 2]; }
    std::int32_t FromOf(std::int32_t half) const {
        return half % 2 == 0 ? PathOf(half).StartPoint : PathOf(half).EndPoint;
    }
    std::int32_t ToOf(std::int32_t half) const { return FromOf(WayBackOf(half)); }

    std::int32_t FirstOf(std::int32_t point) const { return firstOf_[static_cast<std::size_t>(point)]; }
    std::int32_t NextOf(std::int32_t half) const { return nextOf_[static_cast<std::size_t>(half)]; }

    bool IsFree(std::int32_t half) const { return states_[StepOf(half)] == Free; }

    void Walk(std::int32_t half) {
        Change(half, 0, Walked);
        Change(WayBackOf(half), 0, Walked);
    }
    void WalkBack(std::int32_t half) {
        Change(half, Walked, Barred);
        Change(WayBackOf(half), Walked, 0);
    }

  private:
    static constexpr std::uint8_t Free = 0;
    static constexpr std::uint8_t Walked = 1;
    static constexpr std::uint8_t Barred = 2;

    static std::int32_t WayBackOf(std::int32_t half) { return half ^ 1; }

    bool IsPlace(std::int32_t point) const {
        return point >= 0 && static_cast<std::size_t>(point) < firstOf_.size();
    }

    void Prepend(std::int32_t point, std::size_t half) {
        std::int32_t& first = firstOf_[static_cast<std::size_t>(point)];
        nextOf_[half] = first;
        first = static_cast<std::int32_t>(half);
    }

    void NumberSteps() {
        struct LastStep {
            std::int32_t From = None;
            std::int32_t Step = None;
        };
        std::vector<LastStep> lastStepTo(firstOf_.size());
        std::int32_t steps = 0;
        for (std::int32_t from = 0; IsPlace(from); ++from) {
            for (std::int32_t half = FirstOf(from); half != None; half = NextOf(half)) {
                LastStep& last = lastStepTo[static_cast<std::size_t>(ToOf(half))];
                if (last.From != from) last = {from, steps++};
                stepOf_[static_cast<std::size_t>(half)] = last.Step;
            }
        }
        states_.assign(static_cast<std::size_t>(steps), Free);
    }

    std::size_t StepOf(std::int32_t half) const {
        return static_cast<std::size_t>(stepOf_[static_cast<std::size_t>(half)]);
    }

    void Change(std::int32_t half, std::uint8_t remove, std::uint8_t add) {
        std::uint8_t& state = states_[StepOf(half)];
        state = static_cast<std::uint8_t>((state & ~remove) | add);
    }

    const std::vector<TaxiPath>& paths_;
    std::vector<std::int32_t> firstOf_;
    std::vector<std::int32_t> nextOf_;
    std::vector<std::int32_t> stepOf_;
    std::vector<std::uint8_t> states_;  ///< of the steps
};

/// Where the walk goes from a point: a half link, or None at a dead end.
std::int32_t BestStep(const HalfLinks& links, std::int32_t current, bool onRunway, std::int32_t end,
                      PointDistances& toTarget) {
    std::int32_t best = None;
    std::int32_t bestKind = 0;
    std::int16_t bestFeet = 0;
    for (std::int32_t half = links.FirstOf(current); half != None; half = links.NextOf(half)) {
        if (links.ToOf(half) == end) return half;  // at sight, barred or not
        if (!links.IsFree(half)) continue;
        const std::int16_t feet = toTarget.From(links.ToOf(half));
        if (feet == PointDistances::NoPoint) continue;
        const std::int32_t kind = onRunway ? links.PathOf(half).Kind : 0;
        if (best == None || kind < bestKind || (kind == bestKind && feet < bestFeet)) {
            best = half;
            bestKind = kind;
            bestFeet = feet;
        }
    }
    return best;
}

std::vector<TaxiPath> ToLinks(const HalfLinks& links, const std::vector<std::int32_t>& walk) {
    std::vector<TaxiPath> route;
    route.reserve(walk.size() + 1);  // the spare element behind it
    for (const std::int32_t half : walk) {
        const TaxiPath& path = links.PathOf(half);
        route.push_back({path.Kind, links.FromOf(half), links.ToOf(half), path.Name});
    }
    return route;
}

}  // namespace

// As if each dead end threw the whole walk away and began again with one more step barred: up to the step
// before the barred one the new walk is the old one, because a step that was passed over makes no
// difference to a choice when it is missing. Each walking back bars a step for good, so the loop ends.
std::vector<TaxiPath> FindTaxiRoute(const Station& station, std::int32_t start, std::int32_t end,
                                    PointDistances& toTarget) {
    HalfLinks links(station);
    std::vector<std::int32_t> walk;
    std::int32_t current = start;
    do {
        const bool onRunway = !walk.empty() && links.PathOf(walk.back()).Kind == TaxiPath::Runway;
        const std::int32_t step = BestStep(links, current, onRunway, end, toTarget);
        if (step != None) {
            walk.push_back(step);
            links.Walk(step);
            current = links.ToOf(step);
        } else if (walk.empty()) {
            return {};
        } else {
            links.WalkBack(walk.back());
            current = links.FromOf(walk.back());
            walk.pop_back();
        }
    } while (walk.empty() || current != end);
    return ToLinks(links, walk);
}

}  // namespace corvenna

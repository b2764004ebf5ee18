#include "ground/ground_notes.h"

#include <any>

namespace corvenna {

RouteStamp StampOf(const SpareList<TaxiRouteRecord>& routes) { return {routes.Revision(), routes.Count()}; }

void GroundNotes::Forget() {
    RunwayScanned = false;
    SpotsScanned = false;
    OfferStamp = PictureStamp = AdvanceStamp = RouteStamp{};
    LinksPassed = false;
}

GroundNotes& NotesOfTick(Station& station) {
    auto* notes = std::any_cast<GroundNotes>(&station.GroundNotes);
    if (notes == nullptr) notes = &station.GroundNotes.emplace<GroundNotes>();
    if (!station.TickInProgress || notes->Tick != station.TicksBegun) {
        notes->Forget();
        notes->Tick = station.TicksBegun;
    }
    return *notes;
}

}  // namespace corvenna

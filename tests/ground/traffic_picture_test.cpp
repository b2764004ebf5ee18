#include "ground/traffic_picture.h"

#include <gmock/gmock.h>

#include "ground/ground_field.h"

namespace corvenna {
namespace {

// ---- Routes

TEST(RouteLinks, TheSpareElementIsNoLinkAndARouteMayLackEvenThat) {
    TaxiRouteRecord route;
    EXPECT_TRUE(LinksOf(route).empty());
    route.Links.clear();
    EXPECT_TRUE(LinksOf(route).empty());
    route.Links = {{0, 1, 2, "A"}, {0, 2, 3, "B"}, {}};
    EXPECT_EQ(LinksOf(route).size(), 2U);
    EXPECT_EQ(LinksOf(route)[1].Name, "B");
}

TEST(RouteLinks, ALinkLivesWhileNeitherOfItsPointsIsMinusOne) {
    EXPECT_TRUE(IsLive({0, 0, 0, ""}));
    EXPECT_TRUE(IsLive({0, -2, 5, ""}));
    EXPECT_FALSE(IsLive({0, -1, 5, ""}));
    EXPECT_FALSE(IsLive({0, 5, -1, ""}));
    EXPECT_FALSE(IsLive({0, -1, -1, ""}));
}

TEST(RoutePosition, IsThatOfTheRecordAtTheIndexTheSpareOneOrNone) {
    JunctionField field;
    const PlayerRecord& pilot = field.At("N1", 900, 0);
    TaxiRouteRecord& route = field.Route("N1", {1, 0});
    EXPECT_EQ(PositionOf(field.S, route).Latitude, pilot.Latitude);
    EXPECT_EQ(PositionOf(field.S, route).Longitude, pilot.Longitude);
    field.S.Players[1].Latitude = 12;
    route.PilotIndex = 1;
    EXPECT_EQ(PositionOf(field.S, route).Latitude, 12);
    for (const std::int16_t beyond : {std::int16_t{-1}, std::int16_t{2}, std::int16_t{32767}}) {
        route.PilotIndex = beyond;
        EXPECT_EQ(PositionOf(field.S, route).Latitude, 0);
        EXPECT_EQ(PositionOf(field.S, route).Longitude, 0);
    }
}

// ---- Sets

/// Makes a set of these routes out of so many.
RouteSet SetOf(std::size_t routes, std::initializer_list<std::size_t> members) {
    RouteSet set;
    set.Resize(routes);
    for (const std::size_t route : members) set.Set(route, true);
    return set;
}

TEST(RouteSets, HoldWhatIsPutInAcrossTheBordersOfWords) {
    for (const std::size_t route : {0U, 63U, 64U, 127U, 128U, 199U}) {
        RouteSet set = SetOf(200, {route});
        EXPECT_TRUE(set.HoldsAnyOutside(SetOf(200, {})));
        EXPECT_FALSE(set.HoldsAnyOutside(SetOf(200, {route})));
        EXPECT_TRUE(set.HoldsAnyOutside(SetOf(200, {(route + 1) % 200})));
        set.Set(route, false);
        EXPECT_FALSE(set.HoldsAnyOutside(SetOf(200, {})));
    }
}

TEST(RouteSets, AreEmptyOnceResized) {
    RouteSet set = SetOf(65, {0, 64});
    set.Resize(65);
    EXPECT_FALSE(set.HoldsAnyOutside(SetOf(65, {})));
}

TEST(RouteSets, AddingKeepsBothSides) {
    RouteSet set = SetOf(100, {3});
    set.Add(SetOf(100, {70}));
    EXPECT_TRUE(set.HoldsAnyOutside(SetOf(100, {3})));
    EXPECT_TRUE(set.HoldsAnyOutside(SetOf(100, {70})));
    EXPECT_FALSE(set.HoldsAnyOutside(SetOf(100, {3, 70})));
}

// ---- The picture

/// Whether one route's pilot yields to exactly these.
bool YieldsToAll(const TrafficPicture& picture, std::size_t routes, std::size_t route,
                 std::initializer_list<std::size_t> others) {
    const RouteSet expected = SetOf(routes, others);
    return !picture.YieldsTo(route).HoldsAnyOutside(expected) &&
           !expected.HoldsAnyOutside(picture.YieldsTo(route));
}

TEST(TrafficPictures, TheFartherYieldsToTheNearer) {
    JunctionField field;
    field.At("Far", 900, 0);
    field.At("Near", -300, 0);
    field.Route("Far", {1, 0});
    field.Route("Near", {2, 0});
    TrafficPicture picture;
    picture.Make(field.S);
    EXPECT_TRUE(YieldsToAll(picture, 2, 0, {1}));
    EXPECT_TRUE(YieldsToAll(picture, 2, 1, {}));
}

TEST(TrafficPictures, OfManyEachYieldsToThoseNearerFromOtherPoints) {
    JunctionField field;
    const struct {
        const char* Name;
        double East;
        std::int32_t From;
    } pilots[] = {{"N0", 100, 1}, {"N1", -200, 2}, {"N2", 300, 1}, {"N3", 400, 3}, {"N4", 400, 1}};
    for (const auto& pilot : pilots) {
        field.At(pilot.Name, pilot.East, 0);
        field.Route(pilot.Name, {pilot.From, 0});
    }
    TrafficPicture picture;
    picture.Make(field.S);
    EXPECT_TRUE(YieldsToAll(picture, 5, 0, {}));
    EXPECT_TRUE(YieldsToAll(picture, 5, 1, {0}));
    EXPECT_TRUE(YieldsToAll(picture, 5, 2, {1}));
    EXPECT_TRUE(YieldsToAll(picture, 5, 3, {0, 1, 2}));
    EXPECT_TRUE(YieldsToAll(picture, 5, 4, {1}));  // not to N3, who is as near as he is
}

TEST(TrafficPictures, ARouteDoesNotYieldToItself) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.Route("N1", {1, 0, 2, 0});  // twice into point 0, from two sides
    TrafficPicture picture;
    picture.Make(field.S);
    EXPECT_TRUE(YieldsToAll(picture, 1, 0, {}));
}

TEST(TrafficPictures, ALinkNamedAfterTheRunwayInUseIsOverIt) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.Route("N1", {1, 0, 3});
    field.Route("N1", {1, 0, 3}).Links[1].Name = "runway 16";
    TrafficPicture picture;
    picture.Make(field.S);
    EXPECT_FALSE(picture.IsOverRunway(0));
    EXPECT_TRUE(picture.IsOverRunway(1));
}

TEST(TrafficPictures, WithoutThePassedLinksItIsAsIfMadeAnew) {
    JunctionField field;
    field.At("Far", 900, 0);
    field.At("Near", -300, 0);
    field.Route("Far", {1, 0, 3}).Links[1].Name = "Runway 16";
    field.Route("Near", {2, 0, 3}).Links[0].Name = "Runway 16";
    TrafficPicture picture;
    picture.Make(field.S);
    TaxiPath& passed = field.S.TaxiRoutes[1].Links[0];
    passed.StartPoint = passed.EndPoint = -1;
    picture.DropPassedLinks(field.S);
    EXPECT_TRUE(YieldsToAll(picture, 2, 0, {}));
    EXPECT_TRUE(picture.IsOverRunway(0));
    EXPECT_FALSE(picture.IsOverRunway(1));
}

TEST(TrafficPictures, ANewPictureHasNothingOfTheOldOne) {
    JunctionField field;
    field.At("Far", 900, 0);
    field.At("Near", -300, 0);
    field.Route("Far", {1, 0}).Links[0].Name = "Runway 16";
    field.Route("Near", {2, 0});
    TrafficPicture picture;
    picture.Make(field.S);
    field.S.TaxiRoutes.Clear();
    field.Route("Far", {0, 3});
    picture.Make(field.S);
    EXPECT_TRUE(YieldsToAll(picture, 1, 0, {}));
    EXPECT_FALSE(picture.IsOverRunway(0));
}

TEST(TrafficPictures, LinksIntoMissingPointsStandTogetherAndMatterToNobody) {
    JunctionField field;
    field.At("Far", 900, 0);
    field.At("Near", -300, 0);
    for (const std::int32_t nowhere : {-2147483647 - 1, -2, 4, 2147483647}) {
        field.S.TaxiRoutes.Clear();
        field.Route("Far", {1, nowhere});
        field.Route("Near", {2, nowhere});
        TrafficPicture picture;
        picture.Make(field.S);
        EXPECT_TRUE(YieldsToAll(picture, 2, 0, {}));
        EXPECT_TRUE(YieldsToAll(picture, 2, 1, {}));
    }
}

}  // namespace
}  // namespace corvenna

#pragma once

namespace corvenna {

/// Turns offsets on an airport, metres east and north of its reference position, into degrees. Each axis is
/// projected alone (ProjectMetres) and a zero offset gives the reference position itself.
///
/// A world has millions of such points, so a short series stands in for the plain projection. Its result is
/// taken only where both must round to the same 6 decimals; in the rare other cases, far away, near the poles
/// or the 180th meridian, or close to a rounding tie, the plain projection decides.
class TaxiProjection {
  public:
    TaxiProjection() : TaxiProjection(0, 0) {}
    TaxiProjection(double latitude, double longitude);

    double LatitudeAt(double north) const;
    double LongitudeAt(double east) const;

  private:
    double latitude_;
    double longitude_;
    double secantOfLatitude_;  // 0 near the poles: no short way there
};

}  // namespace corvenna

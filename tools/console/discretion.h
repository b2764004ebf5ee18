#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "link/directplay/network.h"

namespace corvenna {

/// "private IPv4", "public IPv4" and so on: all that a report says of an address.
std::string_view KindOfAddress(std::uint32_t ip);

/// "private IPv4, port 2300", from "192.168.1.5:2300"; what is no address is "an address that can't be read".
std::string KindOfPlace(std::string_view place);

/// The last twelve digits of a GUID may be the number of somebody's network card.
std::string WithoutNode(std::string_view guid);

/// Takes out of a program's own words what other people need not know: addresses, names, the host's name.
class Discretion {
  public:
    /// A name that must not be told, of a session, a player or a computer. Empty ones are passed over.
    void Keep(std::string_view name);

    /// The text with kinds in place of addresses, and lengths in place of names and of whatever stands in
    /// quotation marks.
    std::string Told(std::string_view text) const;

  private:
    struct LongestFirst {
        bool operator()(const std::string& a, const std::string& b) const {
            return a.size() != b.size() ? a.size() > b.size() : a < b;
        }
    };
    std::set<std::string, LongestFirst> names_;
};

/// A message that came, in a few words and without anything personal: from what kind of address, what it is,
/// how long it is, and its header in hexadecimal digits with the addresses crossed out.
std::string ArrivalInWords(const directplay::Endpoint& from, bool isDatagram, directplay::ByteSpan message);

}  // namespace corvenna

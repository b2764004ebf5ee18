#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace corvenna::directplay {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// What one participant allows the others. Whoever goes beyond is cut off, with a line that says why; who
/// keeps within notices nothing of it.
struct Limits {
    // Messages that wait until the station fetches them, for each machine that sent them. Beyond it
    // unguaranteed messages are dropped; a guaranteed one costs the machine its place.
    std::size_t WaitingMessages = 16384;
    std::size_t WaitingBytes = 2 << 20;

    /// Messages of one machine, or frames of one connection, within a second.
    std::size_t MessagesPerSecond = 20000;

    // Bytes on their way to a machine that does not read them, and how long none of them moves.
    std::size_t OutboundBytes = 1 << 20;
    milliseconds OutboundStall = seconds(60);

    // What a session may consist of.
    std::size_t Machines = 1024;
    std::size_t PlayersOfMachine = 64;
    std::size_t Groups = 1024;

    // Messages that arrive before what they speak of is known.
    std::size_t EarlyMessages = 512;
    std::size_t EarlyBytes = 512 << 10;
    milliseconds EarlyAge = seconds(2);

    // Messages in pieces.
    std::size_t OpenReassemblies = 16;
    std::size_t PiecesOfMessage = 2048;
    milliseconds ReassemblyAge = seconds(15);

    // Newcomers who asked for an id and have not joined yet; answers to one who searches.
    std::size_t PendingJoins = 64;
    milliseconds PendingJoinAge = seconds(30);
    std::size_t SearchAnswersPerSecond = 5;

    // Connections that others open to us, and how long one may stay silent before its first whole frame
    // or in the middle of one.
    std::size_t InboundConnections = 1024;
    milliseconds InboundSilence = seconds(30);
};

/// How long things are waited for.
struct Timing {
    milliseconds Request = seconds(10);  ///< each answer of the host to one who joins or asks for an id
    milliseconds Forward = seconds(15);  ///< the others' word that they know the newcomer
    milliseconds Connect = seconds(5);
    milliseconds Ping = seconds(35);
    int PingsUntilDoubt = 8;
    milliseconds SearchRepeat = seconds(1);
    milliseconds SearchByStream = milliseconds(1500);  ///< when nothing answers the datagrams
    milliseconds SearchOlder = milliseconds(2500);     ///< when nothing answers the search for any game
    milliseconds ClaimRecheck = seconds(1);
    milliseconds RecentlyCreated = seconds(40);
    milliseconds NameServerRetry = seconds(1);
};

}  // namespace corvenna::directplay

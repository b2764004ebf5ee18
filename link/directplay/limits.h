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

    // What a session may consist of. The names and data of a machine's players and groups are limited so that
    // everybody's fit into the one frame that a newcomer gets.
    std::size_t Machines = 256;
    std::size_t PlayersOfMachine = 64;
    std::size_t TableBytesOfMachine = 32 << 10;
    std::size_t Groups = 1024;

    // Messages that arrive before what they speak of is known, and how many of them may come from one
    // address.
    std::size_t EarlyMessages = 512;
    std::size_t EarlyMessagesOfAddress = 256;
    std::size_t EarlyBytes = 512 << 10;
    milliseconds EarlyAge = seconds(2);

    // Messages in pieces: how many of each machine may be incomplete, and in how many pieces.
    std::size_t OpenReassemblies = 4;
    std::size_t PiecesOfMessage = 2048;
    milliseconds ReassemblyAge = seconds(15);

    // Newcomers who asked for an id and have not joined yet, altogether and at one address.
    std::size_t PendingJoins = 256;
    std::size_t PendingJoinsOfAddress = 64;
    milliseconds PendingJoinAge = seconds(30);

    // Answers to those who are not in the session: to each of them, and to how many of them.
    std::size_t SearchAnswersPerSecond = 5;
    std::size_t StrangersPerSecond = 64;

    // Connections that others open to us, the bytes of frames that they have begun, and how long one may
    // stay silent before its first whole frame or in the middle of one.
    std::size_t InboundConnections = 512;
    std::size_t InboundBytes = 32 << 20;
    milliseconds InboundSilence = seconds(30);
};

/// How long things are waited for.
struct Timing {
    milliseconds Request = seconds(10);  ///< the host's answer to one who asks for an id
    milliseconds Table = seconds(25);    ///< the name table; some hosts wait 15 s for the others' word
    milliseconds Forward = seconds(4);   ///< the others' word that they know the newcomer, who may wait 5 s
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

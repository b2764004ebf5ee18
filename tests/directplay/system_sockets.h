#pragma once

/// The sockets of the system, under the same few names everywhere.
#ifdef _WIN32
// Each of these needs those before it.
// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
// clang-format on
#else
#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <cstddef>
#include <span>

namespace corvenna::directplay {

#ifdef _WIN32
using SystemSocket = SOCKET;
using PollEntry = WSAPOLLFD;
inline constexpr SystemSocket NoSocket = INVALID_SOCKET;

inline void CloseSocket(SystemSocket socket) { closesocket(socket); }
inline int Poll(std::span<PollEntry> sockets, int patience) {
    return WSAPoll(sockets.data(), static_cast<ULONG>(sockets.size()), patience);
}
inline int SendBytes(SystemSocket socket, std::span<const std::byte> bytes) {
    return send(socket, reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()), 0);
}
inline int SendDatagram(SystemSocket socket, std::span<const std::byte> bytes, const sockaddr_in& to) {
    return sendto(socket, reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()), 0,
                  reinterpret_cast<const sockaddr*>(&to), sizeof(to));
}
inline int ReceiveBytes(SystemSocket socket, std::span<std::byte> into) {
    return recv(socket, reinterpret_cast<char*>(into.data()), static_cast<int>(into.size()), 0);
}
#else
using SystemSocket = int;
using PollEntry = pollfd;
inline constexpr SystemSocket NoSocket = -1;

inline void CloseSocket(SystemSocket socket) { close(socket); }
inline int Poll(std::span<PollEntry> sockets, int patience) {
    return poll(sockets.data(), sockets.size(), patience);
}
inline int SendBytes(SystemSocket socket, std::span<const std::byte> bytes) {
    return static_cast<int>(send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL));
}
inline int SendDatagram(SystemSocket socket, std::span<const std::byte> bytes, const sockaddr_in& to) {
    return static_cast<int>(
        sendto(socket, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof(to)));
}
inline int ReceiveBytes(SystemSocket socket, std::span<std::byte> into) {
    return static_cast<int>(recv(socket, into.data(), into.size(), 0));
}
#endif

template <class Value>
void SetSocketOption(SystemSocket socket, int option, const Value& value) {
    setsockopt(socket, SOL_SOCKET, option, reinterpret_cast<const char*>(&value), sizeof(value));
}

}  // namespace corvenna::directplay

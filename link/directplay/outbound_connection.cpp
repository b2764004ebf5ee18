#include "link/directplay/outbound_connection.h"

#include <fmt/format.h>

namespace corvenna::directplay {

namespace {

/// As many frames and bytes as one write takes along; a slow link has the time of a stall for each write.
constexpr std::size_t MaxFramesPerWrite = 64;
constexpr std::size_t MaxBytesPerWrite = 64 << 10;

asio::ip::tcp::endpoint ToAsio(const Endpoint& place) { return {asio::ip::address_v4(place.Ip), place.Port}; }

/// Comes from the address at which this participant listens: that is where the other side answers.
asio::error_code OpenAt(asio::ip::tcp::socket& socket, std::uint32_t ip) {
    asio::error_code error;
    socket.open(asio::ip::tcp::v4(), error);
    asio::error_code ignored;
    if (!error && ip != 0) socket.bind({asio::ip::address_v4(ip), 0}, ignored);
    return error;
}

std::string ConnectTrouble(const asio::error_code& error) {
    if (error == asio::error::connection_refused) return "nothing listens there (connection refused)";
    return fmt::format("no connection ({})", error.message());
}

}  // namespace

OutboundConnection::OutboundConnection(asio::io_context& io, const Endpoint& place,
                                       const SocketOptions& options, Events events)
    : place_(place), options_(options), events_(std::move(events)), io_(io), socket_(io) {}

// ---- From any thread

bool OutboundConnection::Put(SharedBytes frame) {
    const std::lock_guard lock(mutex_);
    if (ended_) return false;
    waitingBytes_ += frame->size();
    queue_.push_back(std::move(frame));
    closeWhenSent_ = false;
    Kick();
    return true;
}

void OutboundConnection::CloseWhenSent() {
    const std::lock_guard lock(mutex_);
    if (ended_) return;
    closeWhenSent_ = true;
    Kick();
}

/// Wakes the input/output thread once for all that was put in meanwhile. The mutex must be held.
void OutboundConnection::Kick() {
    if (kicked_) return;
    kicked_ = true;
    asio::post(io_, [self = shared_from_this()] {
        {
            const std::lock_guard lock(self->mutex_);
            self->kicked_ = false;
        }
        if (self->state_ == State::Idle) self->Connect();
        if (self->state_ == State::Ready && self->writing_.empty()) self->WriteNext();
        self->Check(Clock::now());
    });
}

void OutboundConnection::Abort() {
    asio::post(io_, [self = shared_from_this()] { self->Finish(End::Closed, {}); });
}

// ---- On the input/output thread

void OutboundConnection::Check(TimePoint now) {
    if (state_ == State::Ended) return;
    std::size_t waiting = 0;
    {
        const std::lock_guard lock(mutex_);
        waiting = waitingBytes_;
    }
    if (waiting > options_.Bounds.OutboundBytes) {
        return Finish(End::Stuck, fmt::format("it does not read: {} bytes wait for it", waiting));
    }
    if (state_ == State::Idle && waiting > 0) return Connect();
    if (now < deadline_) return;
    if (state_ == State::Connecting) return Finish(End::Unreachable, "no connection (timed out)");
    Finish(End::Stuck, "it has not read anything for too long");
}

/// Where this computer has no socket left, it is tried again with the next look at the deadlines: that says
/// nothing about the other side.
void OutboundConnection::Connect() {
    if (OpenAt(socket_, options_.BindIp)) return;
    state_ = State::Connecting;
    deadline_ = Clock::now() + options_.Times.Connect;
    socket_.async_connect(ToAsio(place_), [self = shared_from_this()](const asio::error_code& error) {
        if (self->state_ == State::Ended) return;
        if (error) return self->Finish(End::Unreachable, ConnectTrouble(error));
        self->state_ = State::Ready;
        self->deadline_ = TimePoint::max();
        asio::error_code ignored;
        self->socket_.set_option(asio::ip::tcp::no_delay(true), ignored);
        self->Read();
        self->WriteNext();
    });
}

void OutboundConnection::WriteNext() {
    std::vector<asio::const_buffer> buffers;
    bool close = false;
    {
        const std::lock_guard lock(mutex_);
        std::size_t bytes = 0;
        while (!queue_.empty() && writing_.size() < MaxFramesPerWrite && bytes < MaxBytesPerWrite) {
            writing_.push_back(std::move(queue_.front()));
            queue_.pop_front();
            bytes += writing_.back()->size();
            buffers.emplace_back(writing_.back()->data(), writing_.back()->size());
        }
        close = writing_.empty() && (closeWhenSent_ || peerClosed_);
        if (close) ended_ = true;
    }
    if (close) return Finish(peerClosed_ ? End::Disconnected : End::Closed, {});
    if (writing_.empty()) return;
    deadline_ = Clock::now() + options_.Bounds.OutboundStall;
    asio::async_write(socket_, buffers,
                      [self = shared_from_this()](const asio::error_code& error, std::size_t bytes) {
                          if (self->state_ == State::Ended) return;
                          if (error) return self->Finish(End::Disconnected, error.message());
                          {
                              const std::lock_guard lock(self->mutex_);
                              self->waitingBytes_ -= bytes;
                          }
                          self->writing_.clear();
                          self->deadline_ = TimePoint::max();
                          self->WriteNext();
                      });
}

/// Nobody should speak on this side; what is listened for is the end.
void OutboundConnection::Read() {
    socket_.async_read_some(asio::buffer(readBuffer_),
                            [self = shared_from_this()](const asio::error_code& error, std::size_t bytes) {
                                if (self->state_ == State::Ended) return;
                                if (!error) {
                                    self->cutter_.Append(ByteSpan(self->readBuffer_).first(bytes));
                                    self->CutFrames();
                                    return;
                                }
                                self->peerClosed_ = true;
                                if (self->writing_.empty()) self->WriteNext();
                            });
}

void OutboundConnection::CutFrames() {
    try {
        while (const auto frame = cutter_.Next()) {
            events_.OnFrame(*frame);
            if (state_ == State::Ended) return;
        }
    } catch (const WireError&) {
        return Finish(End::Disconnected, "it speaks another language");
    }
    cutter_.Compact();
    Read();
}

void OutboundConnection::Finish(End end, const std::string& why) {
    if (state_ == State::Ended) return;
    const bool connected = state_ == State::Ready;
    state_ = State::Ended;
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        queue_.clear();
    }
    asio::error_code ignored;
    if (connected && end == End::Closed) socket_.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    socket_.close(ignored);
    events_.OnEnd(*this, end, why);
}

}  // namespace corvenna::directplay

#include "link/directplay/inbound_connection.h"

#include <fmt/format.h>

namespace corvenna::directplay {

InboundConnection::InboundConnection(asio::ip::tcp::socket socket, std::uint32_t sourceIp,
                                     const SocketOptions& options, Events events)
    : socket_(std::move(socket)),
      options_(options),
      events_(std::move(events)),
      sender_{sourceIp, 0},
      lastFrame_(Clock::now()),
      lastBytes_(lastFrame_) {}

void InboundConnection::Close() {
    ended_ = true;
    asio::error_code ignored;
    socket_.close(ignored);
}

void InboundConnection::End(const std::string& flood) {
    if (ended_) return;
    Close();
    events_.OnEnd(*this, flood);
}

/// A machine that is in the session may be silent for as long as it likes, but not in the middle of a
/// frame. Before the first frame nobody knows who it is.
void InboundConnection::Check(TimePoint now) {
    const bool owesFrame = sender_.Port == 0 || cutter_.Pending() > 0;
    if (owesFrame && now - lastBytes_ > options_.Bounds.InboundSilence) End();
}

void InboundConnection::Read() {
    socket_.async_read_some(asio::buffer(readBuffer_),
                            [self = shared_from_this()](const asio::error_code& error, std::size_t bytes) {
                                if (self->ended_) return;
                                if (error) return self->End();
                                self->lastBytes_ = Clock::now();
                                self->cutter_.Append(ByteSpan(self->readBuffer_).first(bytes));
                                self->CutFrames();
                            });
}

void InboundConnection::CutFrames() {
    try {
        while (const auto frame = cutter_.Next()) {
            if (!CountAgainstRate()) return;
            lastFrame_ = lastBytes_;
            sender_.Port = SenderPort(*frame);
            events_.OnFrame(sender_.Ip, *frame);
            if (ended_) return;
        }
    } catch (const WireError&) {
        return End();  // whoever speaks another language is not heard any further
    }
    cutter_.Compact();
    Read();
}

bool InboundConnection::CountAgainstRate() {
    if (lastBytes_ - secondStart_ >= seconds(1)) {
        secondStart_ = lastBytes_;
        framesThisSecond_ = 0;
    }
    if (++framesThisSecond_ <= options_.Bounds.MessagesPerSecond) return true;
    End(fmt::format("it sent more than {} messages within a second", options_.Bounds.MessagesPerSecond));
    return false;
}

}  // namespace corvenna::directplay

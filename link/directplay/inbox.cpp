#include "link/directplay/inbox.h"

namespace corvenna::directplay {

bool Inbox::Put(Letter letter) {
    Share& share = sentBy_[letter.MachineId];
    if (share.Messages >= limits_.WaitingMessages) return false;
    if (share.Bytes + letter.Payload.size() > limits_.WaitingBytes) return false;
    ++share.Messages;
    share.Bytes += letter.Payload.size();
    ++waitingFor_[letter.To];
    letters_.push_back(std::move(letter));
    return true;
}

std::optional<Letter> Inbox::Take() {
    if (letters_.empty()) return std::nullopt;
    Letter letter = std::move(letters_.front());
    letters_.pop_front();
    Discount(letter);
    return letter;
}

std::size_t Inbox::Count(std::uint32_t playerId) const {
    const auto waiting = waitingFor_.find(playerId);
    return waiting == waitingFor_.end() ? 0 : waiting->second;
}

void Inbox::Forget(std::uint32_t playerId) {
    std::deque<Letter> kept;
    for (Letter& letter : letters_) {
        if (letter.To == playerId) {
            Discount(letter);
        } else {
            kept.push_back(std::move(letter));
        }
    }
    letters_.swap(kept);
}

void Inbox::Clear() {
    letters_.clear();
    waitingFor_.clear();
    sentBy_.clear();
}

/// Counts that reach nought are dropped: ids never come back, and would pile up.
void Inbox::Discount(const Letter& letter) {
    const auto waiting = waitingFor_.find(letter.To);
    if (--waiting->second == 0) waitingFor_.erase(waiting);
    const auto share = sentBy_.find(letter.MachineId);
    share->second.Bytes -= letter.Payload.size();
    if (--share->second.Messages == 0) sentBy_.erase(share);
}

}  // namespace corvenna::directplay

#include "practice/practice_host.h"

#include "link/fs_messages.h"

namespace corvenna {

PracticeHost::PracticeHost(std::unique_ptr<Session> session, const std::string& sessionName,
                           std::int32_t maxPlayers)
    : session_(std::move(session)) {
    SessionRecord record;
    record.SessionName = sessionName;
    record.MaxPlayers = maxPlayers;
    session_->Open(record, OpenMode::Create);
    session_->CreateGroup(std::string(RefuseParamsGroup));
    id_ = session_->CreatePlayer(std::string(PracticeHostName), "Player");
}

void PracticeHost::Step() {
    DirectPlayMessage message;
    while (session_->GetMessageCount(id_) > 0) {
        const Envelope envelope = session_->Receive(message);
        try {
            Answer(envelope.From, ReadHeader(message).Id);
        } catch (const MessageError&) {
            continue;  // not even a header
        }
    }
}

void PracticeHost::Answer(std::int32_t sender, std::int32_t messageId) {
    switch (messageId) {
        case MessageId::RequestJoinAsPlayer:
            session_->Send(id_, sender, WriteAdmission(MessageId::AdmitPlayer, sender));
            break;
        case MessageId::RequestJoinAsObserver:
            session_->Send(id_, sender, WriteAdmission(MessageId::AdmitObserver, sender));
            break;
        case MessageId::WhoAreYou:
            session_->Send(id_, sender, WriteAdmission(MessageId::AdmitObserver, id_));
            break;
        default:
            break;
    }
}

}  // namespace corvenna

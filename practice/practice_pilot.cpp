#include "practice/practice_pilot.h"

#include <algorithm>

#include "link/fs_messages.h"
#include "practice/callsign.h"
#include "station/text.h"

namespace corvenna {

namespace {

constexpr std::int32_t Everybody = 0;
constexpr std::string_view FormalName = "Player";
constexpr double MetresPerFoot = 0.3048;
constexpr std::string_view AcknowledgeLabels[] = {"Acknowledge", "Report traffic in sight"};
constexpr std::string_view SayAgainReply = "R";
constexpr std::string_view GreetingWords = "Want to use our ATC services";

/// What one tells oneself on the way to the runway when nobody else does.
constexpr std::string_view LandByYourself =
    "Enter left downwind runway . You are cleared to land on runway .";

bool IsArriving(FlightStage stage) {
    switch (stage) {
        case FlightStage::Inbound:
        case FlightStage::OnApproach:
        case FlightStage::Circuit:
        case FlightStage::Final:
        case FlightStage::GoingAround:
            return true;
        default:
            return false;
    }
}

}  // namespace

PracticePilot::PracticePilot(std::unique_ptr<Session> session, std::string sessionName,
                             std::string airportCode, PilotScript script, PilotEvents events)
    : session_(std::move(session)),
      sessionName_(std::move(sessionName)),
      airportCode_(std::move(airportCode)),
      script_(std::move(script)),
      events_(std::move(events)),
      aircraft_(script_.Start) {}

void PracticePilot::Step(std::chrono::milliseconds now) {
    if (stage_ == Stage::Gone || now < script_.ArrivesAt) return;
    if (stage_ == Stage::Waiting) {
        Join();
        stepBegan_ = lastRun_ = positionDue_ = now;
    }
    ReceiveAll(now);
    if (stage_ == Stage::Flying) {
        ForgetGone(now);
        if (flight_) {
            flight_->Move(now - lastRun_, others_);
            aircraft_ = flight_->Aircraft();
        }
        TellPosition(now);
        RunScript(now);
    }
    lastRun_ = now;
}

void PracticePilot::Say(std::string_view text) {
    if (stage_ != Stage::Flying) return;
    session_->Send(id_, Everybody, WriteChat(text));
    answered_ = true;
    if (events_.Said) events_.Said(script_.Name, text);
}

void PracticePilot::Imagine(std::string_view text) {
    if (flight_) flight_->Hear(text);
}

void PracticePilot::Leave() {
    if (stage_ == Stage::Joining || stage_ == Stage::Flying) {
        session_->DestroyPlayer(id_);
        session_->Close();
    }
    stage_ = Stage::Gone;
}

void PracticePilot::Join() {
    const auto sessions = session_->GetDPEnumSessions({});
    const auto found = std::find_if(sessions.begin(), sessions.end(),
                                    [&](const SessionRecord& s) { return s.SessionName == sessionName_; });
    if (found == sessions.end()) throw SessionError("there is no session \"" + sessionName_ + "\" to join");
    session_->Open(*found, OpenMode::Join);
    RefuseTakenName(*session_, script_.Name);
    RequestAdmission();
}

void PracticePilot::RequestAdmission() {
    id_ = session_->CreatePlayer(script_.Name, std::string(FormalName));
    stage_ = Stage::Joining;
    session_->Send(id_, Everybody, WriteEmpty(MessageId::RequestJoinAsPlayer));
}

/// The controller takes him for somebody new, wherever the flight is.
void PracticePilot::JoinAnew() {
    session_->DestroyPlayer(id_);
    HoldText({});
    unheard_ = 0;
    if (flight_) flight_->LoseService();
    RequestAdmission();
}

void PracticePilot::ReceiveAll(std::chrono::milliseconds now) {
    DirectPlayMessage message;
    while (stage_ != Stage::Gone && session_->GetMessageCount(id_) > 0) {
        const Envelope envelope = session_->Receive(message);
        try {
            Handle(envelope.From, message, now);
        } catch (const MessageError&) {
            continue;  // somebody sent less than he should have
        }
    }
}

void PracticePilot::Handle(std::int32_t sender, DirectPlayMessage& message, std::chrono::milliseconds now) {
    const MessageHeader header = ReadHeader(message);
    switch (header.Id) {
        case MessageId::AdmitPlayer:
            if (stage_ == Stage::Joining) OnAdmission(message.ReadLong(), now);
            break;
        case MessageId::RefusePlayer:
        case MessageId::Removed:
            Leave();
            break;
        case MessageId::WhoAreYou:
            session_->Send(id_, sender, WriteAdmission(MessageId::AdmitPlayer, id_));
            break;
        case MessageId::AskAircraft:
            session_->Send(id_, sender, WriteAircraft(script_.Aircraft));
            break;
        case MessageId::Chat:
            if (header.PayloadSize > 1) OnText(sender, ReadChat(message, header.PayloadSize), now);
            break;
        case MessageId::Position:
        case MessageId::PositionLong: {
            const PositionReport report = ReadPosition(message, header.Id);
            Sight(sender,
                  {{report.LatitudeDegrees(), report.LongitudeDegrees()}, report.RawAltitude / MetresPerFoot},
                  now);
            break;
        }
        default:
            break;
    }
}

void PracticePilot::OnAdmission(std::int32_t admitted, std::chrono::milliseconds now) {
    if (admitted != id_) return;
    ungreetedSince_ = now;
    EnterRefuseParamsGroup();
    stage_ = Stage::Flying;
    session_->Send(id_, Everybody, WriteAdmission(MessageId::AdmitPlayer, id_));
}

void PracticePilot::EnterRefuseParamsGroup() {
    for (const SessionMember& group : session_->GetDPEnumGroups()) {
        if (group.ShortName == RefuseParamsGroup) session_->AddPlayerToGroup(group.Id, id_);
    }
}

void PracticePilot::OnText(std::int32_t sender, std::string text, std::chrono::milliseconds now) {
    if (events_.Heard) events_.Heard(script_.Name, text);
    if (!IsAddressedTo(text, script_.Name)) return Overhear(text);
    controllerHeard_ = true;
    if (controllerId_ == 0) stepBegan_ = now;
    controllerId_ = sender;
    if (flight_) flight_->Hear(text);
    // What is said again brings nothing new; whoever is not heard at all asks on without growing patient, and
    // so does who is held: he may have been released without a word.
    const bool held = flight_ && flight_->Holding();
    silence_ = text == standingText_ && !held ? std::min(2 * silence_, LongestSilence) : Silence;
    HoldText(std::move(text));
    heardAt_ = now;
    unheard_ = 0;
    answered_ = false;
    wantsAnswer_ = false;
}

void PracticePilot::HoldText(std::string text) {
    standingText_ = std::move(text);
    standingMenu_ = ReadMenu(standingText_);
}

/// When somebody else may go on he may be next, and is not always told.
void PracticePilot::Overhear(std::string_view text) {
    if (ContainsIgnoringCase(text, GreetingWords)) controllerHeard_ = true;
    if (flight_ && flight_->Holding() && ContainsIgnoringCase(text, "Continue taxi")) silence_ = Silence;
}

// ---- What he sees

void PracticePilot::Sight(std::int32_t id, const Sighting& sighting, std::chrono::milliseconds now) {
    const auto known =
        std::find_if(seen_.begin(), seen_.end(), [&](const Seen& seen) { return seen.Id == id; });
    if (known == seen_.end()) {
        seen_.push_back({id, now});
        others_.push_back(sighting);
    } else {
        known->At = now;
        others_[static_cast<std::size_t>(known - seen_.begin())] = sighting;
    }
}

void PracticePilot::ForgetGone(std::chrono::milliseconds now) {
    for (std::size_t i = seen_.size(); i-- > 0;) {
        if (now - seen_[i].At < SightLasts) continue;
        seen_.erase(seen_.begin() + static_cast<std::ptrdiff_t>(i));
        others_.erase(others_.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

void PracticePilot::TellPosition(std::chrono::milliseconds now) {
    if (now < positionDue_) return;
    positionDue_ = now + PositionInterval;
    const AircraftState& place = shownAt_.value_or(aircraft_);
    session_->Send(
        id_, Everybody,
        WritePosition(PackPosition(place.Latitude, place.Longitude, place.AltitudeFeet, place.HeadingTrue)));
    NoticeAbsence();
}

/// A controller who has left is known by his name, which the session has no more.
void PracticePilot::NoticeAbsence() {
    if (controllerId_ == 0) return;
    try {
        session_->GetPlayerFriendlyName(controllerId_);
    } catch (const SessionError&) {
        controllerId_ = 0;
        controllerHeard_ = false;
        HoldText({});
        Say(GoingOnAlone);
        if (flight_ && IsArriving(flight_->Stage())) Imagine(LandByYourself);
        if (events_.Abandoned) events_.Abandoned(script_.Name);
    }
}

// ---- The script

bool PracticePilot::IsForgotten(std::chrono::milliseconds now) const {
    if (!standingText_.empty()) return false;
    return controllerHeard_ && now - ungreetedSince_ >= LongestUngreeted;
}

void PracticePilot::RunScript(std::chrono::milliseconds now) {
    if (IsForgotten(now)) return JoinAnew();
    if (nextStep_ == script_.Steps.size()) {
        if (!script_.Stays) Leave();
        return;
    }
    if (Acknowledge(now)) return;
    if (!std::visit([&](const auto& step) { return Done(step, now); }, script_.Steps[nextStep_])) return;
    ++nextStep_;
    stepAnswered_ = false;
    stepBegan_ = now;
}

/// An instruction is acknowledged whatever the script says next.
bool PracticePilot::Acknowledge(std::chrono::milliseconds now) {
    if (answered_ || now - heardAt_ < ThinkingTime) return false;
    if (flight_ && !flight_->ReadsBack(standingText_)) return false;
    for (const std::string_view label : AcknowledgeLabels) {
        if (const auto reply = ReplyFor(standingMenu_, label, airportCode_)) {
            Say(*reply);
            saidAt_ = now;
            wantsAnswer_ = label == AcknowledgeLabels[0] && IsFollowedByText(standingText_);
            return true;
        }
    }
    return false;
}

bool PracticePilot::Done(const Choose& step, std::chrono::milliseconds now) {
    return AnswerTaken(ReplyFor(standingMenu_, step.Label, airportCode_), now);
}

bool PracticePilot::Done(const AskAgain& /*step*/, std::chrono::milliseconds now) {
    return AnswerTaken(standingText_.empty() ? std::nullopt : std::optional<std::string>(SayAgainReply), now);
}

bool PracticePilot::Done(const Fly& step, std::chrono::milliseconds now) {
    if (!flight_) flight_.emplace(step.Chart, step.Plan, aircraft_);
    AnswerInFlight(now);
    if (!flight_->IsOver()) return false;
    flight_.reset();
    return true;
}

void PracticePilot::AnswerInFlight(std::chrono::milliseconds now) {
    if (flight_->StartsOver() && controllerId_ != 0) return StartOver(now);
    if (!answered_ && now - heardAt_ >= ThinkingTime) {
        for (const std::string& label : flight_->WantedLabels()) {
            const auto reply = ReplyFor(standingMenu_, label, airportCode_);
            if (!reply) continue;
            Say(*reply);
            saidAt_ = now;
            wantsAnswer_ = true;
            return flight_->Picked(label);
        }
    }
    const bool listens = flight_->IsExpecting() || (answered_ && wantsAnswer_);
    if (listens && !standingText_.empty() && now - std::max(heardAt_, saidAt_) >= silence_) AskForRepeat(now);
}

void PracticePilot::AskForRepeat(std::chrono::milliseconds now) {
    if (unheard_ == MostUnheard) return JoinAnew();
    Say(RepeatOfOpening().value_or(std::string(SayAgainReply)));
    saidAt_ = now;
    ++unheard_;
}

/// Closes the service to be greeted again; where even that is not heard, he joins anew.
void PracticePilot::StartOver(std::chrono::milliseconds now) {
    if (flight_->StartsOverSince() >= ClosingTime) {
        return JoinAnew();
    }
    if (now - std::max(heardAt_, saidAt_) < ClosingInterval) return;
    Say(ReplyFor(standingMenu_, "Close ATC Services", airportCode_).value_or(std::string(SayAgainReply)));
    saidAt_ = now;
}

/// Who is not under service yet can't ask for a repeat: he says his answer again.
std::optional<std::string> PracticePilot::RepeatOfOpening() const {
    for (const std::string& label : flight_->WantedLabels()) {
        auto reply = ReplyFor(standingMenu_, label, airportCode_);
        if (reply && reply->starts_with(airportCode_)) return reply;
    }
    return std::nullopt;
}

/// Types the reply once he has had time to think, and is done when he hears the next text. A controller who
/// has not come yet is waited for.
bool PracticePilot::AnswerTaken(const std::optional<std::string>& reply, std::chrono::milliseconds now) {
    if (controllerId_ == 0) return false;
    if (now - stepBegan_ >= Patience) return true;
    if (stepAnswered_) return !answered_;
    if (!answered_ && reply && now - heardAt_ >= ThinkingTime) {
        Say(*reply);
        stepAnswered_ = true;
    }
    return false;
}

}  // namespace corvenna

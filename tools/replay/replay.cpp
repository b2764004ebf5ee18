#include "tools/replay/replay.h"

#include <fmt/format.h>

#include <exception>
#include <limits>
#include <ostream>

#include "link/fs_messages.h"
#include "world/files.h"
#include "world/magnetic_table.h"

namespace corvenna {

namespace {

std::string ToHex(std::span<const std::byte> bytes) {
    std::string hex;
    hex.reserve(bytes.size() * 2);
    for (const std::byte byte : bytes)
        fmt::format_to(std::back_inserter(hex), "{:02x}", std::to_integer<int>(byte));
    return hex;
}

/// The characters of a chat that the station wrote; nothing for other messages.
std::optional<std::string> ChatText(std::span<const std::byte> bytes) {
    DirectPlayMessage message(bytes);
    const MessageHeader header = ReadHeader(message);
    if (header.Id != MessageId::Chat) return std::nullopt;
    std::string text;
    for (std::int32_t i = 0; i < header.PayloadSize / 2; ++i)
        text.push_back(static_cast<char>(message.ReadByte()));
    return text;
}

}  // namespace

void Replay::Select(const std::filesystem::path& appFolder, const std::string& label) {
    if (const auto box = PrepareStation(TheStation, BytesOf(Folder / appFolder), label)) selected_ = box;
}

void Replay::LoadVariation(const std::filesystem::path& file) {
    LoadMagVar(BytesOf(Folder / file), TheStation);
}

void Replay::Open(std::int32_t controllerId, const std::string& controllerName, std::int32_t maxPlayers) {
    window_.reset();
    ReleaseSessionObjects(objects_);
    SessionRecord record;
    record.SessionName = "Replay";
    record.MaxPlayers = std::numeric_limits<std::int32_t>::max();
    room_ = network_.AddRoom(record);
    room_->OnSend = [this](std::int32_t /*from*/, std::int32_t to, std::span<const std::byte> bytes) {
        WriteSend(to, bytes);
    };

    objects_.MakeRoot = [this] { return std::make_unique<MemoryRoot>(network_); };
    CreateSessionObjects(objects_);
    objects_.Dp->Open(room_->Record(), OpenMode::Join);
    room_->NumberNextPlayer(controllerId);
    TheStation.ControllerId = objects_.Dp->CreatePlayer(controllerName, "Player");
    TheStation.SessionMaxPlayers = maxPlayers;

    StationWindowEvents events;
    events.Closed = [this] { Write("closed", true); };
    window_ = std::make_unique<StationWindow>(TheStation, objects_, *this, std::move(events));
    window_->Load();
}

void Replay::Enter(std::int32_t id, const std::string& name) {
    if (room_) room_->Enter(id, name);
}

void Replay::Leave(std::int32_t id) {
    if (room_) room_->Leave(id);
}

void Replay::Rename(std::int32_t id, const std::string& name) {
    if (room_) room_->Rename(id, name);
}

void Replay::Post(std::int32_t from, std::span<const std::byte> bytes) {
    if (room_) room_->Post(from, TheStation.ControllerId, bytes);
}

template <class Body>
void Replay::RunHandler(std::string_view handler, Body body) {
    if (!window_ || !window_->Loaded()) return;
    try {
        body();
    } catch (const std::exception& error) {
        WriteFailed(handler, error.what());
    }
}

void Replay::Pump() {
    RunHandler("pump", [this] {
        if (const auto failure = window_->RunConnectionTimer()) WriteFailed("pump", *failure);
    });
}

void Replay::Tick() {
    RunHandler("tick", [this] { window_->RunAtcTimer(); });
}

void Replay::Refresh() {
    RunHandler("refresh", [this] { window_->RunRefreshPlayers(); });
}

void Replay::Close() {
    if (window_ && window_->Loaded()) window_->Close();
}

void Replay::Dump() { Write("dump", SessionToJson(TheStation)); }

void Replay::DumpStation() {
    Json dump = StationToJson(TheStation);
    if (selected_) {
        dump["NorthLimit"] = selected_->NorthLimit;
        dump["SouthLimit"] = selected_->SouthLimit;
        dump["WestLimit"] = selected_->WestLimit;
        dump["EastLimit"] = selected_->EastLimit;
    }
    Write("station", std::move(dump));
}

void Replay::ShowBox(BoxIcon icon, std::string_view text) {
    Json box = Json::object();
    box["icon"] = icon == BoxIcon::Information ? "information" : "exclamation";
    box["text"] = Utf8FromBytes(text);
    Write("box", std::move(box));
}

void Replay::WriteSend(std::int32_t to, std::span<const std::byte> bytes) {
    Json send = Json::object();
    send["to"] = to;
    send["hex"] = ToHex(bytes);
    if (const auto text = ChatText(bytes)) send["text"] = Utf8FromBytes(*text);
    Write("send", std::move(send));
}

void Replay::WriteFailed(std::string_view handler, std::string_view what) {
    Json failed = Json::object();
    failed["handler"] = handler;
    failed["what"] = Utf8FromBytes(what);
    Write("failed", std::move(failed));
}

void Replay::Write(std::string_view kind, Json value) {
    Json line = Json::object();
    line[std::string(kind)] = std::move(value);
    // Escaped beyond ASCII, since some of those characters (U+0085) end a line for many a reader.
    constexpr int OneLine = -1;
    constexpr bool AsciiOnly = true;
    output_ << line.dump(OneLine, ' ', AsciiOnly) << '\n';
}

}  // namespace corvenna

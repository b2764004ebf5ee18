#include "tools/console/discretion.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <regex>

#include "link/directplay/wire_frame.h"
#include "link/directplay/wire_messages.h"
#include "station/text.h"

namespace corvenna {

namespace {

using namespace directplay;

struct AddressKind {
    std::uint32_t Network;
    int PrefixLength;
    std::string_view Words;
};

/// The first row that fits.
constexpr AddressKind AddressKinds[] = {
    {0x00000000, 32, "no address"},         {0xFFFFFFFF, 32, "broadcast IPv4"},
    {0x7F000000, 8, "this computer"},       {0x0A000000, 8, "private IPv4"},
    {0xAC100000, 12, "private IPv4"},       {0xC0A80000, 16, "private IPv4"},
    {0xA9FE0000, 16, "self-assigned IPv4"}, {0x64400000, 10, "provider's shared IPv4"},
    {0x00000000, 0, "public IPv4"},
};

constexpr std::string_view NameBegins = "(name of ";
constexpr std::string_view NameEnds = " characters)";

constexpr std::size_t NodeDigits = 12;

bool IsWordCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// Whether what stands at a place is a word of its own, not a part of one.
bool StandsAlone(std::string_view text, std::size_t at, std::size_t length) {
    const bool joinedBefore = at > 0 && IsWordCharacter(text[at - 1]) && IsWordCharacter(text[at]);
    const std::size_t end = at + length;
    const bool joinedBehind =
        end < text.size() && IsWordCharacter(text[end]) && IsWordCharacter(text[end - 1]);
    return !joinedBefore && !joinedBehind;
}

void ReplaceName(std::string& text, const std::string& name) {
    const std::string length = fmt::format("{}{}{}", NameBegins, name.size(), NameEnds);
    const std::string lowerName = LowerCase(name);
    for (std::size_t at = LowerCase(text).find(lowerName); at != std::string::npos;
         at = LowerCase(text).find(lowerName, at)) {
        if (!StandsAlone(text, at, name.size())) {
            ++at;
            continue;
        }
        text.replace(at, name.size(), length);
        at += length.size();
    }
}

void ReplaceQuotations(std::string& text) {
    for (std::size_t from = text.find('"'); from != std::string::npos; from = text.find('"', from)) {
        const std::size_t to = std::min(text.find('"', from + 1), text.size());
        const std::string quoted = text.substr(from + 1, to - from - 1);
        const bool isReplacedName = quoted.starts_with(NameBegins) && quoted.ends_with(NameEnds);
        const std::string words = isReplacedName ? quoted : fmt::format("({} characters)", quoted.size());
        text.replace(from, to - from + 1, words);
        from += words.size();
    }
}

void ReplaceAddresses(std::string& text) {
    static const std::regex address("[0-9]{1,3}([.][0-9]{1,3}){3}");
    std::string told;
    auto next = text.cbegin();
    for (std::sregex_iterator found(text.begin(), text.end(), address), end; found != end; ++found) {
        told.append(next, found->prefix().second);
        const auto ip = ParseIp(found->str());
        told += fmt::format("({})", ip ? KindOfAddress(*ip) : "a number");
        next = found->suffix().first;
    }
    told.append(next, text.cend());
    text = std::move(told);
}

// ---- Messages

/// Bytes of a frame's header whose content is an address, or nobody's.
constexpr std::size_t AddressAt = 8;
/// Behind the header of an answer to a search stands a record whose first fields are size, flags and the
/// session's GUID, and behind the record the place of the name.
constexpr std::size_t NodeEnd = HeaderSize + EnvelopeSize + 4 + 4 + 16;
constexpr std::size_t NodeAt = NodeEnd - NodeDigits / 2;
constexpr std::size_t ReplyHeader = HeaderSize + EnvelopeSize + SessionDescription::Size + 4;
constexpr std::size_t BytesPerLine = 32;

bool IsCrossedOut(std::size_t at, bool isReply) {
    return (at >= AddressAt && at < HeaderSize) || (isReply && at >= NodeAt && at < NodeEnd);
}

std::string HexLines(ByteSpan bytes, bool isReply) {
    std::string lines;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto value = std::to_integer<unsigned>(bytes[i]);
        lines += i % BytesPerLine == 0 ? "\n            " : " ";
        lines += value != 0 && IsCrossedOut(i, isReply) ? "xx" : fmt::format("{:02X}", value);
    }
    return lines;
}

std::string SystemMessageInWords(ByteSpan message, ByteSpan body) {
    ByteReader reader(body);
    reader.Skip(4);
    const std::uint16_t command = reader.U16();
    const std::uint16_t version = reader.U16();
    const bool isReply = command == static_cast<std::uint16_t>(Command::EnumSessionsReply);
    const std::size_t header = isReply ? ReplyHeader : HeaderSize + EnvelopeSize;
    return fmt::format("message 0x{:02X}, version {}, {} bytes{}", command, version, message.size(),
                       HexLines(message.first(std::min(header, message.size())), isReply));
}

/// Of what players send each other the number that it begins with, and no more: texts are among it.
std::string PlayerMessageInWords(ByteSpan body) {
    const ByteSpan payload = body.subspan(PlayerIdsSize);
    const std::string number =
        payload.size() < 4 ? "" : fmt::format(" {}", static_cast<std::int32_t>(ByteReader(payload).U32()));
    return fmt::format("player's message{}, {} bytes", number, payload.size());
}

std::string MessageInWords(bool isDatagram, ByteSpan message) {
    try {
        const Incoming incoming = isDatagram ? SortDatagram(message) : SortFrame(message);
        return incoming.What == Incoming::Kind::System ? SystemMessageInWords(message, incoming.Body)
                                                       : PlayerMessageInWords(incoming.Body);
    } catch (const WireError& error) {
        return fmt::format("{} bytes that can't be read: {}", message.size(), error.what());
    }
}

}  // namespace

std::string_view KindOfAddress(std::uint32_t ip) {
    const auto fits = [&](const AddressKind& kind) {
        return kind.PrefixLength == 0 || (ip ^ kind.Network) >> (32 - kind.PrefixLength) == 0;
    };
    return std::find_if(std::begin(AddressKinds), std::end(AddressKinds), fits)->Words;
}

std::string KindOfPlace(std::string_view place) {
    const auto ip = ParseIp(place.substr(0, place.find(':')));
    if (!ip) return "an address that can't be read";
    const auto colon = place.find(':');
    if (colon == std::string_view::npos) return std::string(KindOfAddress(*ip));
    return fmt::format("{}, port {}", KindOfAddress(*ip), place.substr(colon + 1));
}

std::string WithoutNode(std::string_view guid) {
    if (!ParseGuid(guid)) return "no GUID";
    return fmt::format("{}{:x>{}}}}", guid.substr(0, guid.size() - 1 - NodeDigits), "", NodeDigits);
}

void Discretion::Keep(std::string_view name) {
    if (!name.empty()) names_.emplace(name);
}

std::string Discretion::Told(std::string_view text) const {
    std::string told(text);
    for (const std::string& name : names_) ReplaceName(told, name);
    ReplaceQuotations(told);
    ReplaceAddresses(told);
    return told;
}

std::string ArrivalInWords(const Endpoint& from, bool isDatagram, ByteSpan message) {
    return fmt::format("{} from {}, port {}: {}", isDatagram ? "UDP" : "TCP", KindOfAddress(from.Ip),
                       from.Port, MessageInWords(isDatagram, message));
}

}  // namespace corvenna

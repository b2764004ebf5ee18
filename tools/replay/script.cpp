#include "tools/replay/script.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <set>

#include "link/fs_messages.h"
#include "station/fields.h"
#include "tools/replay/model_json.h"
#include "world/files.h"

namespace corvenna {

namespace {

using Action = std::function<void(Replay&)>;

/// Does something with one member of a line. What it finds wrong is told with the member's name.
template <class Body>
auto InMember(std::string_view name, Body body) {
    try {
        return body();
    } catch (const FieldError& error) {
        throw FieldError(fmt::format("\"{}\": {}", name, error.what()));
    }
}

/// The members of one line, each to be taken once. What is left over is an unknown field.
class ScriptLine {
  public:
    explicit ScriptLine(const Json& members) : members_(members) {}

    const Json* Find(const char* key) {
        taken_.insert(key);
        const auto member = members_.find(key);
        return member == members_.end() ? nullptr : &*member;
    }

    const Json& Take(const char* key) {
        if (const Json* value = Find(key)) return *value;
        throw FieldError(fmt::format("\"{}\" is missing", key));
    }

    template <class Value>
    Value Take(const char* key) {
        return Convert<Value>(key, Take(key));
    }

    template <class Value>
    Value TakeOr(const char* key, Value fallback) {
        const Json* value = Find(key);
        return value == nullptr ? fallback : Convert<Value>(key, *value);
    }

    /// The whole line, for a word that looks at its members itself.
    const Json& TakeAll() {
        for (const auto& [key, value] : members_.items()) taken_.insert(key);
        return members_;
    }

    void RequireNothingLeft() const {
        for (const auto& [key, value] : members_.items()) {
            if (!taken_.contains(key)) throw FieldError(fmt::format("\"{}\" is unknown here", key));
        }
    }

  private:
    template <class Value>
    static Value Convert(const char* key, const Json& json) {
        return InMember(key, [&json] {
            Value value{};
            FromJson(json, value);
            return value;
        });
    }

    const Json& members_;
    std::set<std::string> taken_;
};

Action PostAction(std::int32_t from, const DirectPlayMessage& message) {
    return [from, message](Replay& replay) { replay.Post(from, message.Bytes()); };
}

std::vector<std::byte> BytesFromHex(const std::string& hex) {
    const auto digit = [](char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        throw FieldError("\"hex\": pairs of hexadecimal digits are expected");
    };
    if (hex.size() % 2 != 0) throw FieldError("\"hex\": pairs of hexadecimal digits are expected");
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        bytes.push_back(static_cast<std::byte>(digit(hex[i]) * 16 + digit(hex[i + 1])));
    }
    return bytes;
}

// ---- One function for each word of "do"

void ApplyToAirport(Station& station, const std::string& name, const Json& value) {
    if (name == "Mountains") {
        MountainsFromJson(value, station);
    } else if (name == "MagVarGrid") {
        std::int16_t everywhere = 0;
        FromJson(value, everywhere);
        std::fill(station.MagVarGrid.begin(), station.MagVarGrid.end(), everywhere);
    } else if (!SetStationField(station, name, value)) {
        throw FieldError("there is no such field of the station");
    }
}

/// Sets the fields of the airport, those not given to zero or empty, and nothing of the session.
void ApplyAirport(Station& station, const Json& members) {
    VisitStationFields(station, [](const char* /*name*/, auto& field) {
        field = {};
        if constexpr (
            requires { field.front().Latitude; } || requires { field.front().StartPoint; })
            field.resize(1);
    });
    MountainsFromJson(Json::array(), station);
    std::fill(station.MagVarGrid.begin(), station.MagVarGrid.end(), std::int16_t{0});

    for (const auto& member : members.items()) {
        if (member.key() == "do") continue;
        InMember(member.key(), [&] { ApplyToAirport(station, member.key(), member.value()); });
    }
}

Action MakeStation(ScriptLine& line) {
    const Json members = line.TakeAll();
    Station trial;
    ApplyAirport(trial, members);
    return [members](Replay& replay) { ApplyAirport(replay.TheStation, members); };
}

Action MakeSelect(ScriptLine& line) {
    const auto appFolder = line.Take<std::string>("app_folder");
    const auto label = line.Take<std::string>("label");
    return [=](Replay& replay) { replay.Select(PathOfUtf8(appFolder), label); };
}

Action MakeMagdec(ScriptLine& line) {
    const auto file = line.Take<std::string>("file");
    return [=](Replay& replay) { replay.LoadVariation(PathOfUtf8(file)); };
}

Action MakeOpen(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("controller_id");
    const auto name = line.Take<std::string>("controller_name");
    const auto maxPlayers = line.Take<std::int32_t>("max_players");
    return [=](Replay& replay) { replay.Open(id, name, maxPlayers); };
}

Action MakeEnter(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("id");
    const auto name = line.Take<std::string>("name");
    return [=](Replay& replay) { replay.Enter(id, name); };
}

Action MakeLeave(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("id");
    return [=](Replay& replay) { replay.Leave(id); };
}

Action MakeRename(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("id");
    const auto name = line.Take<std::string>("name");
    return [=](Replay& replay) { replay.Rename(id, name); };
}

Action MakeMessage(ScriptLine& line) {
    const auto from = line.Take<std::int32_t>("from");
    return PostAction(from, DirectPlayMessage(BytesFromHex(line.Take<std::string>("hex"))));
}

Action MakeAnnounce(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("id");
    const auto role = line.Take<std::string>("role");
    if (role != Role::Player && role != Role::Observer) {
        throw FieldError("\"role\": \"player\" or \"observer\" is expected");
    }
    return PostAction(
        id, WriteAdmission(role == Role::Player ? MessageId::AdmitPlayer : MessageId::AdmitObserver, id));
}

Action MakePosition(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("id");
    const auto latitude = line.Take<double>("lat");
    const auto longitude = line.Take<double>("lon");
    const auto altitude = line.Take<double>("alt");
    const auto heading = line.Take<double>("heading");
    return PostAction(id, WritePosition(PackPosition(latitude, longitude, altitude, heading)));
}

Action MakeAircraft(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("id");
    return PostAction(id, WriteAircraft(line.Take<std::string>("text")));
}

Action MakeChat(ScriptLine& line) {
    const auto id = line.Take<std::int32_t>("id");
    return PostAction(id, WriteChat(line.Take<std::string>("text")));
}

void SetFields(PlayerRecord& pilot, const Json& fields) {
    for (const auto& field : fields.items()) {
        InMember(field.key(), [&] {
            if (SetPlayerField(pilot, field.key(), field.value())) return;
            throw FieldError("there is no such field of a pilot");
        });
    }
}

Action MakePilot(ScriptLine& line) {
    const auto name = line.Take<std::string>("name");
    const Json fields = line.Take("set");
    if (!fields.is_object()) throw FieldError("\"set\": an object is expected");
    PlayerRecord trial;
    SetFields(trial, fields);
    return [=](Replay& replay) {
        auto& players = replay.TheStation.Players;
        const auto valid = players.Valid();
        const auto pilot =
            std::find_if(valid.begin(), valid.end(), [&](const auto& p) { return p.Name == name; });
        if (pilot == valid.end()) return;
        SetFields(*pilot, fields);
        players.MarkChanged();
    };
}

using Names = std::vector<std::string>;

std::optional<Names> TakeNames(ScriptLine& line, const char* key) {
    const Json* list = line.Find(key);
    if (list == nullptr) return std::nullopt;
    return InMember(key, [list] {
        if (!list->is_array()) throw FieldError("a list of names is expected");
        Names names;
        for (const Json& name : *list) FromJson(name, names.emplace_back());
        return names;
    });
}

void ReplaceQueue(SpareList<std::string>& queue, const std::optional<Names>& names) {
    if (!names) return;
    queue.Clear();
    for (const std::string& name : *names) queue.Add(name);
}

Action MakeQueues(ScriptLine& line) {
    const auto takeoff = TakeNames(line, "TakeoffQueue");
    const auto landing = TakeNames(line, "LandingQueue");
    return [=](Replay& replay) {
        ReplaceQueue(replay.TheStation.TakeoffQueue, takeoff);
        ReplaceQueue(replay.TheStation.LandingQueue, landing);
    };
}

Action MakeRepeated(ScriptLine& line, void (Replay::*handler)()) {
    const auto times = line.TakeOr<std::int32_t>("times", 1);
    if (times < 0) throw FieldError("\"times\": a number from 0 on is expected");
    return [=](Replay& replay) {
        for (std::int32_t i = 0; i < times; ++i) (replay.*handler)();
    };
}

Action MakePump(ScriptLine& line) { return MakeRepeated(line, &Replay::Pump); }
Action MakeTick(ScriptLine& line) { return MakeRepeated(line, &Replay::Tick); }
Action MakeRefresh(ScriptLine& line) { return MakeRepeated(line, &Replay::Refresh); }
Action MakeClose(ScriptLine& /*line*/) { return &Replay::Close; }
Action MakeDump(ScriptLine& /*line*/) { return &Replay::Dump; }
Action MakeDumpStation(ScriptLine& /*line*/) { return &Replay::DumpStation; }

struct Word {
    std::string_view Do;
    Action (*Make)(ScriptLine&);
};

constexpr Word Words[] = {
    {"station", &MakeStation},   {"select", &MakeSelect},
    {"magdec", &MakeMagdec},     {"open", &MakeOpen},
    {"enter", &MakeEnter},       {"leave", &MakeLeave},
    {"rename", &MakeRename},     {"message", &MakeMessage},
    {"announce", &MakeAnnounce}, {"position", &MakePosition},
    {"aircraft", &MakeAircraft}, {"chat", &MakeChat},
    {"pilot", &MakePilot},       {"queues", &MakeQueues},
    {"pump", &MakePump},         {"tick", &MakeTick},
    {"refresh", &MakeRefresh},   {"close", &MakeClose},
    {"dump", &MakeDump},         {"dump-station", &MakeDumpStation},
};

/// The line as JSON. The library counts lines of its own and would pass over all that follows a zero byte.
Json ParseLine(const std::string& text) {
    if (const auto zero = text.find('\0'); zero != std::string::npos) {
        throw FieldError(fmt::format("byte {}: not JSON", zero + 1));
    }
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        throw FieldError(fmt::format("byte {}: not JSON", error.byte));
    } catch (const Json::out_of_range&) {
        throw FieldError("a number is too large");
    }
}

Action ReadAction(const std::string& text) {
    const Json members = ParseLine(text);
    if (!members.is_object()) throw FieldError("a JSON object is expected");
    ScriptLine line(members);
    const auto wanted = line.Take<std::string>("do");
    for (const Word& word : Words) {
        if (word.Do != wanted) continue;
        Action action = word.Make(line);
        line.RequireNothingLeft();
        return action;
    }
    throw FieldError(fmt::format("\"do\": \"{}\" is unknown", wanted));
}

bool IsBlankOrComment(const std::string& text) {
    return text.starts_with('#') || text.find_first_not_of(" \t\r") == std::string::npos;
}

[[noreturn]] void Fail(const std::filesystem::path& file, int lineNumber, std::string_view what) {
    throw ScriptError(fmt::format("{}:{}: {}", file.string(), lineNumber, what));
}

}  // namespace

Script ReadScript(const std::filesystem::path& file) {
    std::ifstream input(file, std::ios::binary);
    if (!input || std::filesystem::is_directory(file)) {
        throw ScriptError(fmt::format("{}: cannot be opened", file.string()));
    }
    Script script{file, {}};
    std::string text;
    for (int lineNumber = 1; std::getline(input, text); ++lineNumber) {
        if (IsBlankOrComment(text)) continue;
        try {
            script.Steps.push_back({lineNumber, ReadAction(text)});
        } catch (const std::exception& error) {  // of a field, of a number that does not fit
            Fail(file, lineNumber, error.what());
        }
    }
    return script;
}

void RunScript(const Script& script, Replay& replay) {
    replay.Folder = script.File.parent_path();
    for (const ScriptStep& step : script.Steps) {
        try {
            step.Do(replay);
        } catch (const std::exception& error) {
            Fail(script.File, step.LineNumber, error.what());
        }
    }
}

}  // namespace corvenna

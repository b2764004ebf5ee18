#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "link/memory/memory_session.h"
#include "link/station_window.h"
#include "tools/replay/model_json.h"
#include "world/airport_selection.h"

namespace corvenna {

/// A whole station driven step by step, without clock and sockets. What it does is written to a stream, one
/// JSON object a line, in the order in which it happens.
class Replay final : public OperatorDesk {
  public:
    explicit Replay(std::ostream& output) : output_(output) {}

    // ---- The airport, out of files; both throw FileError

    /// Database, selection and terrain, as when the operator has chosen an airport. A label that no airport
    /// has selects nothing.
    void Select(const std::filesystem::path& appFolder, const std::string& label);
    void LoadVariation(const std::filesystem::path& file);

    // ---- The session

    /// A fresh session with the controller as its only participant, then the station window's load.
    void Open(std::int32_t controllerId, const std::string& controllerName, std::int32_t maxPlayers);
    void Enter(std::int32_t id, const std::string& name);
    void Leave(std::int32_t id);
    void Rename(std::int32_t id, const std::string& name);
    void Post(std::int32_t from, std::span<const std::byte> bytes);

    // ---- The handlers. They do nothing while no station window is open.

    void Pump();
    void Tick();
    void Refresh();
    void Close();

    // ---- Output on demand

    void Dump();
    void DumpStation();

    Station TheStation;
    std::filesystem::path Folder;  ///< where relative paths begin

  private:
    void ShowBox(BoxIcon icon, std::string_view text) override;
    void WriteSend(std::int32_t to, std::span<const std::byte> bytes);
    void WriteFailed(std::string_view handler, std::string_view what);
    void Write(std::string_view kind, Json value);

    template <class Body>
    void RunHandler(std::string_view handler, Body body);

    std::ostream& output_;
    MemoryNetwork network_;
    std::shared_ptr<MemoryRoom> room_;
    SessionObjects objects_;
    std::unique_ptr<StationWindow> window_;
    std::optional<SearchBox> selected_;  ///< of the last selection
};

}  // namespace corvenna

#pragma once

#include <QWidget>
#include <optional>
#include <string>

namespace corvenna {

/// Asks the operator for the host's name or address; empty for the local network, nothing when he gives up.
std::optional<std::string> AskForHost(QWidget* parent);

}  // namespace corvenna

#pragma once

#include <string>
#include <vector>

namespace corvenna {

/// The drives of this computer that have letters, as a list shows them, in the order of the letters: "c:"
/// with the name behind a blank if there is one, "c: [Games]" for a volume's and "z: \\server\share" for that
/// of a folder on the network. Empty on systems without letters. Any thread.
std::vector<std::string> ListDrives();

}  // namespace corvenna

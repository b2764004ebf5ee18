#pragma once

#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "tools/terrain/cell_grid.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {

inline void NoProgress(std::string_view, double) {}

/// Row and column of the cell that holds a place.
inline int RowOf(double latitude) { return static_cast<int>((90 - latitude) * 12); }
inline int ColumnOf(double longitude) { return static_cast<int>((longitude + 180) * 12); }

inline int HeightAt(const CellGrid& cells, double latitude, double longitude) {
    return cells.Height(RowOf(latitude), ColumnOf(longitude));
}

/// The number of cells that any sample fell in.
inline int FilledCells(const CellGrid& cells) {
    int filled = 0;
    for (int row = 0; row < CellGrid::Rows; ++row) {
        for (int column = 0; column < CellGrid::Columns; ++column) {
            if (cells.Height(row, column) != CellGrid::NoData) ++filled;
        }
    }
    return filled;
}

/// 16-bit words as bytes.
inline std::string BigEndian(const std::vector<int>& words) {
    std::string bytes;
    for (const int word : words) {
        bytes.push_back(static_cast<char>(word >> 8 & 0xFF));
        bytes.push_back(static_cast<char>(word & 0xFF));
    }
    return bytes;
}

inline std::string LittleEndian(const std::vector<int>& words) {
    std::string bytes = BigEndian(words);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
    return bytes;
}

/// Writes a file and gives its path.
inline std::string Written(const TempFolder& folder, std::string_view name, std::string_view bytes) {
    folder.Write(name, bytes);
    return folder.Path(name);
}

inline std::string BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What a piece of work complains of, "" if of nothing.
inline std::string ErrorOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const FileError& error) {
        return error.what();
    }
    return "";
}

}  // namespace corvenna

#include "tools/terrain/ascii_grid.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

#include "station/numbers.h"
#include "station/text.h"
#include "tools/terrain/input_file.h"
#include "tools/terrain/number_text.h"
#include "tools/terrain/raw_grid.h"
#include "world/errors.h"

namespace corvenna {

namespace {

/// The words of a text file one by one, with the line that the last one stood in.
class WordReader {
  public:
    explicit WordReader(const std::string& path) : file_(path), chunk_(1 << 16) {}

    /// The next word, empty at the end of the file. Valid until the next call.
    std::string_view Next() {
        constexpr std::size_t LongestWord = 64;
        word_.clear();
        for (;;) {
            const int c = NextByte();
            if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c < 0) {
                if (!word_.empty() || c < 0) {
                    --place_;  // a line end behind the word is counted with the next one
                    return word_;
                }
                if (c == '\n') ++line_;
                continue;
            }
            word_.push_back(static_cast<char>(c));
            if (word_.size() > LongestWord) Fail(fmt::format("\"{}...\" is no number", word_));
        }
    }

    [[noreturn]] void Fail(const std::string& reason) const {
        throw FileError(file_.Path(), fmt::format("line {}: {}", line_, reason));
    }

  private:
    int NextByte() {
        if (place_ >= filled_) {
            filled_ = file_.Read(chunk_);
            place_ = 0;
        }
        return place_++ < filled_ ? static_cast<unsigned char>(chunk_[place_ - 1]) : -1;
    }

    InputFile file_;
    std::vector<char> chunk_;
    std::size_t filled_ = 0;
    std::size_t place_ = 0;
    std::string word_;
    int line_ = 1;
};

struct AsciiHeader {
    GridShape Shape;
    double Void = -9999;
    std::string FirstHeight;  // the word that ended the header
};

using HeaderWords = std::map<std::string, double, std::less<>>;

constexpr std::string_view KnownWords[] = {"ncols",     "nrows",     "xllcorner", "xllcenter",
                                           "yllcorner", "yllcenter", "cellsize",  "nodata_value"};

HeaderWords ReadHeaderWords(WordReader& words, std::string& firstHeight) {
    HeaderWords header;
    for (;;) {
        const std::string word = LowerCase(words.Next());
        if (word.empty() || ParseReal(word)) {
            firstHeight = word;
            return header;
        }
        if (std::find(std::begin(KnownWords), std::end(KnownWords), word) == std::end(KnownWords)) {
            words.Fail(fmt::format("\"{}\" is no word of an ESRI ASCII grid's header", word));
        }
        const auto value = ParseReal(words.Next());
        if (!value) words.Fail(fmt::format("no number behind {}", word));
        header[word] = *value;
    }
}

/// The lower left corner on one axis, out of the words for its corner or its centre.
double LowerEdge(const WordReader& words, const HeaderWords& header, std::string_view corner,
                 std::string_view centre, double cellSize) {
    if (const auto found = header.find(corner); found != header.end()) return found->second;
    if (const auto found = header.find(centre); found != header.end()) return found->second - cellSize / 2;
    words.Fail(fmt::format("the header has neither {} nor {}", corner, centre));
}

AsciiHeader ReadHeader(WordReader& words, const std::string& path) {
    AsciiHeader header;
    const HeaderWords found = ReadHeaderWords(words, header.FirstHeight);
    const auto needed = [&](std::string_view word) {
        const auto value = found.find(word);
        if (value == found.end()) words.Fail(fmt::format("the header has no {}", word));
        return value->second;
    };
    const auto side = [&](std::string_view word) {
        const double value = needed(word);
        if (!(value >= 1 && value <= LongestGridSide && value == std::floor(value))) {
            words.Fail(fmt::format("{} {} is not from 1 to {}", word, value, LongestGridSide));
        }
        return static_cast<int>(value);
    };
    RawGridForm form;
    form.File = path;
    form.Columns = side("ncols");
    form.Rows = side("nrows");
    const double cellSize = needed("cellsize");
    if (!(cellSize > 0)) words.Fail(fmt::format("cellsize {} is not above 0", cellSize));
    form.West = LowerEdge(words, found, "xllcorner", "xllcenter", cellSize);
    form.South = LowerEdge(words, found, "yllcorner", "yllcenter", cellSize);
    form.East = form.West + form.Columns * cellSize;
    form.North = form.South + form.Rows * cellSize;
    header.Shape = ShapeOf(form);
    if (const auto nodata = found.find("nodata_value"); nodata != found.end()) header.Void = nodata->second;
    return header;
}

std::int16_t ReadHeight(const WordReader& words, std::string_view word, double voidMark) {
    const auto height = ParseReal(word);
    if (!height) words.Fail(fmt::format("\"{}\" is no number", word));
    if (*height == voidMark) return CellGrid::NoData;
    if (!(*height > INT16_MIN && *height <= INT16_MAX)) words.Fail(fmt::format("{} is no height", word));
    return static_cast<std::int16_t>(RoundHalfEven(*height));
}

}  // namespace

void AddAsciiGrid(CellGrid& cells, const std::string& path, const Progress& progress) {
    WordReader words(path);
    const AsciiHeader header = ReadHeader(words, path);
    GridPlacing placing(cells, header.Shape);
    std::vector<std::int16_t> heights(static_cast<std::size_t>(header.Shape.Columns));
    std::string_view word = header.FirstHeight;
    for (int row = 0; row < header.Shape.Rows; ++row) {
        progress(path, static_cast<double>(row) / header.Shape.Rows);
        for (std::size_t column = 0; column < heights.size(); ++column) {
            if (word.empty()) {
                words.Fail(fmt::format("the file ends before row {} of {}, column {} of {}", row + 1,
                                       header.Shape.Rows, column + 1, header.Shape.Columns));
            }
            heights[column] = ReadHeight(words, word, header.Void);
            word = words.Next();
        }
        placing.AddRow(heights);
    }
    if (!word.empty()) {
        words.Fail(fmt::format("\"{}\" behind the last of {} rows of {} heights", word, header.Shape.Rows,
                               header.Shape.Columns));
    }
    placing.Finish();
}

}  // namespace corvenna

#pragma once
// The RAW radiograph reader behind "Read Ra&w Radiograph HighRes Image" and "Read Raw
// Radiograph MaxRes Image".  A RAW file is the scanner's text dump of detector counts:
// one line per detector line, tab-separated decimal counts along the core.  Each line
// group becomes one bitmap column (the first group at the right-hand edge) and each
// count is spread over SampleStep rows, interpolated toward the next count.

#include <cstdint>
#include <string>
#include <string_view>

#include "import/read_support.h"

namespace sedra {

class Model;
class Prompt;

// The whole reader: sets the resolution, asks for the file, remembers its folder, has
// the view reset to 100% (`resetZoom`), reads.  Result 0 on cancel or refusal; 1 on
// success and, quietly, when the chosen file cannot be opened.
ReadOutcome ReadRawRadiograph(Model& model, Prompt& prompt, bool maxRes, const ZoomReset& resetZoom = {});

// Reads the RAW file at `path` (the part of ReadRawRadiograph after the file choice).
ReadOutcome ReadRawFile(Model& model, Prompt& prompt, const std::string& path, bool maxRes);

// Parses RAW text already in memory into the current radiograph, within a memory
// ceiling (the fuzz targets keep each run small with their own).
ReadOutcome ParseRawRadiograph(Model& model, Prompt& prompt, std::string_view text, bool maxRes,
                               int64_t memoryCeiling = kImageMemoryCeiling);

}  // namespace sedra

#pragma once
// The TIFF reader behind "Read &Optical Image" and "Read &Radiograph Image".
//
// Pixels are decoded by libtiff (either byte order, any compression it supports,
// strips or tiles; radiographs of 8 or 16 bits per sample).  The reader turns them into
// display orientation in the current section's descriptor: optical images with the
// longer side along the core, reduced to at most 8192 rows, their odd last row and
// column dropped; radiographs always turned a quarter anticlockwise and freed of the
// scanner's 32768 offset.  Contrast and display bits of a radiograph are the caller's
// (images/load.h), which also runs the whole menu command.

#include <cstddef>
#include <cstdint>
#include <string>

#include "import/read_support.h"

namespace sedra {

class Model;
class Prompt;

// The whole reader: asks for the file, remembers its folder, reads.  Result 0 on
// cancel or refusal; 1 on success and, quietly, when the file cannot be opened.
ReadOutcome ReadTiffImage(Model& model, Prompt& prompt, bool radiograph, bool add,
                          const RadiographPlaceChooser& choosePlace = {});

// Reads an already chosen file (its folder already remembered).
ReadOutcome ReadTiffPath(Model& model, Prompt& prompt, const std::string& path, bool radiograph, bool add,
                         const RadiographPlaceChooser& choosePlace = {});

// Reads a TIFF held in memory, as if it were a file called `fileTitle`, with a memory
// ceiling of its own (the fuzz targets keep each run small with it).
ReadOutcome ReadTiffMemory(Model& model, Prompt& prompt, const uint8_t* data, size_t size, bool radiograph,
                           bool add, const std::string& fileTitle, const RadiographPlaceChooser& choosePlace = {},
                           int64_t memoryCeiling = kImageMemoryCeiling);

}  // namespace sedra

#pragma once
// Helpers shared by the section readers: image capacities, buffer allocation and the
// folder bookkeeping that every read command does after the user picked a file.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/buffers.h"

namespace sedra {

class Model;
class Prompt;
struct Dib;
struct RadiographDesc;

// The most memory one image may take, whatever its file claims: its samples or source
// pixels, the display bitmap, the screen copies the drawing makes of it, and what the
// reader needs on the way (a RAW file's text, a TIFF's rows or tiles).  Every image the
// readers can keep passes: the largest optical image (8192 x 8192 after reduction) takes
// about 0.8 GB, a scanner's longest radiograph (18 000 x 2 000) about 0.4 GB.  A file
// whose header claims more is refused with the memory message before anything is
// allocated, however small the file (a compressed file can claim gigabytes).
constexpr int64_t kImageMemoryCeiling = int64_t(2) << 30;

// Bytes a loaded image of width x height pixels holds: `sourceBytes` per pixel of its
// own (2 for radiograph samples, 3 for optical pixels), the padded 24-bit display
// bitmap, and the RGB32 screen copy with its reduced copies (a third more at most).
// Saturates instead of overflowing for absurd sizes.
int64_t ImageMemory(int64_t width, int64_t height, int sourceBytes);

// Whether an image and the reader's own `workBytes` stay within `ceiling`.
bool WithinMemoryCeiling(int64_t imageBytes, int64_t workBytes, int64_t ceiling);

// What a reader did, beyond its 1/0 answer.
struct ReadOutcome {
  int Result = 0;           // 1: read (or the quiet return for a file that cannot be opened)
  bool PixelsRead = false;  // the descriptor holds new pixels
};

// Where a radiograph added to a section goes: given the section's new radiograph count,
// the place 0 .. count - 1.  Radiographs at and after that place move one place on.
using RadiographPlaceChooser = std::function<int(int count)>;

// Called by the RAW reader once the file is chosen: the view goes back to 100%.
using ZoomReset = std::function<void()>;

// Sizes `dib` for a width x height 24-bit bitmap.  The row padding is zero; the pixel
// bytes are left unwritten for the reader or conversion that fills them all.  Throws
// std::bad_alloc.
void AllocateDib(Dib& dib, int32_t width, int32_t height);

// `samples` gets room for `count` samples, unwritten: the reader fills every one.
// Throws std::bad_alloc.
void AllocateSamples(SampleBuffer& samples, size_t count);

// `bytes` gets room for `count` bytes, unwritten: for a file's text, read into it at once.
// Throws std::bad_alloc.
void AllocateBytes(ByteBuffer& bytes, size_t count);

// Stores the chosen file's folder as LastDirectory (bounded to the field).
void RememberFolder(Model& model, const std::string& chosenPath);

// Last component of a folder path; empty for a root.
std::string LastComponent(const std::string& folder);

// Subtracts the scanner's 32768 offset when every sample is above it, then sets
// MaxValue (at most 65535).  A reader may guess early whether the offset is there and
// store its samples already shifted (`shifted`); the guess is put right here, at the
// cost of one pass over the samples only when it was wrong.
void ApplyOffsetCorrection(RadiographDesc& rad, uint32_t minimum, uint32_t maximum, bool shifted = false);

// The scanner's offset taken off (or put back) in 16-bit arithmetic: flipping the top
// bit of a sample is the same as subtracting 32768 modulo 65536.
constexpr uint16_t kOffsetBit = 0x8000;

}  // namespace sedra

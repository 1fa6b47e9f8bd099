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

// The largest image a reader will build, in pixels.  Far above any scanner image
// (18 000 x 2 000 radiographs, 8192-row optical images), low enough that a file whose
// header claims something absurd is refused before any memory is touched.
constexpr int64_t kMaxImagePixels = int64_t(1) << 28;

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

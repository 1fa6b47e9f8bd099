#pragma once
// Reader of a section's document.txt: the scan conditions the scanner writes beside the
// images, tab-separated, one caption per line.

#include <string_view>

namespace sedra {

class Model;
class Prompt;

// At most this many bytes of document.txt are read; the rest is ignored.
constexpr size_t kDocumentReadLimit = 8192;

// Reads SectionFolder/document.txt into the current section.  With `warn` (and the
// ShowWarnings setting on, from the second section on) changed tube settings are
// pointed out.  Returns 1 when the file was read, 0 when it was not found (after
// telling the user and filling in a default date and section name).
int ReadSectionMetadata(Model& model, Prompt& prompt, bool warn);

// The same on text already in memory (cut to kDocumentReadLimit bytes); returns 1.
int ParseSectionMetadata(Model& model, Prompt& prompt, std::string_view text, bool warn);

}  // namespace sedra

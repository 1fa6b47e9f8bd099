#pragma once
// Edits bound to the model's fixed 8-bit text fields.  The fields hold Windows-1252
// bytes, as the scanner's software wrote them; an edit shows them decoded and gives
// back at most the field's size less its terminator.

#include <QString>
#include <cstddef>
#include <string>

class QLineEdit;

namespace sedra {

// `text` in Windows-1252, cut to `limit` characters and ended at a NUL.  A character the
// code page has no byte for becomes '?', so what is stored is always what the plot shows.
std::string ToAnsi(const QString& text, size_t limit);

// Shows a field of `size` bytes (terminator included) and limits typing to what fits.
void ShowAnsiField(QLineEdit* edit, const char* field, size_t size);
// Stores the edit's text into a field, cut at `size` - 1 bytes and terminated.
void StoreAnsiField(const QLineEdit* edit, char* field, size_t size);

}  // namespace sedra

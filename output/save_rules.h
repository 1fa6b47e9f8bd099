#pragma once
// Choosing the file for "Save I&mage" and "Print as PDF file": the save dialog's
// request, the default extension, and the overwrite question.

#include <string>

#include "model/prompt.h"

namespace sedra {

class Model;

// Filter indices of the image save dialog (1-based, as the dialog counts them).
enum ImageFilter : int { kBmpFilter = 1, kTiffFilter = 2, kJpegFilter = 3 };

// The save dialog request for "Save I&mage": title, the two filters, the current
// section's FileName as the initial name and `workingFolder` as the initial folder.
FileRequest SaveImageRequest(const Model& model, const std::string& workingFolder);

// A name without any "." gets ".bmp" (filter 1) or ".tif" (filter 2); other filters
// get nothing.  The whole chosen path is looked at, as the dialog returns it, so a
// dot in a folder name also counts.
std::string WithImageExtension(const std::string& path, int filterIndex);

// "Overwrite file <name without folder> ?"
std::string OverwriteQuestion(const std::string& path);

// Shows the save dialog until the user picks a name that does not exist yet or
// agrees to overwrite it.  A No to the overwrite question brings the dialog back.
// Returns a choice with Accepted false when the dialog is cancelled.  The path of
// an accepted choice has its default extension.
FileChoice ChooseImageFile(Prompt& prompt, const FileRequest& request);

// The current working folder, where the save dialogs start.
std::string WorkingFolder();

}  // namespace sedra

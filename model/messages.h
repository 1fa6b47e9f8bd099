#pragma once
// Every text the program shows the user in a message box, defined once.

namespace sedra::msg {

// The program's title (the main window's caption, the About box, and the version the
// information block prints after the date).
inline constexpr const char* kProgramTitle = "Sedra-PLOT-Lite - Sedra Image Presentation Software - V2.81";

// Caption used where a message box shows the system's default caption.
inline constexpr const char* kDefaultCaption = "Error";
// Caption of the two fatal settings-file messages: whom to contact.
inline constexpr const char* kSupportCaption =
    "Please contact Sedra core-lab support: +44 1632 960 417, "
    "Sedra Instruments, 14 Harbour Road, Kingsport KP4 2XY";

// Start-up and settings.
inline constexpr const char* kCouldNotOpenDefaults = "Could not open defaults file: - 'defaults.def'";
inline constexpr const char* kErrorReadingDefaults = "Error reading defaults file: - 'defaults.def'";
inline constexpr const char* kCouldNotRegisterClass = "Could not RegisterClass";
inline constexpr const char* kCouldNotCreateMainWnd = "Could not create hMainWnd";
inline constexpr const char* kCouldNotCreateImageWnd = "Could not create hImageWnd";
inline constexpr const char* kCouldNotCreateRadImageWnd = "Could not create hRadImageWnd";
inline constexpr const char* kRanOutOfMemory = "Ran out of memory";
// Told once, at start-up, when the settings files cannot be replaced; the program runs on.
inline constexpr const char* kSettingsNotSaved =
    "The settings cannot be saved in '%s': %s. The program goes on, but changes to the settings will not be kept.";

// Writing any file: why it failed, and what is left.
inline constexpr const char* kFileNotWritten =
    "The file '%s' could not be written: %s. Any earlier file of that name is unchanged.";
inline constexpr const char* kReasonDiskFull = "the disk is full";
inline constexpr const char* kReasonReadOnly = "the folder or the file is read-only";
inline constexpr const char* kReasonNoFolder = "the folder does not exist";

// New core.
inline constexpr const char* kContinueWithoutSaving = "Do you want to continue without saving changes made?";
inline constexpr const char* kClearAllSections =
    "Do you want to continue and clear all the data for all the Core Sections?";

// Zoom and number routines.
inline constexpr const char* kExpandTooSmall = "The Expand region is too small";
inline constexpr const char* kDateFormat = "The Date should be in the format dd/mm/yy";
inline constexpr const char* kDateInvalid = "This Date is invalid";

// Section metadata.
inline constexpr const char* kDocumentNotFound =
    "Warning - the file 'document.txt' containing the Core details was not found";
inline constexpr const char* kWarnVoltage = "Warning, HV has changed from previous section";
inline constexpr const char* kWarnCurrent = "Warning, Current has changed from previous section";
inline constexpr const char* kWarnExposure = "Warning, Exposure has changed from previous section";
inline constexpr const char* kWarnTube = "Warning, the Tube has changed from previous section";
inline constexpr const char* kBadStepSize =
    "The step size '%s' in 'document.txt' is not a positive number of micrometres up to 1000000; it was ignored";
inline constexpr const char* kBadCoordinate =
    "The depth '%s' in 'document.txt' is not a number of millimetres within 10 km; it was ignored";

// Whole cores: adding and removing sections and radiographs.
inline constexpr const char* kAllSectionsUsed =
    "A core holds at most 12 sections and all 12 are in use: remove a section before adding another. Nothing was read.";
inline constexpr const char* kSectionWithoutDocument =
    "The section was not added: its folder has no 'document.txt', so its place along the core is not known.";
inline constexpr const char* kSectionOverlaps =
    "The section was not added: its depth range overlaps that of section %d, already in the core.";
inline constexpr const char* kSectionWidthDiffers =
    "The section was not added: its radiograph is %d pixels wide and that of section %d is %d pixels wide.";
inline constexpr const char* kRadiographWidthDiffers =
    "The radiograph was not added: it is %d pixels wide and the section's radiographs are %d pixels wide.";

// TIFF reader.
inline constexpr const char* kOnlyThreeRadiographs = "Can only read up to 3 radiograph images";
inline constexpr const char* kNotVersion42 = "This file was not version 4.2";
inline constexpr const char* kCompressed = "Cannot read compressed files at present";
inline constexpr const char* kExpected3Samples = "Expected 3 Samples per Pixel for image file";
inline constexpr const char* kExpected1Sample = "Expected 1 Sample per Pixel for Radiograph file";
inline constexpr const char* kExpectedBits = "Expected 16 or 8 BitsPerSample for image file";
inline constexpr const char* kCouldNotAllocate = "Could not allocate memory";
inline constexpr const char* kErrorReadingTiff = "Error reading Tiff file";
inline constexpr const char* kNotGreyRadiograph =
    "This radiograph is not stored as grey levels (it has a colour palette or another colour model) and cannot be read";
inline constexpr const char* kNotRgbImage =
    "This image's colours are not stored as red, green and blue, so it cannot be read";
inline constexpr const char* kNotWholeNumberSamples =
    "This image's samples are not whole numbers of 8 or 16 bits, so it cannot be read";

// RAW reader.
inline constexpr const char* kNoNewLines = "This file did not contain New Lines";
inline constexpr const char* kNoTabs = "This file did not contain any Tabs";
inline constexpr const char* kTooLargeMaxRes =
    "This image is too large to display at maximum resolution, trying lower resolution";
inline constexpr const char* kTooLargeRaw = "This image is too large to display from a RAW file";
inline constexpr const char* kTooFewRawLines =
    "This file has %d line(s), fewer than the %d summed into each column of the image at this resolution";

// Printing.
inline constexpr const char* kNoPdfDriver = "There was no PDF Print Driver found";
inline constexpr const char* kStartDocFailed = "StartDoc failed, error:- %d\r\n";
inline constexpr const char* kStartPageFailed = "StartPage failed";
inline constexpr const char* kEndPageFailed = "EndPage failed, error:- %d\r\n";
inline constexpr const char* kEndDocFailed = "EndDoc failed, error:- %d\r\n";
inline constexpr const char* kCouldNotFinishPrinting = "Could not finish printing";
inline constexpr const char* kPreparingToPrint = "Preparing to print the requested data, please wait.....";

// Save image and clipboard.
inline constexpr const char* kCouldNotOpenDataFile = "Could not open data file";
inline constexpr const char* kGetDIBits1Failed = "GetDIBits 1 failed";
inline constexpr const char* kGetDIBitsFailed = "GetDIBits failed";
inline constexpr const char* kNoJpeg = "Can not save JPeg files at present";
inline constexpr const char* kCopiedToClipboard = "This page has been copied to the Clipboard";
inline constexpr const char* kClipboardFailed = "Failed to copy to Clipboard";
inline constexpr const char* kFileExistsCaption = "The file already exists";

// Titles and text fields.  Message texts are 8-bit, so the refused character is named
// by its Unicode number.
inline constexpr const char* kTextNotStorable =
    "The text contains a character (U+%04X) that cannot be stored in a title or text field: only the "
    "Western European letters and signs of the plot's 8-bit text can. The text was not changed.";
inline constexpr const char* kFontSizeTooLarge =
    "A font size of %d points is larger than the %d points a title or text field can have. The size stays %d.";

// Interaction.
inline constexpr const char* kSelectRegionFirst = "A region number should be selected first.";
inline constexpr const char* kNoDeletedData = "There was no deleted data in the selected area";
inline constexpr const char* kResetColours = "Reset to original colours ?";
// Section information editor: sizes no page or font could use.
inline constexpr const char* kFontSizeRange =
    "Font sizes should be between 6 and 72 points. The previous font sizes have been kept.";
inline constexpr const char* kMarginRange =
    "Printer margins should be between 0 and 100 mm. The previous margins have been kept.";

}  // namespace sedra::msg

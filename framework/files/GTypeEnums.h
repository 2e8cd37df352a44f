#pragma once

/// The kinds of data that the framework tells apart by their content or names when it makes a file.
struct GTypeEnums {
    enum Types {
        cNone = 0,    ///< not given, or not recognised
        cText,        ///< text with a byte-order mark
        cPostScript,  ///< "%!PS", also behind printer job language
        cEPS,         ///< encapsulated PostScript, also with a binary preview in front
        cPDF,         ///< "%PDF-"
        cPrinterJob,  ///< printer job language that leads to something other than PostScript
        cPNG,
        cJPEG,
        cGIF,
        cTIFF,
        cBMP,
        cZip,  ///< also every format packed as one: XPS, office documents
        cGZip,
        cDictionary,   ///< the "#BEGINDICT" text
        cPreferences,  ///< the "#BEGINPREFS" text
    };
};

#pragma once

/// The kinds of data that the framework tells apart by their content or names when it makes a file.
struct GTypeEnums {
    /// The kinds, by what stands in the data.
    enum Types {
        cNone = 0,    ///< not given, or not recognised
        cText,        ///< plain text, also with a byte-order mark
        cPostScript,  ///< "%!", also behind Ctrl-D and printer job language
        cEPS,         ///< encapsulated PostScript, also with a binary preview in front
        cPDF,         ///< "%PDF-" within the first 1024 bytes
        cPrinterJob,  ///< printer job language that leads to neither PostScript nor PDF
        cPNG,
        cJPEG,
        cGIF,
        cTIFF,
        cBMP,
        cZip,  ///< also every format packed as one but XPS: office documents
        cGZip,
        cDictionary,   ///< the "#BEGINDICT" text
        cPreferences,  ///< the "#BEGINPREFS" text
        cPCL,          ///< printer command language that no job language wraps
        cEMFSpool,     ///< a spooled job of metafile pages
        cXPS,          ///< a package whose first files are those of a fixed document
    };
};

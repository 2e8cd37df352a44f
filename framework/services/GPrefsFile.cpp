#include "framework/services/GPrefsFile.h"

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/files/GFileOpenMode.h"
#include "framework/files/GFileSystem.h"
#include "framework/services/GSideName.h"
#include "framework/streams/GFileInStream.h"
#include "framework/streams/GFileOutStream.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "framework/streams/GStreamSupport.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "framework/streams/text/GText2BinStream.h"
#include "framework/system/PSystem.h"

namespace {

constexpr int cAttempts = 10;  // while others read the file or write it, too
constexpr long cPause = 30;    // milliseconds between two
constexpr long cMode = GFileOpenMode::cWrite | GFileOpenMode::cCreate | GFileOpenMode::cStartEmpty |
                       GFileOpenMode::cWriteThrough;

bool StartsWith(const GBuffer& bytes, const GBuffer& start) {
    return bytes.GetLength() >= start.GetLength() && bytes.FindSubBuffer(start) == 0;
}

const GEncoding* EncodingOf(const GBuffer& content, const GEncoding* encoding) {
    if (StartsWith(content, "\xFF\xFE")) return GUnicodeEncoding::GetInstance();
    if (StartsWith(content, "\xEF\xBB\xBF")) return GUTF8Encoding::GetInstance();
    return encoding;
}

GBuffer ContentOf(const GEncoding* encoding, const GPrefsText::Groups& groups) {
    GBuffer content;
    if (encoding == GUnicodeEncoding::GetInstance()) content += static_cast<unsigned short>(0xFEFF);
    GMemoryOutStream bytes(content);
    GText2BinStream text(bytes, encoding);
    GPrefsText::Write(groups, text);
    return content;
}

void PutOnDisk(const GPathName& path, const GBuffer& content) {
    GFile file(path, cMode);
    if (file.Write(content) != content.GetLength()) throw GSimpleException(GExceptionID::cCouldNotWriteFile);
    file.Flush();
}

}  // namespace

bool GPrefsFile::Read(GInStream& stream, const GEncoding* encoding, GPrefsText::Groups& groups,
                      long maxLength) {
    groups.Clear();
    GBuffer content;
    try {
        GStreamSupport::GetContent(stream, content, maxLength);
    } catch (const GSimpleException& failure) {
        if (failure.GetExceptionID() != GExceptionID::cNotEnoughSpace) throw;
        return false;
    }
    GMemoryInStream bytes(content);
    GBin2TextStream text(bytes, EncodingOf(content, encoding));
    return GPrefsText::Read(text, groups);
}

bool GPrefsFile::Read(const GPathName& path, const GEncoding* encoding, GPrefsText::Groups& groups) {
    GFileInStream stream(path);
    return Read(stream, encoding, groups);
}

void GPrefsFile::Write(const GPathName& path, const GEncoding* encoding, const GPrefsText::Groups& groups) {
    const GBuffer content = ContentOf(encoding, groups);
    // One name for all who write: what is left by one that was killed is used up by the next. While one
    // has it open nobody else can open it or take it away.
    const GPathName beside = MakeSideName(path, "new");
    for (int attempt = 1;; ++attempt) {
        try {
            PutOnDisk(beside, content);
            GFileSystem::ReplaceFile(beside, path);
            return;
        } catch (const GException&) {
            if (attempt == cAttempts) {
                RunQuietly([&] { GFileSystem::RemoveFile(beside); });
                throw;
            }
        }
        PSystem::MilliSleep(cPause);
    }
}

GPathName GPrefsFile::SetAside(const GPathName& path) {
    GPathName aside = MakeSideName(path, "damaged");
    for (long number = 2; GFileSystem::FileExists(aside); ++number)
        aside = MakeSideName(path, GString("damaged ") + GString(number));
    GFileSystem::RenameFile(path, aside.GetLeaf());
    return aside;
}

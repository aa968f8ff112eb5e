// Which files are programs, or install some. The content decides: a page may name the copy as it likes.
#include "host/krt/pathinside.h"
#include "host/profile/profile.h"
#include "krt/dirs.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QtEndian>
#include <algorithm>
#include <iterator>
#include <string_view>

namespace krt {

namespace {

using std::string_view;
using namespace std::string_view_literals;

/// Programs and packages begin so. A byte order mark before "#!" does not keep a shell from running a script.
constexpr string_view Beginnings[] {
    "#!"sv, "\xef\xbb\xbf#!"sv, "\177ELF"sv, "!<arch>\ndebian"sv,
    "\xed\xab\xee\xdb"sv, // RPM
    "hsqs"sv,             // squashfs, the format of snaps
    "flatpak\0"sv, "xar!"sv,
    "\xca\xfe\xba\xbe"sv, // Java classes, and programs for several processors
    "\xfe\xed\xfa\xce"sv, "\xfe\xed\xfa\xcf"sv, "\xce\xfa\xed\xfe"sv, "\xcf\xfa\xed\xfe"sv, // Mach-O
};

/// Lines in text that says what to start or to install. Whatever stands before them is skipped by what reads it.
constexpr string_view Groups[] { "[Desktop Entry]"sv, "[KDE Desktop Entry]"sv, "[Flatpak Ref]"sv,
    "[Flatpak Repo]"sv };

/// Files in ZIP archives that can be run or installed.
constexpr string_view Members[] { "META-INF/MANIFEST.MF"sv, "AndroidManifest.xml"sv, "AppxManifest.xml"sv,
    "__main__.py"sv };
constexpr string_view MemberRecord = "PK\1\2"sv;
constexpr int MemberNameLengthAt = 28;
constexpr int MemberNameAt = 46;

constexpr string_view CompoundFile = "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"sv;
constexpr int CompoundHeaderSize = 52;
constexpr int SectorShiftAt = 30;
constexpr int DirectoryAt = 48;
constexpr int ClassAt = 80;
/// The class of Windows installers, {000c10xx-0000-0000-c000-000000000046}, without the byte that differs.
constexpr string_view InstallerClass = "\x10\x0c\0\0\0\0\0\xc0\0\0\0\0\0\0\x46"sv;

constexpr int ChunkSize = 1 << 18;
/// More than what is looked for has before and behind its beginning.
constexpr int Overlap = 512;

template <typename Texts> bool beginsWithOneOf(string_view text, const Texts& beginnings)
{
    return std::any_of(std::begin(beginnings), std::end(beginnings),
        [&](string_view beginning) { return text.starts_with(beginning); });
}

bool beginsLine(string_view text, std::size_t at)
{
    while (at > 0 && (text[at - 1] == ' ' || text[at - 1] == '\t'))
        --at;
    return at == 0 || text[at - 1] == '\n' || text[at - 1] == '\r' || text.substr(0, at) == "\xef\xbb\xbf"sv;
}

bool holdsGroup(string_view text)
{
    for (auto at = text.find('['); at != string_view::npos; at = text.find('[', at + 1)) {
        if (beginsWithOneOf(text.substr(at), Groups) && beginsLine(text, at))
            return true;
    }
    return false;
}

bool holdsProgramMember(string_view text)
{
    for (auto at = text.find(MemberRecord); at != string_view::npos; at = text.find(MemberRecord, at + 1)) {
        if (text.size() - at < MemberNameAt)
            return false;
        const auto length = qFromLittleEndian<quint16>(text.data() + at + MemberNameLengthAt);
        const string_view name = text.substr(at + MemberNameAt, length);
        const auto isSame = [&](string_view member) {
            return name.size() == member.size()
                && qstrnicmp(name.data(), member.data(), uint(name.size())) == 0;
        };
        if (std::any_of(std::begin(Members), std::end(Members), isSame))
            return true;
    }
    return false;
}

/// By the class of the root, which is the first entry of a compound file's directory.
bool isWindowsInstaller(QFile& file)
{
    const QByteArray header = file.peek(CompoundHeaderSize);
    if (header.size() < CompoundHeaderSize || !header.startsWith(CompoundFile.data()))
        return false;
    const int shift = qFromLittleEndian<quint16>(header.data() + SectorShiftAt) & 0x1f;
    const qint64 directory = (qint64(qFromLittleEndian<quint32>(header.data() + DirectoryAt)) + 1) << shift;
    QByteArray found;
    if (file.seek(directory + ClassAt + 1))
        found = file.read(int(InstallerClass.size()));
    file.seek(0);
    return string_view(found.data(), found.size()) == InstallerClass;
}

/// True as well when the file can not be read to its end.
bool mayBeProgram(QFile& file)
{
    if (isWindowsInstaller(file))
        return true;
    QByteArray text = file.read(ChunkSize);
    if (beginsWithOneOf(string_view(text.data(), text.size()), Beginnings))
        return true;
    for (QByteArray next = text; !next.isEmpty(); text = text.right(Overlap) + next) {
        const string_view view(text.data(), text.size());
        if (holdsGroup(view) || holdsProgramMember(view))
            return true;
        next = file.read(ChunkSize);
    }
    return file.error() != QFileDevice::NoError;
}

} // namespace

bool dirs::isFileFormatSafe(const QString& path)
{
    // What a page may not upload it may not copy to where it may.
    static ProfilePlaces closedToUploads;
    const auto profile = profile::current();
    const QFileInfo info(path);
    if (closedToUploads.contain(
            info.absoluteFilePath(), profile->cloud.closedToUploads, profile->cloud.openToUploads))
        return false;
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly) || mayBeProgram(file))
        return false;
    const QMimeDatabase types;
    // By the name as well: a script may have no "#!" line.
    const QMimeType found[] { types.mimeTypeForFile(info, QMimeDatabase::MatchContent),
        types.mimeTypeForFile(info, QMimeDatabase::MatchExtension) };
    const QStringList unsafe = profile->files.unsafeTypes;
    return std::none_of(unsafe.begin(), unsafe.end(), [&](const QString& type) {
        return std::any_of(
            std::begin(found), std::end(found), [&](const QMimeType& known) { return known.inherits(type); });
    });
}

} // namespace krt

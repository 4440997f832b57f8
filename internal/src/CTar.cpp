#include "CTar.h"

#include "FileSystem_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using STarHdr = CTar::STarHdr;

static_assert(sizeof(off_t) == sizeof(qint64), "Archives may have more than 2 GiB.");

constexpr qint64 kBlock = 512; // bytes of a header, and what data is padded to

static_assert(sizeof(STarHdr) == kBlock);
static_assert(offsetof(STarHdr, size) == 124 && offsetof(STarHdr, typeflag) == 156
              && offsetof(STarHdr, magic) == 257 && offsetof(STarHdr, prefix) == 345);

constexpr char kTooShort[] = QT_TRANSLATE_NOOP(
    "CTar", "ERROR : The file ist too short. Only %1 bytes read but %2 expected !");
constexpr char kNoArchive[] = QT_TRANSLATE_NOOP(
    "CTar",
    "ERROR : This is not a tar archive. Header.magic = \"%1\" but \"ustar\" was expected !");
constexpr char kNotOpen[] = QT_TRANSLATE_NOOP("CTar", "ERROR: You must open an archive first !");
constexpr char kNoIndex[]
    = QT_TRANSLATE_NOOP("CTar", "ERROR: Index %1 must be between the limits 0 and %2. !");
constexpr char kTooFewBytes[]
    = QT_TRANSLATE_NOOP("CTar", "ERROR: %1 bytes read but %2 are expected !");
constexpr char kNoMemory[] = QT_TRANSLATE_NOOP("CTar", "ERROR: There is not enough memory !");
constexpr char kNoName[]
    = QT_TRANSLATE_NOOP("CTar", "ERROR: File \"%1\" does not exist in the archive !");

QString message(const char *text)
{
    return QCoreApplication::translate("CTar", text);
}

// The text for too little memory, which may be too little for a translation, too.
QString noMemoryText() noexcept
{
    try {
        return message(kNoMemory);
    } catch (const std::bad_alloc &) {
        return QStringLiteral("ERROR: There is not enough memory !");
    }
}

// The text of a field: up to its first zero byte, or all of it.
template <int Width>
QLatin1String fieldText(const char (&field)[Width])
{
    return QLatin1String(field, static_cast<int>(qstrnlen(field, Width)));
}

// Reads an octal number without a sign, which may have blanks around it. No field is so wide that
// it could overflow.
bool readSize(const STarHdr &header, qint64 &size)
{
    const QLatin1String text = fieldText(header.size);
    const auto isBlank = [](char byte) { return QChar(QLatin1Char(byte)).isSpace(); };
    const auto isOctal = [](char byte) { return byte >= '0' && byte <= '7'; };
    const char *const begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const char *const end = std::find_if_not(begin, text.end(), isOctal);
    size = 0;
    for (const char *digit = begin; digit != end; ++digit)
        size = 8 * size + (*digit - '0');
    return begin != end && std::all_of(end, text.end(), isBlank);
}

CTarFileInfo::EType typeOf(char typeflag)
{
    switch (typeflag) {
    case '0':
    case '\0': // a regular file of writers before ustar
        return CTarFileInfo::TYPE_FILE;
    case '2':
        return CTarFileInfo::TYPE_SYMLINK;
    case '5':
        return CTarFileInfo::TYPE_DIRECTORY;
    default:
        return CTarFileInfo::TYPE_UNKNOWN;
    }
}

// Opens a file, without waiting for the writer of a pipe, as QFile does.
bool openToRead(QFile &file, const QString &fileName)
{
    // Not buffered: a buffer would be filled at each header with data that is not asked for.
    constexpr QIODevice::OpenMode kMode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    file.setFileName(fileName);
    const QByteArray name = FileSystem::nativeName(fileName);
    struct stat status;
    if (stat(name.constData(), &status) != 0 || !S_ISFIFO(status.st_mode))
        return file.open(kMode);
    const int pipe = open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    return pipe >= 0 && file.open(pipe, kMode, QFileDevice::AutoCloseHandle);
}

} // namespace

bool CTar::STarHdr::isNull() const
{
    const char *const bytes = reinterpret_cast<const char *>(this);
    return std::all_of(bytes, bytes + sizeof *this, [](char byte) { return byte == 0; });
}

CTar::CTar() : mError(QLatin1String(""))
{
}

CTar::~CTar() = default;

bool CTar::loadFile(const QString &fileName)
try {
    mFile.close();
    mNames.clear();
    mInfos.clear();
    mIndexes.clear();
    // Opening a file without a name would log what error() is to say.
    if (fileName.isEmpty())
        return fail(QStringLiteral("No file name specified"));
    if (!openToRead(mFile, fileName))
        return fail(mFile.error() == QFile::NoError ? qt_error_string(errno) : mFile.errorString());
    mFileSize = mFile.size();
    qint64 position = 0;
    bool isEnd = false;
    bool ok = true;
    while (ok && !isEnd)
        ok = readFileHeader(position, isEnd);
    return ok;
} catch (const std::bad_alloc &) {
    mNames.erase(mNames.begin() + mInfos.size(), mNames.end());
    return fail(noMemoryText());
}

bool CTar::readFileHeader(qint64 &position, bool &isEnd)
{
    if (!seek(position))
        return false;
    STarHdr header;
    const qint64 bytes = mFile.read(reinterpret_cast<char *>(&header), kBlock);
    if (bytes != kBlock)
        return fail(message(kTooShort).arg(bytes).arg(kBlock));
    if (header.isNull()) {
        isEnd = true;
        return true;
    }
    // Contract: the message shows the number of bytes in the place of what was found.
    if (std::strncmp(header.magic, "ustar", 5) != 0)
        return fail(message(kNoArchive).arg(bytes));
    CTarFileInfo info;
    if (!readSize(header, info.size))
        return false;
    info.type = typeOf(header.typeflag);
    info.name = fieldText(header.name);
    info.linkName = fieldText(header.linkname);
    info.position = position;
    position += (1 + info.size / kBlock + (info.size % kBlock != 0 ? 1 : 0)) * kBlock;
    mNames += info.name;
    mInfos += info;
    return true;
}

int CTar::index(const QString &name) const
{
    if (mIndexes.isEmpty()) {
        QHash<QString, int> indexes; // whole or none, where memory is short
        indexes.reserve(mNames.size());
        for (int i = mNames.size() - 1; i >= 0; --i)
            indexes.insert(mNames.at(i), i);
        mIndexes.swap(indexes);
    }
    return mIndexes.value(name, -1);
}

CTarFileInfo CTar::info(int index) const
{
    return mInfos.value(index);
}

bool CTar::file(int index, QByteArray &data)
try {
    if (!mFile.isOpen())
        return fail(message(kNotOpen));
    if (index < 0 || index >= count())
        return fail(message(kNoIndex).arg(index).arg(count()));
    const CTarFileInfo &info = mInfos.at(index);
    const qint64 begin = info.position + kBlock;
    // A header may promise more than there is, or than an array can hold.
    constexpr qint64 kMaxBytes = 0x7FFFFF00;
    qint64 bytes = info.size;
    if (bytes > mFileSize - begin)
        bytes = std::min(bytes, std::max(fileSize() - begin, Q_INT64_C(0)));
    bytes = std::min(bytes, kMaxBytes);
    if (!seek(begin))
        return false;
    data.reserve(static_cast<int>(bytes));
    data.resize(static_cast<int>(bytes));
    bytes = mFile.read(data.data(), bytes);
    data.truncate(static_cast<int>(std::max(bytes, Q_INT64_C(0))));
    if (data.size() != info.size)
        return fail(message(kTooFewBytes).arg(data.size()).arg(info.size));
    return true;
} catch (const std::bad_alloc &) {
    return fail(noMemoryText());
}

bool CTar::file(const QString &name, QByteArray &data)
try {
    const int found = index(name);
    // Contract: the name is not filled in.
    return found < 0 ? fail(message(kNoName)) : file(found, data);
} catch (const std::bad_alloc &) {
    return fail(noMemoryText());
}

// By the system's own call: QFile::seek() would log what fails. Without a buffer the file is read
// where the system is.
bool CTar::seek(qint64 position)
{
    return lseek(mFile.handle(), position, SEEK_SET) == position || fail(qt_error_string(errno));
}

// The present size of the archive, which may be a device.
qint64 CTar::fileSize() const
{
    const qint64 size = mFile.size();
    return size > 0 ? size : lseek(mFile.handle(), 0, SEEK_END);
}

bool CTar::fail(const QString &error)
{
    mError = error;
    return false;
}

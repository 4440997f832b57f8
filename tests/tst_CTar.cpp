#include "CTar.h"

#include "MessageRecorder.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using STarHdr = CTar::STarHdr;

namespace {

static_assert(sizeof(STarHdr) == 512 && alignof(STarHdr) == 1);
static_assert(std::is_standard_layout_v<STarHdr> && std::is_trivially_copyable_v<STarHdr>);
static_assert(offsetof(STarHdr, name) == 0 && sizeof(STarHdr::name) == 100);
static_assert(offsetof(STarHdr, mode) == 100 && sizeof(STarHdr::mode) == 8);
static_assert(offsetof(STarHdr, uid) == 108 && sizeof(STarHdr::uid) == 8);
static_assert(offsetof(STarHdr, gid) == 116 && sizeof(STarHdr::gid) == 8);
static_assert(offsetof(STarHdr, size) == 124 && sizeof(STarHdr::size) == 12);
static_assert(offsetof(STarHdr, mtime) == 136 && sizeof(STarHdr::mtime) == 12);
static_assert(offsetof(STarHdr, chksum) == 148 && sizeof(STarHdr::chksum) == 8);
static_assert(offsetof(STarHdr, typeflag) == 156 && sizeof(STarHdr::typeflag) == 1);
static_assert(offsetof(STarHdr, linkname) == 157 && sizeof(STarHdr::linkname) == 100);
static_assert(offsetof(STarHdr, magic) == 257 && sizeof(STarHdr::magic) == 6);
static_assert(offsetof(STarHdr, version) == 263 && sizeof(STarHdr::version) == 2);
static_assert(offsetof(STarHdr, uname) == 265 && sizeof(STarHdr::uname) == 32);
static_assert(offsetof(STarHdr, gname) == 297 && sizeof(STarHdr::gname) == 32);
static_assert(offsetof(STarHdr, devmajor) == 329 && sizeof(STarHdr::devmajor) == 8);
static_assert(offsetof(STarHdr, devminor) == 337 && sizeof(STarHdr::devminor) == 8);
static_assert(offsetof(STarHdr, prefix) == 345 && sizeof(STarHdr::prefix) == 155);
static_assert(offsetof(STarHdr, padding) == 500 && sizeof(STarHdr::padding) == 12);

static_assert(std::is_default_constructible_v<CTar>);
static_assert(!std::is_copy_constructible_v<CTar> && !std::is_copy_assignable_v<CTar>);
static_assert(std::is_same_v<decltype(std::declval<CTar &>().loadFile(QString())), bool>);
static_assert(std::is_same_v<decltype(std::declval<const CTar &>().error()), QString>);
static_assert(std::is_same_v<decltype(std::declval<const CTar &>().count()), int>);
static_assert(std::is_same_v<decltype(std::declval<const CTar &>().names()), QStringList>);
static_assert(std::is_same_v<decltype(std::declval<const CTar &>().index(QString())), int>);
static_assert(std::is_same_v<decltype(std::declval<const CTar &>().info(0)), CTarFileInfo>);
static_assert(std::is_same_v<decltype(std::declval<const CTar &>().infos()), QList<CTarFileInfo>>);

constexpr int kBlock = 512;
constexpr qint64 kMiB = 1048576;

const QString kNotTar
    = QStringLiteral("ERROR : This is not a tar archive. Header.magic = \"512\" but "
                     "\"ustar\" was expected !");
const QString kNotOpen = QStringLiteral("ERROR: You must open an archive first !");
const QString kNoSuchName = QStringLiteral("ERROR: File \"%1\" does not exist in the archive !");

QString tooShort(int bytes)
{
    return QStringLiteral("ERROR : The file ist too short. Only ") + QString::number(bytes)
        + QStringLiteral(" bytes read but 512 expected !");
}

QString badIndex(int index, int count)
{
    return QStringLiteral("ERROR: Index ") + QString::number(index)
        + QStringLiteral(" must be between the limits 0 and ") + QString::number(count)
        + QStringLiteral(". !");
}

QString tooFewBytes(qint64 bytes, qint64 expected)
{
    return QStringLiteral("ERROR: ") + QString::number(bytes) + QStringLiteral(" bytes read but ")
        + QString::number(expected) + QStringLiteral(" are expected !");
}

// A writer of archives from the table of the header's fields.

void put(QByteArray &block, int offset, int width, const QByteArray &bytes)
{
    QVERIFY(bytes.size() <= width);
    block.replace(offset, bytes.size(), bytes);
}

QByteArray octal(qint64 size)
{
    return QByteArray::number(size, 8).rightJustified(11, '0');
}

const QByteArray kPosixMagic("ustar\0" // and the version
                             "00",
                             8);

struct Header
{
    QByteArray name;
    QByteArray size = octal(0);
    char type = '0';
    QByteArray link = QByteArray();
    QByteArray magic = kPosixMagic;

    QByteArray bytes() const
    {
        QByteArray block(kBlock, '\0');
        put(block, 0, 100, name);
        put(block, 100, 8, "0000644");
        put(block, 108, 8, "0001750");
        put(block, 116, 8, "0001750");
        put(block, 124, 12, size);
        put(block, 136, 12, "12334567700");
        put(block, 148, 8, "0000000"); // no sum is checked
        put(block, 156, 1, QByteArray(1, type));
        put(block, 157, 100, link);
        put(block, 257, 8, magic);
        put(block, 265, 32, "drive");
        put(block, 297, 32, "drive");
        return block;
    }
};

qint64 padded(qint64 size)
{
    return (size + kBlock - 1) / kBlock * kBlock;
}

// The data with what fills up its last block.
QByteArray blocks(const QByteArray &data)
{
    return data.leftJustified(static_cast<int>(padded(data.size())), '#');
}

QByteArray member(const QByteArray &name, const QByteArray &data, char type = '0',
                  const QByteArray &link = QByteArray())
{
    return Header{name, octal(data.size()), type, link}.bytes() + blocks(data);
}

QByteArray zeros(int count = kBlock)
{
    return QByteArray(count, '\0');
}

const QByteArray kEnd = zeros(2 * kBlock);

// Bytes of which none is zero and no two neighbouring blocks are alike.
QByteArray pattern(int size)
{
    QByteArray bytes(size, ' ');
    for (int i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(1 + i % 251);
    return bytes;
}

// Writes a file into the folder and returns its path.
QString written(const QTemporaryDir &folder, const QByteArray &bytes,
                const QString &name = QStringLiteral("a.tar"))
{
    QFile file(folder.filePath(name));
    const bool isWritten
        = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
    return isWritten ? file.fileName() : QString();
}

QString text(const CTarFileInfo &info)
{
    return QStringList{QString::number(info.type), info.name, info.linkName,
                       QString::number(info.size), QString::number(info.position)}
        .join(QLatin1Char('|'));
}

QString text(int type, const QString &name, qint64 size, qint64 position,
             const QString &link = QString())
{
    return QStringList{QString::number(type), name, link, QString::number(size),
                       QString::number(position)}
        .join(QLatin1Char('|'));
}

const QString kCleared = QStringLiteral("0|||0|0");

// Everything a reader tells about its members, each of which is written as a text.
void verifyMembers(const CTar &archive, const QStringList &members)
{
    QStringList told;
    QStringList names;
    const QList<CTarFileInfo> infos = archive.infos();
    for (const CTarFileInfo &info : infos) {
        told += text(info);
        names += info.name;
        QVERIFY(!info.name.isNull() && !info.linkName.isNull());
        QCOMPARE(info.isValid(), info.type != CTarFileInfo::TYPE_UNKNOWN);
    }
    QCOMPARE(told, members);
    QCOMPARE(archive.count(), members.size());
    QCOMPARE(archive.names(), names);
    for (int i = 0; i < members.size(); ++i) {
        QCOMPARE(text(archive.info(i)), members.at(i));
        QCOMPARE(archive.index(names.at(i)), names.indexOf(names.at(i)));
    }
    for (const int index : {-1, members.size(), INT_MIN, INT_MAX}) {
        QCOMPARE(text(archive.info(index)), kCleared);
        QVERIFY(!archive.info(index).name.isNull() && !archive.info(index).linkName.isNull());
    }
}

void verifyData(CTar &archive, int index, const QByteArray &expected)
{
    QByteArray data("before");
    const QByteArray copy = data;
    QVERIFY(archive.file(index, data));
    QCOMPARE(data, expected);
    QCOMPARE(copy, QByteArray("before"));
    data = QByteArray(3000, 'x');
    QVERIFY(archive.file(archive.names().at(index), data));
    QCOMPARE(data, expected);
}

// The number of files that the process has open under a path.
int openFiles(const QString &path)
{
    int count = 0;
    const QFileInfoList links
        = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System);
    for (const QFileInfo &link : links)
        count += link.symLinkTarget() == path ? 1 : 0;
    return count;
}

// The descriptor that the process has open for a path, or -1.
int descriptor(const QString &path)
{
    const QFileInfoList links
        = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System);
    for (const QFileInfo &link : links) {
        if (link.symLinkTarget() == path)
            return link.fileName().toInt();
    }
    return -1;
}

/*
    Counts the calls of the operating system that seek and read while it lives, and lets those that
    are asked for fail. One at a time.
*/
class FileCalls
{
public:
    FileCalls() { sCurrent = this; }
    ~FileCalls() { sCurrent = nullptr; }

    // The calls as "seek POSITION" and "read BYTES".
    QStringList calls() const { return mCalls; }
    qint64 largestRead() const { return mLargestRead; }

    int failingSeek = -1; // 0 is the first
    int failingRead = -1;

    static bool lets(bool isRead, qint64 number)
    {
        if (sCurrent == nullptr)
            return true;
        FileCalls *const self = sCurrent;
        sCurrent = nullptr; // what happens here does not count
        self->mCalls += (isRead ? QStringLiteral("read ") : QStringLiteral("seek "))
            + QString::number(number);
        if (isRead)
            self->mLargestRead = qMax(self->mLargestRead, number);
        const bool isFailure
            = isRead ? self->mReads++ == self->failingRead : self->mSeeks++ == self->failingSeek;
        sCurrent = self;
        if (isFailure)
            errno = EIO;
        return !isFailure;
    }

private:
    Q_DISABLE_COPY(FileCalls)

    static FileCalls *sCurrent;

    QStringList mCalls;
    qint64 mLargestRead = 0;
    int mReads = 0;
    int mSeeks = 0;
};

FileCalls *FileCalls::sCurrent = nullptr;

// A line of what the system tells about the process, in bytes: "VmSize" is its address space,
// "VmPeak" the most that ever was.
qint64 memory(const QByteArray &title)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray status = file.readAll();
    const int begin = status.indexOf(title + ':') + title.size() + 1;
    return status.mid(begin, status.indexOf("kB", begin) - begin).trimmed().toLongLong() * 1024;
}

// Lets the address space not grow beyond a size while it lives.
class AddressSpaceLimit
{
public:
    explicit AddressSpaceLimit(qint64 bytes)
    {
        getrlimit(RLIMIT_AS, &mBefore);
        rlimit limit = mBefore;
        limit.rlim_cur = static_cast<rlim_t>(bytes);
        mIsValid = setrlimit(RLIMIT_AS, &limit) == 0;
    }
    ~AddressSpaceLimit() { setrlimit(RLIMIT_AS, &mBefore); }

    bool isValid() const { return mIsValid; }

private:
    Q_DISABLE_COPY(AddressSpaceLimit)

    rlimit mBefore{};
    bool mIsValid = false;
};

// Translates the texts of one context, and only those.
class Translator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *disambiguation,
                      int number) const override
    {
        const bool isOurs = std::strcmp(context, "CTar") == 0 && disambiguation == nullptr
            && number == -1 && QLatin1String(source) == from;
        return isOurs ? to : QString();
    }

    QString from;
    QString to;
};

} // namespace

extern "C" {
// The address sanitizer would end the program where memory is short.
const char *__asan_default_options();
const char *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

// Calls of the library come here first.
ssize_t read(int file, void *buffer, size_t bytes)
{
    if (!FileCalls::lets(true, static_cast<qint64>(bytes)))
        return -1;
    return syscall(SYS_read, file, buffer, bytes);
}

off64_t lseek64(int file, off64_t offset, int whence) noexcept
{
    if (!FileCalls::lets(false, offset))
        return -1;
    return syscall(SYS_lseek, file, offset, whence);
}

off_t lseek(int file, off_t offset, int whence) noexcept
{
    return lseek64(file, offset, whence);
}
}

class tst_CTar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void zeroBlock();
    void newReader();
    void samples_data();
    void samples();
    void formatWithoutMagic();
    void types_data();
    void types();
    void texts_data();
    void texts();
    void unreadFields();
    void sizes_data();
    void sizes();
    void badSizes_data();
    void badSizes();
    void sizeBytes_data();
    void sizeBytes();
    void promisedMemory();
    void blockEdges_data();
    void blockEdges();
    void magics_data();
    void magics();
    void cuts();
    void ends_data();
    void ends();
    void emptyAndGarbage_data();
    void emptyAndGarbage();
    void unopenable_data();
    void unopenable();
    void unseekable_data();
    void unseekable();
    void unreadable();
    void failingSeeks();
    void failingReads();
    void loadingAgain_data();
    void loadingAgain();
    void errorStays();
    void indexes_data();
    void indexes();
    void names();
    void missingNames_data();
    void missingNames();
    void manyNames();
    void closedReader();
    void shrunkArchive();
    void keptOpen();
    void shortMemory();
    void promisedSizes_data();
    void promisedSizes();
    void farPositions();
    void fileCalls();
    void translations_data();
    void translations();
};

void tst_CTar::zeroBlock()
{
    STarHdr header;
    std::memset(&header, 0, sizeof header);
    QVERIFY(header.isNull());
    for (std::size_t i = 0; i < sizeof header; ++i) {
        for (const int byte : {1, 0x30, 0x80, 0xFF}) {
            std::memset(&header, 0, sizeof header);
            std::memset(reinterpret_cast<char *>(&header) + i, byte, 1);
            QVERIFY2(!header.isNull(), QByteArray::number(static_cast<int>(i)).constData());
        }
    }
}

void tst_CTar::newReader()
{
    const MessageRecorder recorder;
    CTar archive;
    QCOMPARE(archive.error(), QString());
    verifyMembers(archive, {});
    QCOMPARE(archive.index(QString()), -1);
    QCOMPARE(archive.index(QStringLiteral("a")), -1);
    QCOMPARE(archive.error(), QString());

    // There is no archive, whatever the index is; a name is looked up before that is found out.
    QByteArray data("before");
    for (const int index : {0, -1, 1, INT_MIN, INT_MAX}) {
        QVERIFY(!archive.file(index, data));
        QCOMPARE(archive.error(), kNotOpen);
    }
    QVERIFY(!archive.file(QStringLiteral("a"), data));
    QCOMPARE(archive.error(), kNoSuchName);
    QVERIFY(!archive.file(QString(), data));
    QCOMPARE(archive.error(), kNoSuchName);
    QCOMPARE(data, QByteArray("before"));
    QCOMPARE(recorder.messages(), QStringList());
}

// What make_tar_samples.sh puts into the archives: a line for each member that a user sees.

void tst_CTar::samples_data()
{
    QTest::addColumn<QStringList>("members");

    const auto repeated
        = [](char character, int count) { return QString(count, QLatin1Char(character)); };
    const QString root = QStringLiteral("tree/");
    const QString latin1 = QString::fromLatin1("Gr\xf6\xdf"
                                               "e.txt");
    const QString longLink = QStringLiteral("././@LongLink"); // of GNU records
    const QString pax = QStringLiteral("tree/PaxHeaders/");
    // Type, size, name and link, without the position: that is the sum of what stands before.
    struct Entry
    {
        int type;
        qint64 size;
        QString name;
        QString link = QString();
    };
    const auto add = [](const char *row, const QVector<Entry> &entries) {
        QStringList members;
        qint64 position = 0;
        for (const Entry &entry : entries) {
            members += text(entry.type, entry.name, entry.size, position, entry.link);
            position += kBlock + padded(entry.size);
        }
        QTest::newRow(row) << members;
    };
    const QVector<Entry> begin{
        {1, 5, root + latin1},
        {1, 512, root + QStringLiteral("block_512")},
        {1, 513, root + QStringLiteral("block_513")},
        {1, 0, root + QStringLiteral("empty")},
        {3, 0, root + QStringLiteral("folder/")},
        {1, 7, root + QStringLiteral("folder/inside")},
        {0, 0, root + QStringLiteral("hard_link"), root + QStringLiteral("block_512")},
        {2, 0, root + QStringLiteral("link"), QStringLiteral("empty")},
    };
    const Entry folder{3, 0, root};
    const Entry link100{2, 0, root + QStringLiteral("link_100"), repeated('x', 100)};
    const Entry link101{2, 0, root + QStringLiteral("link_101"), repeated('y', 100)};
    const Entry name99{1, 99, root + repeated('n', 94)};
    const Entry name100{1, 100, root + repeated('o', 95)};
    const Entry pipe{0, 0, root + QStringLiteral("pipe")};
    const Entry name105{1, 105, root + repeated('p', 95)};
    const Entry cutName100{1, 100, root + repeated('o', 94)};
    const Entry cutName105{1, 105, root + repeated('p', 94)};
    const Entry onlyNamePart{1, 105, repeated('p', 100)};

    add("ustar",
        QVector<Entry>{folder} + begin << link100 << name99 << name100 << pipe << onlyNamePart);
    // The records hold the link or name and its zero byte.
    add("gnu",
        QVector<Entry>{folder} + begin << link100 << Entry{0, 102, longLink} << link101 << name99
                                       << name100 << pipe << Entry{0, 106, longLink} << name105);
    // Names and links that fill the field count as too long, and names keep a zero byte.
    add("oldgnu",
        QVector<Entry>{folder} + begin
            << Entry{0, 101, longLink} << link100 << Entry{0, 102, longLink} << link101 << name99
            << Entry{0, 101, longLink} << cutName100 << pipe << Entry{0, 106, longLink}
            << cutName105);
    // "18 comment=sample\n", "23 path=tree/Gr..e.txt\n", "115 linkpath=...\n", "115 path=...\n"
    add("pax",
        QVector<Entry>{Entry{0, 18, QStringLiteral("GlobalHead")}, folder,
                       Entry{0, 23, pax + latin1}}
                + begin
            << link100 << Entry{0, 115, pax + QStringLiteral("link_101")} << link101 << name99
            << name100 << pipe << Entry{0, 115, pax + repeated('p', 84)} << name105);
}

void tst_CTar::samples()
{
    QFETCH(QStringList, members);
    const QString path = QFINDTESTDATA(
        QStringLiteral("data/tar/%1.tar").arg(QLatin1String(QTest::currentDataTag())));
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    QCOMPARE(archive.error(), QString());
    verifyMembers(archive, members);

    // The data are lines of 16 bytes.
    const QByteArray lines = QByteArray("0123456789abcde\n").repeated(40);
    for (int i = 0; i < archive.count(); ++i) {
        const CTarFileInfo info = archive.info(i);
        if (info.type == CTarFileInfo::TYPE_FILE)
            verifyData(archive, i, lines.left(static_cast<int>(info.size)));
    }
    QByteArray data;
    const int record = archive.index(QStringLiteral("././@LongLink"));
    if (record >= 0) {
        const char letter = archive.info(record).size == 101 ? 'x' : 'y';
        const int size = static_cast<int>(archive.info(record).size);
        QVERIFY(archive.file(record, data));
        QCOMPARE(data, QByteArray(size - 1, letter) + '\0');
    }
    const int global = archive.index(QStringLiteral("GlobalHead"));
    if (global >= 0) {
        QVERIFY(archive.file(global, data));
        QCOMPARE(data, QByteArray("18 comment=sample\n"));
    }
    QCOMPARE(archive.error(), QString());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::formatWithoutMagic()
{
    const QString path = QFINDTESTDATA("data/tar/v7.tar");
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(!archive.loadFile(path));
    QCOMPARE(archive.error(), kNotTar);
    verifyMembers(archive, {});
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::types_data()
{
    QTest::addColumn<int>("byte");
    QTest::addColumn<int>("type");
    for (int byte = 0; byte < 256; ++byte) {
        int type = 0;
        if (byte == 0 || byte == 0x30)
            type = 1;
        else if (byte == 0x32)
            type = 2;
        else if (byte == 0x35)
            type = 3;
        QTest::addRow("0x%02x", static_cast<unsigned>(byte)) << byte << type;
    }
}

void tst_CTar::types()
{
    QFETCH(int, byte);
    QFETCH(int, type);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QByteArray data = pattern(513);
    // A link name is read whatever the type is, and so are the data.
    const QString path = written(folder,
                                 member("first", data, static_cast<char>(byte), "target")
                                     + member("second", "2", '5') + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    verifyMembers(archive,
                  {text(type, QStringLiteral("first"), 513, 0, QStringLiteral("target")),
                   text(3, QStringLiteral("second"), 1, 1536)});
    QCOMPARE(archive.info(0).isValid(), type != 0);
    verifyData(archive, 0, data);
    verifyData(archive, 1, "2");
    QCOMPARE(archive.error(), QString());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::texts_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *row, const QByteArray &field, const QString &text) {
        QTest::newRow(row) << field << text;
    };
    add("empty", "", QString());
    add("1 character", "a", QStringLiteral("a"));
    add("99 characters", QByteArray(99, 'n'), QString(99, QLatin1Char('n')));
    add("100 characters, no NUL", QByteArray(100, 'n'), QString(100, QLatin1Char('n')));
    add("100 characters, last is blank", QByteArray(99, 'n') + ' ',
        QString(99, QLatin1Char('n')) + QLatin1Char(' '));
    add("text behind the NUL", QByteArray("a\0b", 3), QStringLiteral("a"));
    add("NUL first", QByteArray("\0b", 2), QString());
    add("last of 100 behind the NUL", QByteArray(98, 'n') + QByteArray("\0b", 2),
        QString(98, QLatin1Char('n')));
    add("blanks", "  a b  ", QStringLiteral("  a b  "));
    add("place of an argument", "%1 %2", QStringLiteral("%1 %2"));
    add("slashes", "./a//b/", QStringLiteral("./a//b/"));
    add("Latin-1", "Z\xfcrich", QStringLiteral("Z\u00fcrich"));
    // UTF-8 is not decoded.
    add("UTF-8", "Z\xc3\xbcrich", QStringLiteral("Z\u00c3\u00bcrich"));
    add("byte order mark of UTF-8",
        "\xef\xbb\xbf"
        "a",
        QStringLiteral("\u00ef\u00bb\u00bf"
                       "a"));
    QByteArray bytes;
    QString characters;
    for (int code = 1; code <= 0x7f; ++code)
        bytes += static_cast<char>(code);
    for (const char byte : bytes.left(100))
        characters += QChar(static_cast<ushort>(byte));
    add("0x01 to 0x64", bytes.left(100), characters);
    bytes.clear();
    characters.clear();
    for (int code = 0x9c; code <= 0xff; ++code) {
        bytes += static_cast<char>(code);
        characters += QChar(static_cast<ushort>(code));
    }
    add("0x9c to 0xff", bytes, characters);
    bytes.clear();
    characters.clear();
    for (int code = 0x65; code <= 0x9b; ++code) {
        bytes += static_cast<char>(code);
        characters += QChar(static_cast<ushort>(code));
    }
    add("0x65 to 0x9b", bytes, characters);
}

void tst_CTar::texts()
{
    QFETCH(QByteArray, field);
    QFETCH(QString, text);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder,
                                 member(field, "data", '0') + member("link", "", '2', field)
                                     + member(field, "", '1', field) + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    verifyMembers(archive,
                  {::text(1, text, 4, 0), ::text(2, QStringLiteral("link"), 0, 1024, text),
                   ::text(0, text, 0, 1536, text)});
    QByteArray data;
    QVERIFY(archive.file(text, data)); // the first of that name
    QCOMPARE(data, QByteArray("data"));
    QCOMPARE(recorder.messages(), QStringList());
}

// All fields but name, size, type, link and magic may hold anything.
void tst_CTar::unreadFields()
{
    const QByteArray header = Header{"a", octal(3), '2', "b"}.bytes();
    QByteArray bytes(kBlock, '\xff');
    bytes.replace(0, 100, header.mid(0, 100));
    bytes.replace(124, 12, header.mid(124, 12));
    bytes.replace(156, 106, header.mid(156, 106));
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, bytes + blocks("abc") + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    verifyMembers(archive, {text(2, QStringLiteral("a"), 3, 0, QStringLiteral("b"))});
    verifyData(archive, 0, "abc");

    // The part of the name in the prefix field is not joined to it.
    QByteArray split = Header{"name", octal(3)}.bytes();
    split.replace(345, 6, "folder");
    QVERIFY(!written(folder, split + blocks("abc") + kEnd).isEmpty());
    QVERIFY(archive.loadFile(path));
    verifyMembers(archive, {text(1, QStringLiteral("name"), 3, 0)});
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::sizes_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<qint64>("size");
    const auto add = [](const char *row, const QByteArray &field, qint64 size) {
        QTest::newRow(row) << field << size;
    };
    add("0", "0", 0);
    add("7", "7", 7);
    add("10 is 8", "10", 8);
    add("11 digits, NUL", QByteArray("00000000012\0", 12), 10);
    add("11 digits, blank", "00000000012 ", 10);
    add("12 digits, no NUL", "000000000012", 10);
    add("12 zeros", "000000000000", 0);
    add("leading blanks, NUL", QByteArray("         12\0", 12), 10);
    add("leading blanks, no NUL", "          12", 10);
    add("blanks on both sides", "     12     ", 10);
    add("trailing blanks", "12          ", 10);
    add("6 digits, blank, NUL", QByteArray("000012 \0", 8), 10);
    add("leading zero", "012", 10);
    add("something behind the NUL", QByteArray("12\0xyz", 6), 10);
    add("digits behind the NUL",
        QByteArray("12\0" // ends the text
                   "34",
                   5),
        10);
    add("sign behind the NUL", QByteArray("12\0-", 4), 10);
    add("1000 is 512", "1000", 512);
    add("2 KiB", "4000", 2048);
    add("2 GiB", "20000000000", Q_INT64_C(2147483648));
    add("4 GiB", "40000000000", Q_INT64_C(4294967296));
    add("greatest of 11 digits", "77777777777", Q_INT64_C(8589934591));
    add("8 GiB, 12 digits", "100000000000", Q_INT64_C(8589934592));
    add("greatest of 12 digits", "777777777777", Q_INT64_C(68719476735));
}

void tst_CTar::sizes()
{
    QFETCH(QByteArray, field);
    QFETCH(qint64, size);
    const QByteArray data = pattern(2048);
    const bool isWhole = size <= data.size();
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    // The field behind begins with digits.
    const QByteArray archiveBytes = Header{"a", field}.bytes()
        + (isWhole ? blocks(data.left(static_cast<int>(size))) + kEnd : data);
    const QString path = written(folder, archiveBytes);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QCOMPARE(archive.loadFile(path), isWhole);
    QCOMPARE(archive.error(), isWhole ? QString() : tooShort(0));
    verifyMembers(archive, {text(1, QStringLiteral("a"), size, 0)});
    QByteArray read("before");
    QCOMPARE(archive.file(0, read), isWhole);
    QCOMPARE(read, data.left(static_cast<int>(qMin<qint64>(size, data.size()))));
    if (!isWhole)
        QCOMPARE(archive.error(), tooFewBytes(2048, size));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::badSizes_data()
{
    QTest::addColumn<QByteArray>("field");
    const auto add = [](const char *row, const QByteArray &field) { QTest::newRow(row) << field; };
    for (const char *field :
         {"8",   "9",     "00000000008", "18",  "81",    "a",     "x",     "1000000000a", "0x10",
          "x10", "0b1",   "0o17",        "#7",  "+5",    "-5",    "-1000", "+0",          "-0",
          " +5", " -5 ",  "- 5",         "+",   "-",     "5-",    "5+",    "--5",         "+-5",
          "5 5", "1 000", "1.0",         "1,0", "1,000", "1'000", "1_0",   "1e1",         "nan",
          "inf", ".",     "7L",          "%1",  "5\x08"})
        add(field, field);
    add("empty", "");
    add("1 blank", " ");
    add("12 blanks", "            ");
    add("NUL before digits",
        QByteArray("\0"
                   "5",
                   2));
    add("blank and NUL before digits",
        QByteArray(" \0"
                   "5",
                   3));
    add("base 256", QByteArray("\x80\0\0\0\0\0\0\0\0\0\0\x05", 12));
    add("base 256, no zero byte", "\x80\x01\x01\x01\x01\x01\x01\x01\x01\x01\x01\x05");
    add("base 256, negative", QByteArray(12, '\xff'));
    add("superscript digit of Latin-1", "\xb2");
    add("letter of Latin-1", "1\xfc");
    add("last of 12 digits is 8", "000000000008");
    add("12 digits with a sign", "-00000001000");
}

void tst_CTar::badSizes()
{
    QFETCH(QByteArray, field);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder,
                                 member("good", "data") + Header{"bad", field}.bytes()
                                     + member("behind", "") + kEnd);
    QVERIFY(!path.isEmpty());
    const QStringList members{text(1, QStringLiteral("good"), 4, 0)};
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(!archive.loadFile(path));
    QCOMPARE(archive.error(), QString());
    verifyMembers(archive, members);
    verifyData(archive, 0, "data");
    QCOMPARE(archive.index(QStringLiteral("bad")), -1);

    // The error text of before is left, too.
    QByteArray data;
    QVERIFY(!archive.file(1, data));
    QCOMPARE(archive.error(), badIndex(1, 1));
    QVERIFY(!archive.loadFile(path));
    QCOMPARE(archive.error(), badIndex(1, 1));
    verifyMembers(archive, members);

    // In the first header.
    QVERIFY(!written(folder, Header{"bad", field}.bytes() + kEnd).isEmpty());
    QVERIFY(!archive.loadFile(path));
    QCOMPARE(archive.error(), badIndex(1, 1));
    verifyMembers(archive, {});
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::sizeBytes_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("behind");
    QTest::newRow("alone") << QByteArray() << QByteArray();
    QTest::newRow("before 12") << QByteArray() << QByteArray("12");
    QTest::newRow("within 12") << QByteArray("1") << QByteArray("2");
    QTest::newRow("behind 12") << QByteArray("12") << QByteArray();
    QTest::newRow("the last of 12") << QByteArray("00000000001") << QByteArray();
}

// What a header promises is not believed: the array that is filled is no larger than the file.
void tst_CTar::promisedMemory()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    for (const char *size : {"3777777", "4000000", "77777777777"}) {
        const QString path = written(folder, Header{"a", size}.bytes() + blocks(pattern(1000)));
        QVERIFY(!path.isEmpty());
        CTar archive;
        QVERIFY(!archive.loadFile(path));
        QByteArray data;
        QVERIFY(!archive.file(0, data));
        QCOMPARE(data.left(1000), pattern(1000));
        QVERIFY2(data.capacity() <= 2048, size);
    }
}

// Every byte at a place of the size. What Qt takes for an octal number is one, but for signs.
void tst_CTar::sizeBytes()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, behind);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const MessageRecorder recorder;
    int good = 0;
    for (int byte = 1; byte < 256; ++byte) {
        const QByteArray field = before + static_cast<char>(byte) + behind;
        bool isNumber = false;
        const qint64 size = QString::fromLatin1(field).toLongLong(&isNumber, 8);
        isNumber = isNumber && !field.contains('+') && !field.contains('-');
        const QString path = written(folder, Header{"a", field}.bytes() + blocks(pattern(1000)));
        QVERIFY(!path.isEmpty());
        CTar archive;
        QVERIFY(!archive.loadFile(path));
        QCOMPARE(archive.error().isEmpty(), !isNumber);
        QCOMPARE(archive.count(), isNumber ? 1 : 0);
        if (isNumber)
            QCOMPARE(archive.info(0).size, size);
        good += isNumber ? 1 : 0;
    }
    QVERIFY(good >= 8); // the digits at least
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::blockEdges_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<qint64>("next");
    QTest::newRow("0") << 0 << Q_INT64_C(512);
    QTest::newRow("1") << 1 << Q_INT64_C(1024);
    QTest::newRow("511") << 511 << Q_INT64_C(1024);
    QTest::newRow("512") << 512 << Q_INT64_C(1024);
    QTest::newRow("513") << 513 << Q_INT64_C(1536);
    QTest::newRow("1023") << 1023 << Q_INT64_C(1536);
    QTest::newRow("1024") << 1024 << Q_INT64_C(1536);
    QTest::newRow("1025") << 1025 << Q_INT64_C(2048);
    QTest::newRow("65536") << 65536 << Q_INT64_C(66048);
}

void tst_CTar::blockEdges()
{
    QFETCH(int, size);
    QFETCH(qint64, next);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QByteArray data = pattern(size);
    const QString path
        = written(folder, member("a", data) + member("b", data) + member("c", "") + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    verifyMembers(archive,
                  {text(1, QStringLiteral("a"), size, 0), text(1, QStringLiteral("b"), size, next),
                   text(1, QStringLiteral("c"), 0, 2 * next)});
    verifyData(archive, 2, "");
    verifyData(archive, 1, data);
    verifyData(archive, 0, data);
    QCOMPARE(archive.error(), QString());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::magics_data()
{
    QTest::addColumn<QByteArray>("magic"); // with the version
    QTest::addColumn<bool>("isTar");
    const auto add = [](const char *row, const QByteArray &magic, bool isTar) {
        QTest::newRow(row) << magic << isTar;
    };
    add("ustar NUL 00", kPosixMagic, true);
    add("ustar blank blank NUL", QByteArray("ustar  \0", 8), true);
    add("ustar NUL, no version", QByteArray("ustar\0\0\0", 8), true);
    add("ustar NUL, version 99",
        QByteArray("ustar\0"
                   "99",
                   8),
        true);
    add("ustar00 without NUL", "ustar00", true);
    add("ustarx", "ustarxxx", true);
    add("ustar and the byte 0xff", "ustar\xff\xff\xff", true);
    add("zeros", QByteArray(8, '\0'), false);
    add("USTAR", "USTAR", false);
    add("Ustar", "Ustar", false);
    add("ustaR", "ustaR", false);
    add("NUL first",
        QByteArray("\0ustar\0"
                   "0",
                   8),
        false);
    add("NUL in the place of the first", QByteArray("\0star", 5), false);
    add("NUL in the place of the last", QByteArray("usta\0r", 6), false);
    add("usta", "usta", false);
    add("usta blank", "usta    ", false);
    add("blank first", " ustar", false);
    add("vstar", "vstar", false);
    add("uztar", "uztar", false);
    add("usuar", "usuar", false);
    add("ustbr", "ustbr", false);
    add("ustas", "ustas", false);
    add("place of an argument", "%1%2", false);
    add("bytes 0xff", QByteArray(8, '\xff'), false);
}

void tst_CTar::magics()
{
    QFETCH(QByteArray, magic);
    QFETCH(bool, isTar);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path
        = written(folder,
                  member("good", "data") + Header{"a", octal(1), '0', "l", magic}.bytes()
                      + blocks("A") + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QCOMPARE(archive.loadFile(path), isTar);
    QCOMPARE(archive.error(), isTar ? QString() : kNotTar);
    QStringList members{text(1, QStringLiteral("good"), 4, 0)};
    if (isTar)
        members += text(1, QStringLiteral("a"), 1, 1024, QStringLiteral("l"));
    verifyMembers(archive, members);
    verifyData(archive, 0, "data");

    // The magic is looked at before the size.
    QVERIFY(!written(folder, Header{"a", "8", '0', "", magic}.bytes() + kEnd).isEmpty());
    CTar other;
    QVERIFY(!other.loadFile(path));
    QCOMPARE(other.error(), isTar ? QString() : kNotTar);
    verifyMembers(other, {});
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::cuts()
{
    struct Part
    {
        QByteArray data;
        int position;
    };
    const QByteArray names("abcde");
    const std::array<Part, 5> parts{{{QByteArray(), 0},
                                     {pattern(513), 512},
                                     {QByteArray("x"), 2048},
                                     {pattern(512), 3072},
                                     {QByteArray(), 4096}}};
    constexpr int kEndPosition = 4608;
    QByteArray bytes;
    QStringList allMembers;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const QByteArray name = names.mid(static_cast<int>(i), 1);
        QCOMPARE(bytes.size(), parts[i].position);
        bytes += member(name, parts[i].data);
        allMembers += text(1, QString::fromLatin1(name), parts[i].data.size(), parts[i].position);
    }
    QCOMPARE(bytes.size(), kEndPosition);
    bytes += kEnd;

    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, bytes);
    QVERIFY(!path.isEmpty());
    QFile file(path);
    const MessageRecorder recorder;
    for (int size = bytes.size(); size >= 0; --size) {
        QVERIFY(file.resize(size));
        // Members whose header is there are told; then comes the block that is not.
        int count = 0;
        int next = kEndPosition;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (size < parts[i].position + kBlock) {
                next = parts[i].position;
                break;
            }
            ++count;
        }
        const bool isWhole = size >= kEndPosition + kBlock;
        CTar archive;
        const bool isLoaded = archive.loadFile(path);
        const QString error = isWhole ? QString() : tooShort(qMax(0, size - next));
        const QByteArray where = QByteArray::number(size);
        QVERIFY2(isLoaded == isWhole, where.constData());
        QVERIFY2(archive.error() == error, where.constData());
        verifyMembers(archive, allMembers.mid(0, count));
        for (int i = 0; i < count; ++i) {
            const Part &part = parts[static_cast<std::size_t>(i)];
            const QByteArray expected
                = part.data.left(qMax(0, size - part.position - kBlock)); // what is left of it
            const bool isThere = expected.size() == part.data.size();
            QByteArray data("before");
            QVERIFY2(archive.file(i, data) == isThere, where.constData());
            QVERIFY2(data == expected, where.constData());
            if (!isThere) {
                QVERIFY2(archive.error() == tooFewBytes(expected.size(), part.data.size()),
                         where.constData());
            }
        }
        if (QTest::currentTestFailed())
            QFAIL(where.constData());
    }
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::ends_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<bool>("isEnd");
    QTest::addColumn<QString>("error");
    const QByteArray last = Header{"z", octal(0)}.bytes();
    QTest::newRow("two zero blocks") << zeros(1024) << true << QString();
    QTest::newRow("one zero block") << zeros(512) << true << QString();
    QTest::newRow("zero block and 1 byte") << zeros(513) << true << QString();
    QTest::newRow("20 zero blocks") << zeros(10240) << true << QString();
    QTest::newRow("member behind the zero block") << zeros(512) + last << true << QString();
    QTest::newRow("garbage behind the zero block")
        << zeros(512) + QByteArray(700, 'x') << true << QString();
    QTest::newRow("511 zeros") << zeros(511) << false << tooShort(511);
    QTest::newRow("1 zero") << zeros(1) << false << tooShort(1);
    QTest::newRow("nothing") << QByteArray() << false << tooShort(0);
    QTest::newRow("511 zeros and a 1") << zeros(511) + '\1' << false << kNotTar;
    QTest::newRow("1 and 511 zeros") << '\1' + zeros(511) << false << kNotTar;
    QTest::newRow("garbage") << QByteArray(512, 'x') << false << kNotTar;
}

void tst_CTar::ends()
{
    QFETCH(QByteArray, end);
    QFETCH(bool, isEnd);
    QFETCH(QString, error);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, member("a", "A") + member("b", "") + end);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QCOMPARE(archive.loadFile(path), isEnd);
    QCOMPARE(archive.error(), error);
    verifyMembers(archive,
                  {text(1, QStringLiteral("a"), 1, 0), text(1, QStringLiteral("b"), 0, 1024)});
    verifyData(archive, 0, "A");
    verifyData(archive, 1, "");
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::emptyAndGarbage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isTar");
    QTest::addColumn<QString>("error");
    const auto add = [](const char *row, const QByteArray &bytes, bool isTar,
                        const QString &error) { QTest::newRow(row) << bytes << isTar << error; };
    add("empty file", "", false, tooShort(0));
    add("1 byte", "x", false, tooShort(1));
    add("511 bytes", QByteArray(511, 'x'), false, tooShort(511));
    add("512 bytes", QByteArray(512, 'x'), false, kNotTar);
    add("513 bytes", QByteArray(513, 'x'), false, kNotTar);
    add("1 zero", zeros(1), false, tooShort(1));
    add("511 zeros", zeros(511), false, tooShort(511));
    add("512 zeros", zeros(512), true, QString());
    add("513 zeros", zeros(513), true, QString());
    add("1024 zeros", zeros(1024), true, QString());
    add("10240 zeros", zeros(10240), true, QString());
    add("head of a header, 511 bytes", member("a", "").left(511), false, tooShort(511));
    add("texts", QByteArray("No archive at all.\n").repeated(100), false, kNotTar);
}

void tst_CTar::emptyAndGarbage()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isTar);
    QFETCH(QString, error);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, bytes);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QCOMPARE(archive.loadFile(path), isTar);
    QCOMPARE(archive.error(), error);
    verifyMembers(archive, {});
    // The file is open in both cases.
    QByteArray data("before");
    QVERIFY(!archive.file(0, data));
    QCOMPARE(archive.error(), badIndex(0, 0));
    QCOMPARE(data, QByteArray("before"));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::unopenable_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing");
    QTest::newRow("missing, name with a place") << QStringLiteral("%1 of %2");
    QTest::newRow("in a missing directory") << QStringLiteral("none/a.tar");
    QTest::newRow("below a file") << QStringLiteral("good.tar/a");
    QTest::newRow("directory") << QStringLiteral("folder");
    QTest::newRow("broken link") << QStringLiteral("broken");
    QTest::newRow("name too long") << QString(300, QLatin1Char('n'));
    QTest::newRow("empty name") << QString();
}

void tst_CTar::unopenable()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("folder")));
    QVERIFY(QFile::link(QStringLiteral("none"), folder.filePath(QStringLiteral("broken"))));
    const QString good = written(folder, member("a", "A") + kEnd, QStringLiteral("good.tar"));
    QVERIFY(!good.isEmpty());
    const QString path = name.isEmpty() ? name : folder.filePath(name);

    // The text is that of the file.
    QString error;
    {
        const MessageRecorder ofQt;
        QFile file(path);
        QVERIFY(!file.open(QIODevice::ReadOnly));
        error = file.errorString();
    }
    QVERIFY(!error.isEmpty());

    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(!archive.loadFile(path));
    QCOMPARE(archive.error(), error);
    verifyMembers(archive, {});
    QByteArray data("before");
    QVERIFY(!archive.file(0, data));
    QCOMPARE(archive.error(), kNotOpen);

    // The archive of before is closed and forgotten.
    QVERIFY(archive.loadFile(good));
    QCOMPARE(openFiles(good), 1);
    QCOMPARE(archive.index(QStringLiteral("a")), 0);
    QVERIFY(!archive.loadFile(path));
    QCOMPARE(archive.error(), error);
    QCOMPARE(openFiles(good), 0);
    verifyMembers(archive, {});
    QCOMPARE(archive.index(QStringLiteral("a")), -1);
    QVERIFY(!archive.file(0, data));
    QCOMPARE(archive.error(), kNotOpen);
    QVERIFY(!archive.file(QStringLiteral("a"), data));
    QCOMPARE(archive.error(), kNoSuchName);
    QCOMPARE(data, QByteArray("before"));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::unseekable_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("pipe with a writer") << QStringLiteral("writer");
    QTest::newRow("pipe without a writer") << QString();
    QTest::newRow("null device") << QStringLiteral("/dev/null");
}

// What has no positions is no archive.
void tst_CTar::unseekable()
{
    QFETCH(QString, path);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    int pipe = -1;
    const bool hasWriter = path == QLatin1String("writer");
    if (hasWriter || path.isEmpty()) {
        path = folder.filePath(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        if (hasWriter)
            pipe = open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC);
        QCOMPARE(pipe >= 0, hasWriter);
    }
    const MessageRecorder recorder;
    CTar archive;
    const bool isLoaded = archive.loadFile(path);
    QByteArray data("before");
    const QString error = archive.error();
    const bool isRead = archive.file(0, data);
    if (pipe >= 0)
        close(pipe);
    QVERIFY(!isLoaded);
    QVERIFY(!error.isEmpty());
    verifyMembers(archive, {});
    QVERIFY(!isRead);
    QCOMPARE(archive.error(), badIndex(0, 0));
    QCOMPARE(data, QByteArray("before"));
    QCOMPARE(recorder.messages(), QStringList());
}

// Nothing is mapped at the lowest addresses: reading there reports an error.
void tst_CTar::unreadable()
{
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(!archive.loadFile(QStringLiteral("/proc/self/mem")));
    QCOMPARE(archive.error(), tooShort(-1));
    verifyMembers(archive, {});
    QByteArray data("before");
    QVERIFY(!archive.file(0, data));
    QCOMPARE(archive.error(), badIndex(0, 0));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::failingSeeks()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, member("a", "A") + member("b", "B") + kEnd);
    QVERIFY(!path.isEmpty());
    const QStringList members{text(1, QStringLiteral("a"), 1, 0),
                              text(1, QStringLiteral("b"), 1, 1024)};
    const QString error = qt_error_string(EIO);
    const MessageRecorder recorder;
    for (int seek = 0; seek < 3; ++seek) {
        CTar archive;
        bool isLoaded = true;
        {
            FileCalls calls;
            calls.failingSeek = seek;
            isLoaded = archive.loadFile(path);
        }
        QVERIFY(!isLoaded);
        QCOMPARE(archive.error(), error);
        verifyMembers(archive, members.mid(0, seek));
        if (seek > 0)
            verifyData(archive, 0, "A");
    }

    CTar archive;
    QVERIFY(archive.loadFile(path));
    QCOMPARE(archive.error(), QString());
    QByteArray data("before");
    bool isRead = true;
    {
        FileCalls calls;
        calls.failingSeek = 0;
        isRead = archive.file(1, data);
    }
    QVERIFY(!isRead);
    QCOMPARE(archive.error(), error);
    QCOMPARE(data, QByteArray("before"));
    verifyData(archive, 1, "B");
    QCOMPARE(archive.error(), error);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::failingReads()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, member("a", "A") + member("b", "B") + kEnd);
    QVERIFY(!path.isEmpty());
    const QStringList members{text(1, QStringLiteral("a"), 1, 0),
                              text(1, QStringLiteral("b"), 1, 1024)};
    const MessageRecorder recorder;
    for (int read = 0; read < 3; ++read) {
        CTar archive;
        bool isLoaded = true;
        {
            FileCalls calls;
            calls.failingRead = read;
            isLoaded = archive.loadFile(path);
        }
        QVERIFY(!isLoaded);
        QCOMPARE(archive.error(), tooShort(-1));
        verifyMembers(archive, members.mid(0, read));
        if (read > 0)
            verifyData(archive, 0, "A");
    }

    CTar archive;
    QVERIFY(archive.loadFile(path));
    QByteArray data("before");
    bool isRead = true;
    {
        FileCalls calls;
        calls.failingRead = 0;
        isRead = archive.file(1, data);
    }
    QVERIFY(!isRead);
    QCOMPARE(archive.error(), tooFewBytes(0, 1));
    QCOMPARE(data, QByteArray());
    verifyData(archive, 1, "B");
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::loadingAgain_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    struct Kind
    {
        const char *name;
        QByteArray bytes;
    };
    const std::array<Kind, 5> kinds{
        {{"two members", member("a", "1") + member("b", pattern(600)) + kEnd},
         {"other member", member("b", "22", '0') + kEnd},
         {"cut", member("c", "") + member("d", "3")},
         {"no archive", QByteArray(600, 'x')},
         {"no members", kEnd}}};
    for (const Kind &first : kinds) {
        for (const Kind &second : kinds)
            QTest::addRow("%s, %s", first.name, second.name) << first.bytes << second.bytes;
    }
}

// What was loaded before does not matter.
void tst_CTar::loadingAgain()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString firstPath = written(folder, first, QStringLiteral("first"));
    const QString secondPath = written(folder, second, QStringLiteral("second"));
    QVERIFY(!firstPath.isEmpty() && !secondPath.isEmpty());
    const MessageRecorder recorder;
    CTar fresh;
    const bool isFreshLoaded = fresh.loadFile(secondPath);
    QStringList members;
    const QList<CTarFileInfo> infos = fresh.infos();
    for (const CTarFileInfo &info : infos)
        members += text(info);

    CTar archive;
    archive.loadFile(firstPath);
    const QString errorBefore = archive.error();
    // Names that were looked up are forgotten.
    for (const char *name : {"a", "b", "c", "d"})
        QCOMPARE(archive.index(QLatin1String(name)), archive.names().indexOf(QLatin1String(name)));
    QCOMPARE(archive.loadFile(secondPath), isFreshLoaded);
    QCOMPARE(archive.error(), isFreshLoaded ? errorBefore : fresh.error());
    verifyMembers(archive, members);
    for (const char *name : {"a", "b", "c", "d"})
        QCOMPARE(archive.index(QLatin1String(name)), fresh.names().indexOf(QLatin1String(name)));
    QCOMPARE(openFiles(firstPath), 0);
    QCOMPARE(openFiles(secondPath), 2);
    for (int i = 0; i < fresh.count(); ++i) {
        QByteArray expected;
        QVERIFY(fresh.file(i, expected));
        verifyData(archive, i, expected);
    }
    // And once more the same.
    QCOMPARE(archive.loadFile(secondPath), isFreshLoaded);
    verifyMembers(archive, members);
    QCOMPARE(openFiles(secondPath), 2);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::errorStays()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString good = written(folder, member("a", "A") + kEnd, QStringLiteral("good"));
    const QString garbage = written(folder, QByteArray(512, 'x'), QStringLiteral("garbage"));
    const QString noSize
        = written(folder, Header{"a", "8"}.bytes() + kEnd, QStringLiteral("no size"));
    QVERIFY(!good.isEmpty() && !garbage.isEmpty() && !noSize.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(!archive.loadFile(garbage));
    const auto useWithoutFailure = [&] {
        QVERIFY(archive.loadFile(good));
        verifyMembers(archive, {text(1, QStringLiteral("a"), 1, 0)});
        verifyData(archive, 0, "A");
        QCOMPARE(archive.index(QStringLiteral("b")), -1);
    };
    useWithoutFailure();
    QCOMPARE(archive.error(), kNotTar);
    QVERIFY(!archive.loadFile(noSize));
    QCOMPARE(archive.error(), kNotTar);

    // Each failure takes the place of the one before.
    QByteArray data;
    useWithoutFailure();
    QVERIFY(!archive.file(1, data));
    QCOMPARE(archive.error(), badIndex(1, 1));
    useWithoutFailure();
    QCOMPARE(archive.error(), badIndex(1, 1));
    QVERIFY(!archive.file(QStringLiteral("b"), data));
    QCOMPARE(archive.error(), kNoSuchName);
    useWithoutFailure();
    QCOMPARE(archive.error(), kNoSuchName);
    QVERIFY(!archive.loadFile(garbage));
    QCOMPARE(archive.error(), kNotTar);
    const QString copy = archive.error();
    QVERIFY(!archive.file(-1, data));
    QCOMPARE(archive.error(), badIndex(-1, 0));
    QCOMPARE(copy, kNotTar);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::indexes_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("index");
    for (const int count : {0, 1, 3}) {
        for (const int index : {-1, count, count + 1, 1000000, INT_MAX, INT_MIN})
            QTest::addRow("%d of %d", index, count) << count << index;
    }
}

void tst_CTar::indexes()
{
    QFETCH(int, count);
    QFETCH(int, index);
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += member(QByteArray::number(i), QByteArray::number(i));
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, bytes + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    QCOMPARE(archive.count(), count);
    QCOMPARE(text(archive.info(index)), kCleared);
    QCOMPARE(archive.error(), QString());
    QByteArray data("before");
    QVERIFY(!archive.file(index, data));
    QCOMPARE(archive.error(), badIndex(index, count));
    QCOMPARE(data, QByteArray("before"));
    for (int i = 0; i < count; ++i)
        verifyData(archive, i, QByteArray::number(i));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::names()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(
        folder,
        member("a", "first") + member("A", "capital") + member("a", "second") + member("./a", "dot")
            + member("a ", "blank") + member("", "none") + member("a", "third", '1') + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    QCOMPARE(archive.names().join(QLatin1Char('|')), QStringLiteral("a|A|a|./a|a ||a"));
    const auto verify = [&](const QString &name, int index, const char *expected) {
        QCOMPARE(archive.index(name), index);
        QByteArray data;
        QVERIFY(archive.file(name, data));
        QCOMPARE(data, QByteArray(expected));
    };
    verify(QStringLiteral("a"), 0, "first");
    verify(QStringLiteral("A"), 1, "capital");
    verify(QStringLiteral("./a"), 3, "dot");
    verify(QStringLiteral("a "), 4, "blank");
    verify(QString(), 5, "none");
    verify(QStringLiteral(""), 5, "none");
    QByteArray data;
    QVERIFY(archive.file(2, data)); // the others by their index
    QCOMPARE(data, QByteArray("second"));
    QVERIFY(archive.file(6, data));
    QCOMPARE(data, QByteArray("third"));
    // The copy of the caller is its own.
    QStringList copy = archive.names();
    copy.clear();
    QList<CTarFileInfo> infos = archive.infos();
    infos.clear();
    QCOMPARE(archive.names().size(), 7);
    QCOMPARE(archive.infos().size(), 7);
    QCOMPARE(archive.error(), QString());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::missingNames_data()
{
    QTest::addColumn<QString>("name");
    const auto add = [](const char *row, const QString &name) { QTest::newRow(row) << name; };
    add("other", QStringLiteral("b"));
    add("other case", QStringLiteral("NAME"));
    add("beginning", QStringLiteral("nam"));
    add("longer", QStringLiteral("name "));
    add("empty", QStringLiteral(""));
    add("null", QString());
    add("place of an argument", QStringLiteral("%1"));
    add("without the slash", QStringLiteral("folder"));
    add("decomposed", QStringLiteral("Zu\u0308rich"));
    add("UTF-8 read as Latin-1", QStringLiteral("Z\u00c3\u00bcrich"));
    add("zero unit behind", QStringLiteral("name") + QChar(0));
    add("outside Latin-1", QStringLiteral("\u4e2d"));
}

void tst_CTar::missingNames()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(
        folder, member("name", "1") + member("folder/", "", '5') + member("Z\xfcrich", "2") + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    QCOMPARE(archive.index(name), -1);
    QCOMPARE(archive.error(), QString());
    QByteArray data("before");
    QVERIFY(!archive.file(name, data));
    QCOMPARE(archive.error(), kNoSuchName);
    QCOMPARE(data, QByteArray("before"));
    verifyData(archive, 2, "2");
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::manyNames()
{
    constexpr int kCount = 20000;
    QByteArray bytes;
    bytes.reserve((kCount + 2) * 2 * kBlock);
    for (int i = 0; i < kCount; ++i)
        bytes += member(QByteArray::number(i / 2), QByteArray::number(i)); // each name twice
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, bytes + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    QCOMPARE(archive.count(), kCount);
    for (int i = 0; i < kCount; ++i) {
        const QString name = QString::number(i / 2);
        QCOMPARE(archive.index(name), i / 2 * 2);
        QCOMPARE(archive.info(i).name, name);
        QCOMPARE(archive.info(i).position, qint64(i) * 2 * kBlock);
        QByteArray data;
        QVERIFY(archive.file(name, data));
        QCOMPARE(data, QByteArray::number(i / 2 * 2));
    }
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::closedReader()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString good = written(folder, member("a", "A") + kEnd, QStringLiteral("good"));
    const QString bad = written(folder, QByteArray(600, 'x'), QStringLiteral("bad"));
    QVERIFY(!good.isEmpty() && !bad.isEmpty());
    const MessageRecorder recorder;
    {
        CTar archive;
        QCOMPARE(openFiles(good), 0);
        QVERIFY(archive.loadFile(good));
        QCOMPARE(openFiles(good), 1);
        QVERIFY(!archive.loadFile(bad));
        QCOMPARE(openFiles(good), 0);
        QCOMPARE(openFiles(bad), 1);
    }
    QCOMPARE(openFiles(good), 0);
    QCOMPARE(openFiles(bad), 0);
    {
        // For reading and nothing else.
        CTar archive;
        QVERIFY(archive.loadFile(good));
        QCOMPARE(fcntl(descriptor(good), F_GETFL) & O_ACCMODE, O_RDONLY);
    }
    QCOMPARE(openFiles(good), 0);
    QCOMPARE(recorder.messages(), QStringList());
}

// The file loses bytes after the table of contents was read.
void tst_CTar::shrunkArchive()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QByteArray data = pattern(700);
    const QString path = written(folder, member("a", "A") + member("b", data) + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    constexpr int kBegin = 1536; // of the data of "b"
    QFile file(path);
    for (const int size : {kBegin + 700, kBegin + 699, kBegin + 512, kBegin + 1, kBegin, kBegin - 1,
                           1024, 513, 1, 0}) {
        QVERIFY(file.resize(size));
        const int left = qBound(0, size - kBegin, 700);
        for (const bool isByName : {false, true}) {
            QByteArray read("before");
            const bool isRead
                = isByName ? archive.file(QStringLiteral("b"), read) : archive.file(1, read);
            QCOMPARE(isRead, left == 700);
            QCOMPARE(read, data.left(left));
            if (left < 700)
                QCOMPARE(archive.error(), tooFewBytes(left, 700));
        }
        QCOMPARE(archive.count(), 2);
    }
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::keptOpen()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QByteArray data = pattern(1500);
    const QString path = written(folder, member("a", data) + member("b", "B"));
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(!archive.loadFile(path)); // ends without a block of zeros
    QCOMPARE(archive.error(), tooShort(0));
    QVERIFY(QFile::remove(path));
    verifyData(archive, 1, "B");
    verifyData(archive, 0, data);
    verifyData(archive, 1, "B");
    QVERIFY(!archive.loadFile(path));
    QVERIFY(!archive.error().isEmpty());
    verifyMembers(archive, {});
    QCOMPARE(recorder.messages(), QStringList());
}

// Memory that is too short for a member is told like any other failure.
void tst_CTar::shortMemory()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    constexpr qint64 kSize = 1536 * kMiB;
    const QString path = written(folder, Header{"big", "14000000000"}.bytes());
    QVERIFY(QFile::resize(path, kBlock + kSize + 2 * kBlock)); // the data is a hole
    const MessageRecorder recorder;
    CTar archive;
    QVERIFY(archive.loadFile(path));
    verifyMembers(archive, {text(1, QStringLiteral("big"), kSize, 0)});
    QByteArray data("before");
    bool isReadByIndex = true;
    bool isReadByName = true;
    {
        const AddressSpaceLimit limit(memory("VmSize") + 512 * kMiB);
        QVERIFY(limit.isValid());
        isReadByIndex = archive.file(0, data);
        isReadByName = archive.file(QStringLiteral("big"), data);
    }
    QVERIFY(!isReadByIndex);
    QVERIFY(!isReadByName);
    QCOMPARE(archive.error(), QStringLiteral("ERROR: There is not enough memory !"));
    QCOMPARE(data, QByteArray("before"));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::promisedSizes_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<qint64>("size");
    QTest::newRow("1 byte more than there is") << QByteArray("3001") << Q_INT64_C(1537);
    QTest::newRow("1 MiB") << QByteArray("4000000") << Q_INT64_C(1048576);
    QTest::newRow("1 byte above 1 MiB") << QByteArray("4000001") << Q_INT64_C(1048577);
    QTest::newRow("64 MiB") << QByteArray("400000000") << Q_INT64_C(67108864);
    QTest::newRow("1 byte below 2 GiB") << QByteArray("17777777777") << Q_INT64_C(2147483647);
    QTest::newRow("2 GiB") << QByteArray("20000000000") << Q_INT64_C(2147483648);
    QTest::newRow("4 GiB") << QByteArray("40000000000") << Q_INT64_C(4294967296);
    QTest::newRow("4 GiB and what there is")
        << QByteArray("40000003000") << Q_INT64_C(4294968832); // alike in 32 bits
    QTest::newRow("8 GiB") << QByteArray("100000000000") << Q_INT64_C(8589934592);
    QTest::newRow("64 GiB less 1 byte") << QByteArray("777777777777") << Q_INT64_C(68719476735);
}

// A file of 2 KiB in which a header promises more.
void tst_CTar::promisedSizes()
{
    QFETCH(QByteArray, field);
    QFETCH(qint64, size);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QByteArray data = pattern(1536);
    const QString path = written(folder, Header{"a", field}.bytes() + data);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    const qint64 before = memory("VmSize");
    QVERIFY(before > 0);
    CTar archive;
    bool isLoaded = true;
    bool isRead = true;
    QByteArray read("before");
    qint64 largestRead = 0;
    QString error;
    {
        const FileCalls calls;
        isLoaded = archive.loadFile(path);
        error = archive.error();
        isRead = archive.file(0, read);
        largestRead = calls.largestRead();
    }
    QVERIFY(!isLoaded);
    QCOMPARE(error, tooShort(0));
    verifyMembers(archive, {text(1, QStringLiteral("a"), size, 0)});
    QVERIFY(!isRead);
    QCOMPARE(archive.error(), tooFewBytes(1536, size));
    QCOMPARE(read, data);
    // No more is asked for than the file has left; a size up to 1 MiB is no matter.
    QVERIFY(largestRead > 0 && largestRead <= (size > kMiB ? 1536 : size));
    QVERIFY(memory("VmPeak") - before < 512 * kMiB);
    QCOMPARE(recorder.messages(), QStringList());
}

// Positions beyond 31, 32 and 36 bits, in a file that consists of holes.
void tst_CTar::farPositions()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    struct Part
    {
        const char *name;
        qint64 size;
        qint64 position;
    };
    const std::array<Part, 10> parts{{
        {"a", Q_INT64_C(2147483136), 0},                       // to 2^31 less 512, then a header
        {"b", 1, Q_INT64_C(2147483648)},                       // 2^31
        {"c", Q_INT64_C(2147482112), Q_INT64_C(2147484672)},   // to 2^32 less 512
        {"d", 2, Q_INT64_C(4294967296)},                       // 2^32
        {"e", Q_INT64_C(4294965760), Q_INT64_C(4294968320)},   // to 2^33 less 512
        {"f", 3, Q_INT64_C(8589934592)},                       // 2^33
        {"g", Q_INT64_C(68719476735), Q_INT64_C(8589935616)},  // the greatest size
        {"h", 4, Q_INT64_C(77309412864)},                      // beyond 2^36
        {"i", Q_INT64_C(68719476735), Q_INT64_C(77309413888)}, //
        {"j", 5, Q_INT64_C(146028891136)},                     // beyond 2^37
    }};
    QFile file(folder.filePath(QStringLiteral("a.tar")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QStringList members;
    for (const Part &part : parts) {
        const QByteArray size = QByteArray::number(part.size, 8).rightJustified(12, '0');
        QVERIFY(file.seek(part.position));
        QCOMPARE(file.write(Header{part.name, size}.bytes()), qint64(kBlock));
        if (part.size < kBlock) {
            const QByteArray data(static_cast<int>(part.size), *part.name);
            QCOMPARE(file.write(blocks(data)), qint64(kBlock));
        }
        members += text(1, QLatin1String(part.name), part.size, part.position);
    }
    QCOMPARE(file.write(kEnd), qint64(kEnd.size()));
    file.close();

    const MessageRecorder recorder;
    CTar archive;
    QVERIFY2(archive.loadFile(file.fileName()), qPrintable(archive.error()));
    verifyMembers(archive, members);
    for (int i = archive.count() - 1; i >= 0; --i) {
        const Part &part = parts[static_cast<std::size_t>(i)];
        if (part.size < kBlock)
            verifyData(archive, i, QByteArray(static_cast<int>(part.size), *part.name));
    }
    QCOMPARE(archive.error(), QString());

    // The last member is cut.
    QVERIFY(file.resize(Q_INT64_C(146028891136) + kBlock + 2));
    QByteArray data;
    QVERIFY(!archive.file(9, data));
    QCOMPARE(archive.error(), tooFewBytes(2, 5));
    QCOMPARE(data, QByteArray("jj"));
    QVERIFY(!archive.loadFile(file.fileName()));
    QCOMPARE(archive.error(), tooShort(0));
    verifyMembers(archive, members);
    QCOMPARE(recorder.messages(), QStringList());
}

// The table of contents costs one seek and one read of a block a member, and so does the end; data
// are read when they are asked for, at once.
void tst_CTar::fileCalls()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(
        folder, member("a", pattern(3000)) + member("b", "") + member("c", pattern(70000)) + kEnd);
    QVERIFY(!path.isEmpty());
    const MessageRecorder recorder;
    CTar archive;
    QStringList calls;
    bool isLoaded = false;
    int found = -1;
    QByteArray data;
    {
        const FileCalls recorded;
        isLoaded = archive.loadFile(path);
        calls = recorded.calls();
    }
    QVERIFY(isLoaded);
    QCOMPARE(calls,
             (QStringList{QStringLiteral("seek 0"), QStringLiteral("read 512"),
                          QStringLiteral("seek 3584"), QStringLiteral("read 512"),
                          QStringLiteral("seek 4096"), QStringLiteral("read 512"),
                          QStringLiteral("seek 74752"), QStringLiteral("read 512")}));
    {
        const FileCalls recorded;
        for (int i = 0; i < archive.count(); ++i) {
            if (archive.names().at(i) == QLatin1String("c"))
                found = archive.index(archive.infos().at(i).name);
            data += archive.info(i).name.toLatin1();
        }
        calls = recorded.calls();
    }
    QCOMPARE(calls, QStringList());
    QCOMPARE(found, 2);
    QCOMPARE(data, QByteArray("abc"));
    bool isRead = false;
    {
        const FileCalls recorded;
        isRead = archive.file(2, data);
        calls = recorded.calls();
    }
    QVERIFY(isRead);
    QCOMPARE(data, pattern(70000));
    QCOMPARE(calls, (QStringList{QStringLiteral("seek 4608"), QStringLiteral("read 70000")}));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTar::translations_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<QByteArray>("bytes"); // of the archive; none if null
    QTest::addColumn<int>("index");        // to be read, or -2 for a name
    QTest::addColumn<QString>("error");
    const QByteArray good = member("a", "A") + kEnd;
    QTest::newRow("too short") << QStringLiteral(
        "ERROR : The file ist too short. Only %1 bytes read but %2 expected !")
                               << QStringLiteral("Zu kurz: %2 erwartet, %1 gelesen")
                               << QByteArray("x") << 0
                               << QStringLiteral("Zu kurz: 512 erwartet, 1 gelesen");
    QTest::newRow("not a tar archive")
        << QStringLiteral("ERROR : This is not a tar archive. Header.magic = \"%1\" but "
                          "\"ustar\" was expected !")
        << QStringLiteral("Kein Archiv: %1") << QByteArray(512, 'x') << 0
        << QStringLiteral("Kein Archiv: 512");
    QTest::newRow("not open") << QStringLiteral("ERROR: You must open an archive first !")
                              << QStringLiteral("Kein Archiv ge\u00f6ffnet") << QByteArray() << 0
                              << QStringLiteral("Kein Archiv ge\u00f6ffnet");
    QTest::newRow("index") << QStringLiteral(
        "ERROR: Index %1 must be between the limits 0 and %2. !")
                           << QStringLiteral("%2 Dateien, nicht %1") << good << 7
                           << QStringLiteral("1 Dateien, nicht 7");
    QTest::newRow("bytes of a member")
        << QStringLiteral("ERROR: %1 bytes read but %2 are expected !")
        << QStringLiteral("%2 erwartet, %1 gelesen") << good.left(512) << 0
        << QStringLiteral("1 erwartet, 0 gelesen");
    QTest::newRow("name") << QStringLiteral("ERROR: File \"%1\" does not exist in the archive !")
                          << QStringLiteral("Datei \"%1\" fehlt") << good << -2
                          << QStringLiteral("Datei \"%1\" fehlt");
}

void tst_CTar::translations()
{
    QFETCH(QString, source);
    QFETCH(QString, translation);
    QFETCH(QByteArray, bytes);
    QFETCH(int, index);
    QFETCH(QString, error);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = written(folder, bytes);
    QVERIFY(!path.isEmpty());
    const auto lastError = [&] {
        CTar archive;
        if (!bytes.isNull() && !archive.loadFile(path) && archive.count() == 0)
            return archive.error();
        QByteArray data;
        if (index == -2)
            archive.file(QStringLiteral("none"), data);
        else
            archive.file(index, data);
        return archive.error();
    };
    const MessageRecorder recorder;
    Translator translator;
    translator.from = source;
    translator.to = translation;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString translated = lastError();
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QCOMPARE(translated, error);
    QVERIFY(lastError().startsWith(QLatin1String("ERROR"))); // the source text again
    QCOMPARE(recorder.messages(), QStringList());
}

QTEST_GUILESS_MAIN(tst_CTar)

#include "tst_CTar.moc"

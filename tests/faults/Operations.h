#ifndef OPERATIONS_H
#define OPERATIONS_H

#include "CCompanyStrings.h"
#include "CDir.h"
#include "CPath.h"
#include "CTar.h"
#include "CTemporaryDir.h"

#include "Playground.h"

#include <QRegularExpression>

#include <cstring>
#include <functional>
#include <memory>

using Lines = QByteArrayList;

//! What an operation says.
struct Result
{
    //! Told: neither that it went well nor that it failed.
    enum Kind { False, True, Told };

    Result(bool ok) : kind(ok ? True : False) { }
    Result(QStringList texts) : kind(Told), told(std::move(texts)) { }
    Result(bool ok, QStringList texts) : kind(ok ? True : False), told(std::move(texts)) { }

    Kind kind;
    QStringList told; //!< a failure may tell less, but nothing else and in no other order
};

//! Does what an operation is about; its file calls are counted and fail.
using Run = std::function<Result()>;

struct Operation
{
    const char *name;
    Lines before;                 //!< the tree it begins with; what all trees have is left out
    std::function<Run()> prepare; //!< what is done first, without faults
    Result::Kind result = Result::True; //!< without faults
    QByteArrayList
        lost;           //!< the entries that it removes with all below; a failure may lose them too
    Lines made;         //!< the lines that it adds
    QByteArray printed; //!< a pattern: what it prints if it fails
    QByteArray backup;  //!< the line of what it puts aside and removes in the end

    //! \name How it is built, each from the one before
    //! @{
    Operation(const char *theName, Lines lines, Run run)
        : name(theName)
        , before(std::move(lines))
        , prepare([run = std::move(run)] { return run; })
    {
    }
    Operation &prepared(std::function<Run()> first) { return prepare = std::move(first), *this; }
    Operation &fails() { return result = Result::False, *this; }
    Operation &tells() { return result = Result::Told, *this; }
    Operation &removes(QByteArrayList names) { return lost = std::move(names), *this; }
    Operation &makes(Lines lines) { return made = std::move(lines), *this; }
    Operation &prints(QByteArray pattern) { return printed = std::move(pattern), *this; }
    Operation &backsUp(QByteArray line) { return backup = std::move(line), *this; }
    //! @}
};

namespace Operations {

// What lies beside in every tree, and what links in the trees lead to: nothing of it may change.
const Lines kOutside{"d out", "f600 out/keep=kept", "d out/sub", "f out/sub/deep=kept too",
                     "d555 out/locked"};

// A tree with all that a tree may hold.
const Lines kTree{"d s",
                  "f s/a=1",
                  "f600 s/b=22",
                  "d s/empty",
                  "d555 s/ro",
                  "d s/deep",
                  "d s/deep/er",
                  "d s/deep/er/est",
                  "f s/deep/er/est/x=4444",
                  "d s/.hidden",
                  "f s/.hidden/h=5",
                  "f s/.dot=6",
                  "l s/file>../out/keep",
                  "l s/directory>../out/sub",
                  "l s/inside>a",
                  "l s/broken>gone",
                  "p s/pipe"};

// Its copy below "t": no hidden entries, links to files as files, to directories as empty ones.
const Lines kCopy{
    "f t/a=1",          "f600 t/b=22",      "d775 t/empty",       "d775 t/ro",
    "d775 t/deep",      "d775 t/deep/er",   "d775 t/deep/er/est", "f t/deep/er/est/x=4444",
    "f600 t/file=kept", "d775 t/directory", "f t/inside=1"};

// A file that no single read or write takes.
const QByteArray kLong = QByteArray("0123456789abcdef").repeated(2500);

const Lines kTrash{"d home",
                   "d home/.local",
                   "d home/.local/share",
                   "d home/.local/share/Trash",
                   "d home/.local/share/Trash/files",
                   "d home/.local/share/Trash/info"};

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

inline QStringList paths(const QFileInfoList &infos)
{
    QStringList result;
    for (const QFileInfo &info : infos)
        result += info.filePath();
    return result;
}

//! The line of an item in the trash.
inline QByteArray item(const QByteArray &kind, const QByteArray &name)
{
    return kind + " home/.local/share/Trash/files/" + name;
}

//! The line of a record; the path of the tree is "@" and the date "#".
inline QByteArray record(const QByteArray &name, const QByteArray &path)
{
    return "f home/.local/share/Trash/info/" + name + ".trashinfo=[Trash Info]\nPath=@/" + path
        + "\nDeletionDate=#\n";
}

//! Moves a path to the trash; that it is not there is a thing it tells.
inline Run trash(const char *path)
{
    return [path] {
        switch (CDir::moveToTrash(text(path))) {
        case 0:
            return Result(true);
        case 1:
            return Result(false);
        default:
            return Result(false, {text("no such path")});
        }
    };
}

//! A member of an archive, with its padding.
inline QByteArray member(const char *name, char type, const QByteArray &data)
{
    CTar::STarHdr header{};
    qstrncpy(header.name, name, sizeof header.name);
    std::snprintf(header.size, sizeof header.size, "%011o", static_cast<unsigned>(data.size()));
    header.typeflag = type;
    std::memcpy(header.magic, "ustar", sizeof header.magic);
    const int padding = (512 - data.size() % 512) % 512;
    return QByteArray(reinterpret_cast<const char *>(&header), sizeof header) + data
        + QByteArray(padding, '\0');
}

inline QByteArray archive()
{
    return member("first", '0', "one") + member("second/", '5', QByteArray())
        + member("third", '0', QByteArray(700, '3')) + QByteArray(1024, '\0');
}

//! Writes the archive beside the tree's own lines: it has bytes that no line can hold.
inline bool makeArchive()
{
    QFile file(text("archive.tar"));
    return file.open(QIODevice::WriteOnly) && file.write(archive()) == archive().size();
}

//! Loads an archive and reads its members, by the position and by the name.
inline Result readArchive()
{
    CTar tar;
    QStringList told;
    bool ok = tar.loadFile(text("archive.tar"));
    if (!ok && tar.error().isEmpty())
        told += text("a failure without a text");
    const QStringList names = tar.names();
    for (int i = 0; i < tar.count(); ++i) {
        const CTarFileInfo info = tar.info(i);
        told += text("%1 type %2 size %3").arg(info.name).arg(info.type).arg(info.size);
    }
    for (int i = 0; i < tar.count(); ++i) {
        QByteArray byIndex, byName;
        const bool isRead = tar.file(i, byIndex);
        const bool isReadAgain = tar.file(names.at(i), byName);
        ok = ok && isRead && isReadAgain;
        if (isRead)
            told += text("by index ") + QString::fromLatin1(byIndex);
        if (isReadAgain)
            told += text("by name ") + QString::fromLatin1(byName);
    }
    return {ok, told};
}

//! The settings of a file of the installation. Its name is another each time: the framework keeps
//! what it read of a name.
inline Run settings()
{
    static int number = 0;
    const QString name = text("Setup%1.Ini").arg(++number);
    QFile::rename(text("etc/conf/Setup.Ini"), text("etc/conf/") + name);
    return [name] {
        CCreateOnFirstUseSettings settings(name);
        QStringList told;
        for (const char *const key : {"COMPANY/NameShort", "COMPANY/WebUrl", "PRODUCT7/Name"})
            told += settings.settings()->value(text(key)).toString();
        // Those that are built in are another whole, and a file that cannot be read tells nothing.
        const bool isBuiltIn = told
            == QStringList{text("KORVALENT"), text("https://www.korvalent.example"), QString()};
        told.removeAll(QString());
        return Result(isBuiltIn ? QStringList() : told);
    };
}

//! Makes a temporary directory that stays.
inline Result makeTemporaryDir()
{
    CTemporaryDir directory;
    directory.setAutoRemove(false);
    const bool hasPath = !directory.path().isEmpty();
    return {directory.isValid(),
            hasPath == directory.isValid() ? QStringList()
                                           : QStringList(text("a path of nothing"))};
}

//! A temporary directory with content.
inline std::shared_ptr<CTemporaryDir> filledTemporaryDir()
{
    auto directory = std::make_shared<CTemporaryDir>();
    const QByteArray path = QFile::encodeName(directory->path());
    for (const QByteArray line :
         {"f @/a=1", "d @/sub", "f @/sub/b=2", "f @/.dot=3", "l @/link>@/../../tree/out/sub"})
        FileTree::make(QByteArray(line).replace("@", path));
    return directory;
}

//! An absolute path in the tree.
inline QString inTree(const char *path)
{
    return QDir::currentPath() + QLatin1Char('/') + text(path);
}

// Each calls what its name says, with a path in the tree.

inline Run removeFile(const char *path)
{
    return [path] { return CDir::removeFile(text(path)); };
}

inline Run removeDirectory(const char *path)
{
    return [path] { return CDir::removeDirectory(inTree(path)); };
}

inline Run removeTree(const char *path)
{
    return [path] { return CDir::removeDirectoryRecursive(text(path)); };
}

inline Run removeEntry(const char *path)
{
    return [path] { return CDir::removeFileOrDirectory(inTree(path)); };
}

inline Run copyFile(const char *source, const char *target)
{
    return [source, target] { return CDir::copyFile(text(source), text(target)); };
}

inline Run copyFileF(const char *source, const char *target)
{
    return [source, target] { return CDir::copyFileF(text(source), text(target)); };
}

inline Run copyDirectory(const char *target)
{
    return [target] { return CDir::copyDirectory(QString(), text(target)); };
}

inline Run copyTree(const char *source, const char *target)
{
    return [source, target] { return CDir::copyDirectoryRecursive(text(source), text(target)); };
}

// What they print.

inline QByteArray cannotCopy(const QByteArray &target)
{
    return "\nCDir::copyFile unable to copy " + target;
}

inline QByteArray cannotCreate(const QByteArray &target)
{
    return "\nCDir::copyDirectory unable to create " + target;
}

inline QByteArray cannotCopyTree(const QByteArray &target)
{
    return '(' + cannotCopy(target + "/[a-z/]+") + '|' + cannotCreate(target + "/[a-z/]+") + ")?";
}

//! The last part is printed for what is no file.
inline QByteArray cannotRemove(const QByteArray &path)
{
    return "(\n CDir::removeFileOrDirectory: unable to remove @/" + path + "(\n @/" + path
        + "(\n@/[a-z/]+)*\n--------------)?)?";
}

//! The operations that remove.
inline std::vector<Operation> removing()
{
    return {
        Operation("removeFile, a file", {"f a=1"}, removeFile("a")).removes({"a"}),
        Operation("removeFile, a link", {"l a>out/keep"}, removeFile("a")).removes({"a"}),
        Operation("removeDirectory", {"d e"}, removeDirectory("e")).removes({"e"}),
        Operation("removeDirectoryRecursive", kTree, removeTree("s")).removes({"s"}),
        Operation("removeDirectoryRecursive, behind a link and ..", kTree + Lines{"l way>s/deep"},
                  removeTree("way/../deep/er"))
            .removes({"s/deep/er"}),
        Operation("removeDirectoryRecursive, a link", {"l s>out/sub"}, removeTree("s"))
            .removes({"s"}),
        Operation("removeDirectoryRecursive, missing", {}, removeTree("missing/e")),
        Operation("removeDirectoryRecursive, a file", {"f s=1"}, removeTree("s")),
        Operation("removeFileOrDirectory, a file", {"f a=1"}, removeEntry("a"))
            .removes({"a"})
            .prints(cannotRemove("a")),
        Operation("removeFileOrDirectory, a directory", {"d e"}, removeEntry("e"))
            .removes({"e"})
            .prints(cannotRemove("e")),
        Operation("removeFileOrDirectory, a full directory", {"d e", "f e/a=1"}, removeEntry("e"))
            .fails()
            .prints(cannotRemove("e")),
        Operation("removeFilesByPathList", {"d s", "f s/a=1", "d s/e", "f s/e/b=2"}, {})
            .prepared([] {
                const QStringList list = CDir::listFilesAndDirectories(inTree("s"));
                return [list] { return Result(CDir::removeFilesByPathList(list)); };
            })
            .removes({"s"})
            .prints('(' + cannotRemove("s[a-z/]*") + ")*"),
    };
}

//! The operations that copy.
inline std::vector<Operation> copying()
{
    const auto progress = [](int, int) { return true; };
    return {
        Operation("copyFile", {"f640 a=" + kLong}, copyFile("a", "b"))
            .makes({"f640 b=" + kLong})
            .prints(cannotCopy("b")),
        Operation("copyFile, to a missing directory", {"f a=1"}, copyFile("a", "x/y/b"))
            .makes({"d x", "d775 x/y", "f x/y/b=1"})
            .prints(cannotCopy("x/y/b")),
        Operation("copyFile, of a link", {"l a>out/keep"}, copyFile("a", "b"))
            .makes({"f600 b=kept"})
            .prints(cannotCopy("b")),
        Operation("copyFile, behind a link and ..", {"f a=1", "d x", "d x/y", "l way>x/y"},
                  copyFile("a", "way/../b"))
            .makes({"f x/b=1"})
            .prints(cannotCopy("way/../b")),
        Operation("copyFile, over a file", {"f a=1", "f b=old"}, copyFile("a", "b"))
            .fails()
            .prints(cannotCopy("b")),
        Operation("copyFile, of a pipe", {"p a"}, copyFile("a", "b"))
            .fails()
            .prints(cannotCopy("b")),

        Operation("copyFileF", {"f640 a=" + kLong}, copyFileF("a", "b")).makes({"f640 b=" + kLong}),
        Operation("copyFileF, to a missing directory", {"f a=1"}, copyFileF("a", "x/y/b"))
            .makes({"d x", "d775 x/y", "f x/y/b=1"}),
        Operation("copyFileF, over a file", {"f a=1", "f600 b=old"}, copyFileF("a", "b"))
            .removes({"b"})
            .makes({"f b=1"})
            .backsUp("f600 ~b=old"),
        Operation("copyFileF, over a file, of a missing one", {"f b=old"}, copyFileF("a", "b"))
            .fails()
            .removes({"b"})
            .backsUp("f644 ~b=old"),
        Operation("copyFileF, over a file whose backup is there",
                  {"f a=1", "f b=old", "f ~b=older"}, copyFileF("a", "b")),

        Operation("copyDirectory", {}, copyDirectory("x/y"))
            .makes({"d x", "d775 x/y"})
            .prints(cannotCreate("x/y")),
        Operation("copyDirectory, one that is there", {"d700 x"}, copyDirectory("x"))
            .prints(cannotCreate("x")),
        Operation("copyDirectoryRecursive", kTree + Lines{"d t"}, copyTree("s", "t"))
            .makes(kCopy)
            .prints(cannotCopyTree("t")),
        Operation("copyDirectoryRecursive, to a missing directory", {"d s", "d s/d", "f s/d/a=1"},
                  copyTree("s", "t"))
            .makes({"d t", "d775 t/d", "f t/d/a=1"})
            .prints(cannotCopyTree("t")),
        Operation("copyDirectoryRecursive, into itself", {"d s", "f s/a=1", "d s/t", "f s/t/b=2"},
                  copyTree("s", "s/t"))
            .makes({"f s/t/a=1", "d775 s/t/t", "f s/t/t/b=2"})
            .prints(cannotCopyTree("s/t")),
        Operation("copyDirectoryRecursive, over a file", {"d s", "f s/a=1", "d t", "f t/a=old"},
                  copyTree("s", "t"))
            .fails()
            .prints(cannotCopyTree("t")),
        Operation(
            "copyDirectoryRecursive, with progress", {"d s", "f s/a=1"},
            [progress] { return CDir::copyDirectoryRecursive(text("s"), text("t"), progress); })
            .makes({"d775 t", "f t/a=1"})
            .prints(cannotCopyTree("t")),
    };
}

//! The operations that list.
inline std::vector<Operation> listing()
{
    return {
        Operation("entryInfoList, by flags", kTree,
                  [] {
                      return paths(CDir::entryInfoList(text("s"), {},
                                                       QDir::AllEntries | QDir::NoDotAndDotDot));
                  })
            .tells(),
        Operation(
            "entryInfoList, by kind", kTree,
            [] { return paths(CDir::entryInfoList(text("s"), {}, Nk7eGlobal::DIRFILTER_DIRS)); })
            .tells(),
        Operation("entryInfoList, with exclusions", kTree,
                  [] {
                      return paths(CDir::entryInfoList(text("s"), Nk7eGlobal::DIRFILTER_ALL,
                                                       QStringList(text("a"))));
                  })
            .tells(),
        Operation("entryInfoListRecursive, by flags", kTree,
                  [] {
                      return paths(CDir::entryInfoListRecursive(
                          text("s"), QStringList(text("[a-x]")), QDir::Files));
                  })
            .tells(),
        Operation("entryInfoListRecursive, by kind", kTree,
                  [] {
                      return paths(
                          CDir::entryInfoListRecursive(text("s"), {}, Nk7eGlobal::DIRFILTER_ALL));
                  })
            .tells(),
        Operation("listFilesAndDirectories", kTree,
                  [] { return CDir::listFilesAndDirectories(text("s")); })
            .tells(),
        Operation("listFileAndDirInfos", kTree,
                  [] { return paths(CDir::listFileAndDirInfos(text("s"))); })
            .tells(),
    };
}

//! The operations on the trash.
inline std::vector<Operation> trashing()
{
    return {
        Operation("moveToTrash, a file", kTrash + Lines{"f a.txt=1"}, trash("a.txt"))
            .removes({"a.txt"})
            .makes({item("f", "a.txt=1"), record("a.txt", "a.txt")}),
        Operation("moveToTrash, a directory", kTrash + Lines{"d700 d", "f d/a=1", "l d/l>../out"},
                  trash("d/"))
            .removes({"d"})
            .makes(
                {item("d700", "d"), item("f", "d/a=1"), item("l", "d/l>../out"), record("d", "d")}),
        Operation("moveToTrash, a link", kTrash + Lines{"l a>out/keep"}, trash("a"))
            .removes({"a"})
            .makes({item("l", "a>out/keep"), record("a", "a")}),
        Operation("moveToTrash, behind a link and ..",
                  kTrash + Lines{"d x", "d x/y", "f x/a=1", "l way>x/y"}, trash("way/../a"))
            .removes({"x/a"})
            .makes({item("f", "a=1"), record("a", "x/a")}),
        Operation("moveToTrash, a name that is taken by an item",
                  kTrash + Lines{"f a.txt=1", item("f", "a.txt=old"), item("l", "a.2.txt>gone")},
                  trash("a.txt"))
            .removes({"a.txt"})
            .makes({item("f", "a.3.txt=1"), record("a.3.txt", "a.txt")}),
        Operation("moveToTrash, a name that is taken by a record",
                  kTrash + Lines{"f a.txt=1", "f home/.local/share/Trash/info/a.txt.trashinfo=old"},
                  trash("a.txt"))
            .removes({"a.txt"})
            .makes({item("f", "a.2.txt=1"), record("a.2.txt", "a.txt")}),
        Operation("moveToTrash, to the last candidate",
                  {"d home", "d home/.trash", "d home/.trash/files", "f a=1"}, trash("a"))
            .removes({"a"})
            .makes({"f home/.trash/files/a=1"}),
        Operation("moveToTrash, a missing path", kTrash,
                  [] { return Result(CDir::moveToTrash(text("a")) == 0); })
            .fails(),
    };
}

//! The operations on archives, installations, temporary directories and settings.
inline std::vector<Operation> others()
{
    return {
        Operation("CTar", {}, {}).prepared([] { return makeArchive() ? Run(readArchive) : Run(); }),

        Operation("createDirIfWanted", {},
                  [] { return QStringList(CPath::createDirIfWanted(text("x/y"), true)); })
            .tells()
            .makes({"d x", "d775 x/y"}),
        Operation("the directories of an installation", {"d700 bin"},
                  [] {
                      return QStringList{CPath::binPath(true),         CPath::libPath(true),
                                         CPath::etcPath(true),         CPath::txtPath(true),
                                         CPath::imagePath(true),       CPath::docPath(true),
                                         CPath::constConfigPath(true), CPath::constDataPath(true)};
                  })
            .tells()
            .makes({"d775 lib", "d775 etc", "d775 etc/txt", "d775 etc/image", "d775 etc/doc",
                    "d775 etc/conf", "d775 etc/data"}),

        Operation("CTemporaryDir, made", {}, makeTemporaryDir)
            .makes({"d700 @temporary/tst_Faults-XXXXXX"}),
        Operation("CTemporaryDir, removed", {}, {})
            .prepared([] {
                const auto directory = filledTemporaryDir();
                return [directory] { return Result(directory->remove()); };
            })
            .removes({"@temporary/tst_Faults-XXXXXX"}),
        Operation("CTemporaryDir, destroyed", {}, {})
            .prepared([] {
                // The function is copied, and with it its directory; this is shared.
                const auto owner
                    = std::make_shared<std::shared_ptr<CTemporaryDir>>(filledTemporaryDir());
                return [owner] {
                    owner->reset();
                    return Result(QStringList());
                };
            })
            .tells()
            .removes({"@temporary/tst_Faults-XXXXXX"}),

        Operation("settings of a file",
                  {"d etc", "d etc/conf",
                   "f etc/conf/Setup.Ini=[COMPANY]\nNameShort=Short\nWebUrl=https://a.example\n"
                   "[PRODUCT7]\nName=Seven\n"},
                  {})
            .prepared(settings)
            .tells(),
        Operation("settings that are built in", {}, {})
            .prepared(settings)
            .tells()
            .makes({"d etc", "d775 etc/conf"}),
        Operation(
            "getImageFile", {},
            [] { return QStringList(CCompanyStrings::getImageFile(text("COMPANY/Logo_16x16"))); })
            .tells()
            .makes({"d etc", "d775 etc/image"}),
        Operation("getProductExeFile", {},
                  [] { return QStringList(CCompanyStrings::getProductExeFile(101)); })
            .tells()
            .makes({"d775 bin"}),
    };
}

inline std::vector<Operation> joined(const std::vector<std::vector<Operation>> &groups)
{
    std::vector<Operation> operations;
    for (const std::vector<Operation> &group : groups)
        operations.insert(operations.end(), group.begin(), group.end());
    return operations;
}

inline std::vector<Operation> all()
{
    return joined({removing(), copying(), listing(), trashing(), others()});
}

} // namespace Operations

#endif // OPERATIONS_H

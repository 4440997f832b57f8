#ifndef PLAYGROUND_H
#define PLAYGROUND_H

#include "../FileTree.h"

#include <QByteArrayList>
#include <QMap>
#include <QTemporaryDir>

//! A directory of a fixed name in which a tree is made again and again. The tree, @/tree, is the
//! current directory; temporary files go to @/temporary; the umask is 022.
class Playground
{
public:
    Playground()
    {
        umask(022);
        mBase = QFile::encodeName(QDir(mDir.path()).canonicalPath());
        mRoot = mBase + "/tree";
        mTemporary = mBase + "/temporary";
        qputenv("TMPDIR", mTemporary);
        qputenv("HOME", mRoot + "/home");
        qunsetenv("XDG_DATA_HOME");
    }
    ~Playground()
    {
        if (chdir("/") == 0)
            clear(AT_FDCWD, mBase.constData());
    }

    bool isValid() const { return mDir.isValid(); }

    //! The path of all that belongs to it.
    QByteArray base() const { return mBase; }
    //! The path of the tree.
    QByteArray root() const { return mRoot; }
    QByteArray temporary() const { return mTemporary; }

    //! Makes the tree that \a lines describe, in the place of the one before.
    bool make(const QByteArrayList &lines) const
    {
        if (chdir("/") != 0)
            return false;
        clear(AT_FDCWD, mBase.constData());
        return mkdir(mRoot.constData(), 0755) == 0 && mkdir(mTemporary.constData(), 0755) == 0
            && chdir(mRoot.constData()) == 0
            && std::all_of(lines.begin(), lines.end(), &FileTree::make);
    }

    //! The description of the tree, and of the temporary files.
    QByteArrayList lines() const
    {
        QByteArrayList lines = FileTree::linesOf(mRoot);
        const QByteArrayList temporary = FileTree::linesOf(mTemporary);
        for (const QByteArray &line : temporary)
            lines += line.left(line.indexOf(' ') + 1) + "@temporary/"
                + line.mid(line.indexOf(' ') + 1);
        return lines;
    }

private:
    Q_DISABLE_COPY(Playground)

    // Removes what lies in a directory, also where it may not be read.
    static void clear(int parent, const char *path)
    {
        fchmodat(parent, path, 0700, 0);
        const int fd = openat(parent, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        DIR *const directory = fd < 0 ? nullptr : fdopendir(fd);
        if (!directory)
            return;
        while (const dirent *const entry = readdir(directory)) {
            const QByteArray name = entry->d_name;
            if (name == "." || name == ".." || unlinkat(fd, name.constData(), 0) == 0)
                continue;
            clear(fd, name.constData());
            unlinkat(fd, name.constData(), AT_REMOVEDIR);
        }
        closedir(directory);
    }

    // In memory if nothing else is wanted: it is made some ten thousand times.
    static QString place()
    {
        for (const QByteArray &path : {qgetenv("TMPDIR"), QByteArray("/dev/shm")}) {
            if (!path.isEmpty() && access(path.constData(), R_OK | W_OK | X_OK) == 0)
                return QFile::decodeName(path) + QStringLiteral("/k7e-XXXXXX");
        }
        return QStringLiteral("/tmp/k7e-XXXXXX");
    }

    const QTemporaryDir mDir{place()};
    const LocalEncoding mEncoding{"UTF-8"};
    QByteArray mBase;
    QByteArray mRoot;
    QByteArray mTemporary;
};

//! The name in a line of a tree; that of a link or a file may not hold "=" or ">".
inline QByteArray nameOf(const QByteArray &line)
{
    const int begin = line.indexOf(' ') + 1;
    const auto isEnd = [](char byte) { return byte == '=' || byte == '>'; };
    const auto end = std::find_if(line.begin() + begin, line.end(), isEnd);
    return line.mid(begin, static_cast<int>(end - line.begin()) - begin);
}

//! Whether \a name is one of \a places or lies below it.
inline bool isBelow(const QByteArray &name, const QByteArrayList &places)
{
    return std::any_of(places.begin(), places.end(), [&name](const QByteArray &place) {
        return name == place || name.startsWith(place + '/');
    });
}

//! What became of the tree \a before in \a after: "-a" an entry that is gone, "+a" one that is new,
//! "mode a" one with another mode only, "content a" one that is another in any way.
inline QByteArrayList changes(const QByteArrayList &before, const QByteArrayList &after)
{
    QMap<QByteArray, QByteArray> now;
    for (const QByteArray &line : after)
        now.insert(nameOf(line), line);
    QByteArrayList result;
    for (const QByteArray &line : before) {
        const QByteArray name = nameOf(line);
        const QByteArray other = now.take(name);
        if (other.isNull())
            result += '-' + name;
        else if (other == line)
            continue;
        else if (other.front() == line.front()
                 && other.mid(other.indexOf(' ')) == line.mid(line.indexOf(' ')))
            result += "mode " + name;
        else
            result += "content " + name;
    }
    for (const QByteArray &name : now.keys())
        result += '+' + name;
    return result;
}

#endif // PLAYGROUND_H

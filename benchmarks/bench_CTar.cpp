#include "Pairs.h"

#include "CTar.h"

#include <QTemporaryDir>

#include <archive.h>
#include <archive_entry.h>

#include <cstdlib>
#include <memory>
#include <vector>

// The table of contents of an archive, and all data in it, beside libarchive reading the same file.

namespace {

constexpr int kMembers = 20000;
constexpr int kBytes = 3000;

// An archive in a directory of its own.
class Archive
{
public:
    Archive()
    {
        archive *out = archive_write_new();
        archive_write_set_format_ustar(out);
        archive_write_open_filename(out, mFile.constData());
        const QByteArray data(kBytes, 'x');
        for (int i = 0; i < kMembers; ++i) {
            archive_entry *entry = archive_entry_new();
            const QByteArray name = "folder/member" + QByteArray::number(i);
            archive_entry_set_pathname(entry, name.constData());
            archive_entry_set_size(entry, kBytes);
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_perm(entry, 0644);
            archive_write_header(out, entry);
            archive_write_data(out, data.constData(), kBytes);
            archive_entry_free(entry);
            mNames += QString::fromLatin1(name);
        }
        if (archive_write_close(out) != ARCHIVE_OK)
            std::abort();
        archive_write_free(out);
    }

    QString fileName() const { return QString::fromLocal8Bit(mFile); }
    QStringList names() const { return mNames; }

    // Reads the archive with libarchive, and the data too if 'withData' is set; returns the bytes.
    qint64 readByPeer(bool withData) const
    {
        archive *in = archive_read_new();
        archive_read_support_format_tar(in);
        archive_read_open_filename(in, mFile.constData(), 10240);
        archive_entry *entry = nullptr;
        qint64 bytes = 0;
        while (archive_read_next_header(in, &entry) == ARCHIVE_OK) {
            if (!withData)
                continue;
            QByteArray data(static_cast<int>(archive_entry_size(entry)), Qt::Uninitialized);
            bytes += archive_read_data(in, data.data(), static_cast<std::size_t>(data.size()));
        }
        archive_read_free(in);
        return bytes;
    }

private:
    QTemporaryDir mDir;
    QByteArray mFile = mDir.filePath(QStringLiteral("members.tar")).toLocal8Bit();
    QStringList mNames;
};

void addTarPairs()
{
    const auto archive = std::make_shared<Archive>();
    Pairs::add(
        "CTar::loadFile of 20 000", {0.75, 0, -1},
        [archive] {
            CTar tar;
            return tar.loadFile(archive->fileName());
        },
        [archive] { return archive->readByPeer(false); });
    const auto tar = std::make_shared<CTar>();
    if (!tar->loadFile(archive->fileName()))
        std::abort();
    Pairs::add(
        "CTar::file of 20 000, by name", {1, 0, -1},
        [archive, tar] {
            qint64 bytes = 0;
            QByteArray data;
            const QStringList names = archive->names();
            for (const QString &name : names) {
                tar->file(name, data);
                bytes += data.size();
            }
            return bytes;
        },
        [archive] { return archive->readByPeer(true); });
}

const Pairs::Group kGroup(&addTarPairs);

} // namespace

#include "CTar.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr std::size_t kBlock = 512;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// What the bytes hold, read without the library.

struct Member
{
    int type;
    std::string name;
    std::string linkName;
    std::uint64_t size;
    std::uint64_t position;
};

struct Archive
{
    std::vector<Member> members;
    bool isWhole = false;
    std::string error;
};

std::string field(const std::uint8_t *block, std::size_t offset, std::size_t width)
{
    const char *const begin = reinterpret_cast<const char *>(block + offset);
    return std::string(begin, strnlen(begin, width));
}

// White space of Latin-1.
bool isBlank(char character)
{
    const auto code = static_cast<std::uint8_t>(character);
    return code == ' ' || (code >= 9 && code <= 13) || code == 0x85 || code == 0xa0;
}

std::optional<std::uint64_t> octalNumber(const std::string &text)
{
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    if (begin == end)
        return std::nullopt;
    std::uint64_t number = 0;
    for (std::size_t i = begin; i < end; ++i) {
        if (text[i] < '0' || text[i] > '7')
            return std::nullopt;
        number = number * 8 + static_cast<std::uint64_t>(text[i] - '0');
    }
    return number;
}

int typeOf(std::uint8_t typeflag)
{
    switch (typeflag) {
    case 0:
    case '0':
        return 1;
    case '2':
        return 2;
    case '5':
        return 3;
    default:
        return 0;
    }
}

Archive plainRead(const std::uint8_t *data, std::size_t size)
{
    Archive archive;
    std::uint64_t position = 0;
    for (;;) {
        const std::uint64_t left = position < size ? size - position : 0;
        if (left < kBlock) {
            archive.error = "ERROR : The file ist too short. Only " + std::to_string(left)
                + " bytes read but 512 expected !";
            return archive;
        }
        const std::uint8_t *const block = data + position;
        bool isZero = true;
        for (std::size_t i = 0; i < kBlock; ++i)
            isZero = isZero && block[i] == 0;
        if (isZero) {
            archive.isWhole = true;
            return archive;
        }
        if (field(block, 257, 5) != "ustar") {
            archive.error = "ERROR : This is not a tar archive. Header.magic = \"512\" but "
                            "\"ustar\" was expected !";
            return archive;
        }
        const std::optional<std::uint64_t> bytes = octalNumber(field(block, 124, 12));
        if (!bytes)
            return archive;
        archive.members.push_back(
            {typeOf(block[156]), field(block, 0, 100), field(block, 157, 100), *bytes, position});
        position += kBlock + (*bytes + kBlock - 1) / kBlock * kBlock;
    }
}

// A file in memory.
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t *data, std::size_t size)
        : mDescriptor(memfd_create("archive", MFD_CLOEXEC))
    {
        require(mDescriptor >= 0);
        while (size > 0) {
            const ssize_t bytes = write(mDescriptor, data, size);
            require(bytes > 0);
            data += bytes;
            size -= static_cast<std::size_t>(bytes);
        }
    }
    ~MemoryFile() { close(mDescriptor); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(mDescriptor); }

private:
    int mDescriptor;
};

// The data of a member as far as the archive has them.
QByteArray dataOf(const Member &member, const QByteArray &bytes)
{
    const std::uint64_t begin = member.position + kBlock;
    const auto size = static_cast<std::uint64_t>(bytes.size());
    const std::uint64_t left = begin < size ? size - begin : 0;
    const std::uint64_t there = member.size < left ? member.size : left;
    return QByteArray(bytes.constData() + (there > 0 ? begin : 0), static_cast<int>(there));
}

// Requires that what was read of a member is all there is, and the text if that is too little.
void checkData(bool isRead, const QByteArray &data, const QString &error, const Member &member,
               const QByteArray &bytes)
{
    const QByteArray expected = dataOf(member, bytes);
    require(data == expected);
    require(isRead == (static_cast<std::uint64_t>(expected.size()) == member.size));
    const std::string text = "ERROR: " + std::to_string(expected.size()) + " bytes read but "
        + std::to_string(member.size) + " are expected !";
    require(isRead || error.toStdString() == text);
}

} // namespace

// The bytes are an archive. All of it is compared with what a plain walk finds, so that an input
// that ends early does so for a known reason.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Archive expected = plainRead(data, size);
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const MemoryFile file(data, size);
    CTar archive;
    require(archive.loadFile(file.path()) == expected.isWhole);
    require(archive.error().toStdString() == expected.error);

    const QStringList names = archive.names();
    const QList<CTarFileInfo> infos = archive.infos();
    const int count = static_cast<int>(expected.members.size());
    require(archive.count() == count && names.size() == count && infos.size() == count);
    for (int i = 0; i < count; ++i) {
        const Member &member = expected.members[static_cast<std::size_t>(i)];
        const CTarFileInfo info = archive.info(i);
        require(info.type == member.type && info.isValid() == (member.type != 0));
        require(info.name == QString::fromLatin1(member.name.c_str()) && names.at(i) == info.name);
        require(info.linkName == QString::fromLatin1(member.linkName.c_str()));
        require(static_cast<std::uint64_t>(info.size) == member.size);
        require(static_cast<std::uint64_t>(info.position) == member.position);
        require(infos.at(i).position == info.position && infos.at(i).size == info.size);

        QByteArray content("before");
        const bool isRead = archive.file(i, content);
        checkData(isRead, content, archive.error(), member, bytes);

        const int first = names.indexOf(info.name);
        require(archive.index(info.name) == first);
        content = "before";
        const bool isReadByName = archive.file(info.name, content);
        checkData(isReadByName, content, archive.error(),
                  expected.members[static_cast<std::size_t>(first)], bytes);
    }

    QByteArray content("before");
    require(!archive.file(-1, content) && !archive.file(count, content));
    require(archive.index(QStringLiteral("\u4e2d")) == -1); // no name of Latin-1
    require(!archive.file(QStringLiteral("\u4e2d"), content) && content == "before");
    require(archive.info(-1).name.isEmpty() && !archive.info(count).isValid());

    // What was loaded before does not matter.
    require(archive.loadFile(file.path()) == expected.isWhole && archive.names() == names);
    return 0;
}

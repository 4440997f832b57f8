#include "CVariant.h"
#include "ForeignStreams.h"

#include <QMetaType>
#include <QVector>

#include <sys/resource.h>

#include <cstdio>
#include <cstring>

// "instructions SIZE" reads each kind of content three times, of SIZE bytes, of twice and of four
// times as many; "limited" reads contents there is no memory for, and prints what comes of each.

namespace {

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &)
{
}

// Runs out of memory before any content is there.
using Numbers = QVector<double>;

void setMemoryLimit(rlim_t bytes)
{
    rlimit limit = {bytes, bytes};
    if (setrlimit(RLIMIT_AS, &limit) != 0)
        std::perror("setrlimit");
}

int readLimited()
{
    using namespace ForeignStreams;
    qRegisterMetaTypeStreamOperators<Numbers>("Numbers");
    constexpr int kLarge = 200 << 20;
    const QByteArray contents[] = {
        head(10) + counted(QByteArray(kLarge, 'a')),
        head(12) + counted(QByteArray(kLarge, 'a')),
        head(9) + number(1) + head(12) + counted(QByteArray(kLarge, 'a')),
        head(53) + counted(QByteArray::fromHex("9a3fffffff")),
        head(54) + counted(QByteArray(5000, '\x9B') + QByteArray(8, '\x0F')),
        named("Numbers") + number(0x7FFFFFF0),
        head(47) + counted('[' + QByteArray("[0],").repeated(8 << 20) + "1]"),
        head(45) + '\5' + counted('[' + QByteArray("{\"\":1},").repeated(4 << 20) + "1]"),
    };
    setMemoryLimit(800 << 20);
    for (const QByteArray &content : contents) {
        QDataStream in(content);
        CVariant value(7);
        in >> value;
        std::printf("%d %s\n", static_cast<int>(in.status()),
                    static_cast<QVariant>(value).isValid() ? "valid" : "invalid");
    }
    return 0;
}

} // namespace

// The profiler counts each call of it apart.
extern "C" Q_DECL_EXPORT Q_NEVER_INLINE void readForeign(const QByteArray &bytes)
{
    QDataStream in(bytes);
    CVariant value;
    in >> value;
}

int main(int argc, char **argv)
{
    qInstallMessageHandler(ignoreMessage);
    if (argc == 2 && std::strcmp(argv[1], "limited") == 0)
        return readLimited();
    if (argc != 3 || std::strcmp(argv[1], "instructions") != 0)
        return 2;
    const int size = QByteArray(argv[2]).toInt();
    for (const ForeignStreams::Kind &kind : ForeignStreams::kinds()) {
        {
            QDataStream in(kind.make(size)); // what is done once is done
            CVariant value;
            in >> value;
        }
        for (const int factor : {1, 2, 4})
            readForeign(kind.make(factor * size));
    }
    return 0;
}

#include <CCompanyStrings.h>
#include <CPath.h>
#include <CStr.h>
#include <CTime.h>
#include <CUnitParser.h>
#include <CVariant.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDataStream>
#include <QDir>
#include <QLocale>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

// Eight threads meet all types of the library and its settings for the first time, at once. Each has
// values of its own.

namespace {

constexpr int kThreads = 8;

//! Lets all threads go when the last one has come.
void waitForAll()
{
    static std::atomic<int> waiting{kThreads};
    --waiting;
    while (waiting > 0)
        std::this_thread::yield();
}

bool comesBack(const CVariant &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    QDataStream in(bytes);
    CVariant read;
    in >> read;
    const QVariant content = read;
    return in.status() == QDataStream::Ok && in.atEnd() && read.type() == value.type()
        && read.toStr() == value.toStr() && read.toHex() == value.toHex() && content.isValid()
        && !(read < value) && read == value;
}

bool usesTypes()
{
    bool isRight = true;
    for (int code = NTypes::TYPE_U8; code <= NTypes::TYPE_CHAR; ++code) {
        const auto type = static_cast<NTypes::ETypes>(code);
        if (type != NTypes::TYPE_F80)
            isRight &= comesBack(CVariant(QStringLiteral("7"), type));
    }
    const CString64 text(QStringLiteral("axis"));
    return isRight && QVariant::fromValue(text).value<CString64>() == text
        && CUnitParser::type(QStringLiteral("UNIT_J")) == NTypes::TYPE_F64
        && CTime::unit(QStringLiteral("ms")) == CTime::MS;
}

bool usesSettings()
{
    return CCompanyStrings::getCompanyShortName() == QStringLiteral("KORVALENT")
        && !CCompanyStrings::getCompanyLongName().isEmpty()
        && CCompanyStrings::getProductName(7) == QStringLiteral("PRODUCT7")
        && CStr::createShortApplicationTitle(QLocale::c(), QStringLiteral("Scope"),
                                             QStringLiteral("1.60"), QString(), 0)
        == QStringLiteral("KORVALENT Scope - V1.60");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    std::atomic<int> successes{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&successes, i] {
            waitForAll();
            // Every other thread begins with the settings.
            const bool isRight
                = i % 2 == 0 ? usesTypes() && usesSettings() : usesSettings() && usesTypes();
            successes += isRight ? 1 : 0;
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QDir(CPath::etcPath()).removeRecursively(); // which the settings made
    std::printf("%d of %d threads\n", successes.load(), kThreads);
    return successes == kThreads ? 0 : 1;
}

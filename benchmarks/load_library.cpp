#include <QCoreApplication>
#include <QSet>

#include <chrono>
#include <cstdio>

#include <dlfcn.h>

// A program of Qt Core alone. It loads the libraries named by its arguments and writes how many
// nanoseconds the last one took.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // With the first hash of a text, Qt asks for the processor's features: a program has done so.
    const QSet<QString> used{QCoreApplication::applicationName()};
    if (used.isEmpty())
        return 1;
    std::chrono::steady_clock::duration last{};
    const QStringList libraries = QCoreApplication::arguments().mid(1);
    for (const QString &library : libraries) {
        const QByteArray name = library.toLocal8Bit();
        const auto start = std::chrono::steady_clock::now();
        if (dlopen(name.constData(), RTLD_NOW | RTLD_GLOBAL) == nullptr)
            return 1;
        last = std::chrono::steady_clock::now() - start;
    }
    const auto nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(last);
    std::printf("%lld\n", static_cast<long long>(nanoseconds.count()));
    return 0;
}

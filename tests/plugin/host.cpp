#include <QByteArray>
#include <QDataStream>
#include <QVariant>

#include <cstdio>
#include <cstring>

#include <dlfcn.h>

// A program that does not link the library: it meets it in a plug-in that it loads and closes.
//
//     host PLUGIN FUNCTION OTHER...
//
// FUNCTION of the plug-in makes a value, the plug-in is closed, the other libraries take its place,
// and then the value is used as any QVariant; last the plug-in is loaded again. With "-" no value is
// made, but the plug-in used both times.

namespace {

void *load(const char *file)
{
    void *const library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        std::printf("%s\n", dlerror());
    return library;
}

bool isLoaded(const char *file)
{
    return dlopen(file, RTLD_LAZY | RTLD_NOLOAD) != nullptr;
}

bool use(void *plugin)
{
    const auto function = reinterpret_cast<bool (*)()>(dlsym(plugin, "use"));
    return function != nullptr && function();
}

QByteArray streamed(const QVariant &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

// A copy, its detachment, its way through a stream and its end all go through Qt's tables of types.
bool isSound(const QVariant &value, const QByteArray &before)
{
    QVariant copy = value;
    copy.data();
    QDataStream in(before);
    QVariant read;
    in >> read;
    return streamed(copy) == before && in.status() == QDataStream::Ok && streamed(read) == before;
}

int failure(const char *text)
{
    std::printf("%s\n", text);
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 3)
        return failure("usage: host PLUGIN FUNCTION OTHER...");
    const char *const file = argv[1];
    const bool makesValue = std::strcmp(argv[2], "-") != 0;

    void *plugin = load(file);
    if (plugin == nullptr)
        return 1;
    QVariant value;
    QByteArray before;
    if (makesValue) {
        const auto make = reinterpret_cast<void (*)(QVariant &)>(dlsym(plugin, argv[2]));
        if (make == nullptr)
            return failure("no such function");
        make(value);
        before = streamed(value);
    } else if (!use(plugin)) {
        return failure("wrong at first");
    }
    if (dlclose(plugin) != 0 || isLoaded(file))
        return failure("the plug-in stays");
    for (int i = 3; i < argc; ++i) {
        if (load(argv[i]) == nullptr)
            return 1;
    }
    if (makesValue && (before.size() < 8 || !isSound(value, before)))
        return failure("the value is spoilt");
    plugin = load(file);
    if (plugin == nullptr || !use(plugin))
        return failure("wrong at last");
    return 0;
}

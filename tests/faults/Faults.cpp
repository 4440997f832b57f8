#include "Faults.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <random>
#include <type_traits>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The state of the one thread that is armed. It is made in the first use and never destroyed: the
// last files are closed when static objects are gone.
struct State
{
    std::string path;
    Faults::Plan plan;
    Faults::Support support = Faults::Support::Full;
    std::vector<Faults::Call> calls;
};

State &state()
{
    static State *const state = new State;
    return *state;
}

std::string &hidden()
{
    static std::string *const path = new std::string;
    return *path;
}

thread_local bool isArmed = false;

// Calls that are made meanwhile are not counted.
class Pause
{
public:
    Pause() : mBefore(isArmed) { isArmed = false; }
    ~Pause() { isArmed = mBefore; }

private:
    const bool mBefore;
};

// The function that the next library has under this name. 'Own' is the one of this library, which
// tells the type and makes one variable for each.
template <auto Own>
decltype(Own) next(const char *name)
{
    static const auto function = reinterpret_cast<decltype(Own)>(dlsym(RTLD_NEXT, name));
    return function;
}

// What a call names.
struct Place
{
    int descriptor;
    const char *path; // relative to the descriptor; null or empty: the descriptor itself
};

Place at(const char *path)
{
    return {AT_FDCWD, path};
}

Place of(int descriptor)
{
    return {descriptor, nullptr};
}

std::string pathOf(int descriptor)
{
    char buffer[PATH_MAX];
    if (descriptor == AT_FDCWD)
        return getcwd(buffer, sizeof buffer) ? buffer : std::string();
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = ::readlink(link.c_str(), buffer, sizeof buffer);
    return size < 0 ? std::string() : std::string(buffer, static_cast<size_t>(size));
}

std::string pathOf(const Place &place)
{
    if (!place.path || !*place.path)
        return pathOf(place.descriptor);
    if (*place.path == '/')
        return place.path;
    return pathOf(place.descriptor) + '/' + place.path;
}

bool isBelow(const std::string &path, const std::string &directory)
{
    return path.compare(0, directory.size(), directory) == 0
        && (path.size() == directory.size() || path[directory.size()] == '/');
}

enum class Verdict { Pass, Fail, Half };

// Whether a call that not all file systems know is one too many here. It is not counted: what is
// not there cannot fail.
bool isUnknown(const char *name)
{
    constexpr const char *unknown[] = {"renameat2", "sendfile", "copy_file_range"};
    return state().support == Faults::Support::Plain
        && std::any_of(std::begin(unknown), std::end(unknown),
                       [name](const char *each) { return std::strcmp(each, name) == 0; });
}

// Counts a call, and says what is to become of it. Sets errno if it is to fail, and keeps it
// otherwise. One call may name two places.
Verdict judge(const char *name, const Place &place, const Place *other = nullptr)
{
    if (!isArmed)
        return Verdict::Pass;
    const Pause pause;
    const int errorBefore = errno;
    State &now = state();
    Faults::Call call{name, pathOf(place), false};
    if (!isBelow(call.path, now.path) && other)
        call.path = pathOf(*other);
    errno = errorBefore;
    if (!isBelow(call.path, now.path))
        return Verdict::Pass;
    if (isUnknown(name)) {
        errno = EINVAL;
        return Verdict::Fail;
    }
    if (!place.path)
        call.isWritten = (fcntl(place.descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
    now.calls.push_back(call);
    const auto number = static_cast<int>(now.calls.size());
    const Faults::Plan &plan = now.plan;
    if (plan.first == 0 || number < plan.first || number - plan.first >= plan.count)
        return Verdict::Pass;
    if (plan.before) {
        plan.before(plan.context);
        errno = errorBefore;
        return Verdict::Pass;
    }
    if (plan.error == 0)
        return Verdict::Half;
    errno = plan.error;
    return Verdict::Fail;
}

bool isHidden(const Place &place)
{
    if (hidden().empty() || !place.path || hidden() != place.path)
        return false;
    errno = ENOENT;
    return true;
}

// The name without the mark of the variant.
template <auto Own>
const char *plainName(const char *name)
{
    static const char *const plain = [name] {
        const size_t size = std::strlen(name);
        const bool isMarked = size > 2 && std::strcmp(name + size - 2, "64") == 0;
        return strndup(name, isMarked ? size - 2 : size);
    }();
    return plain;
}

template <class Result>
Result failure()
{
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else
        return Result{-1};
}

// Lets a call fail, or passes it on.
template <auto Own, class... Types>
auto call(const char *name, const Place &place, Types... arguments)
{
    using Result = decltype(Own(arguments...));
    if (isHidden(place) || judge(plainName<Own>(name), place) == Verdict::Fail)
        return failure<Result>();
    return next<Own>(name)(arguments...);
}

// The same for a call that names two places.
template <auto Own, class... Types>
int callOfTwo(const char *name, const Place &from, const Place &to, Types... arguments)
{
    return judge(name, from, &to) == Verdict::Fail ? -1 : next<Own>(name)(arguments...);
}

// Half of the bytes that a call would get from a file: of what is left in it, if that is less than
// what it asks for. Not 0, which would mean the end.
size_t halfOfRest(int descriptor, size_t bytes)
{
    const Pause pause;
    struct stat file;
    const off_t position = ::lseek(descriptor, 0, SEEK_CUR);
    if (position < 0 || ::fstat(descriptor, &file) != 0 || !S_ISREG(file.st_mode))
        return (bytes + 1) / 2;
    const auto rest = static_cast<size_t>(std::max<off_t>(file.st_size - position, 0));
    return rest == 0 ? bytes : (std::min(bytes, rest) + 1) / 2;
}

// Passes on what ends a descriptor, and lets it fail afterwards: it is gone in any case.
template <auto Own, class Type>
int callOfEnd(const char *name, int descriptor, Type argument)
{
    const Verdict verdict = judge("close", of(descriptor));
    const int error = errno;
    const int result = next<Own>(name)(argument);
    if (verdict != Verdict::Fail)
        return result;
    errno = error;
    return -1;
}

// The mode of a call that may make a file; the others have none.
mode_t modeOf(int flags, va_list &arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : mode_t(0);
}

// A file system that knows no files without a name says so before the call counts.
bool isRefused(int flags)
{
    if (!isArmed || (flags & O_TMPFILE) != O_TMPFILE || state().support == Faults::Support::Full)
        return false;
    errno = EOPNOTSUPP;
    return true;
}

// The order in which directories list.
class Order
{
public:
    Order()
    {
        if (const char *const text = std::getenv("K7E_LISTING_ORDER")) {
            mIsReversed = std::strcmp(text, "reversed") == 0;
            mSeed = mIsReversed ? 0 : static_cast<unsigned>(std::strtoul(text, nullptr, 10));
            mIsChanged = true;
        }
    }

    bool isChanged() const { return mIsChanged; }

    template <class Entry>
    void apply(std::vector<Entry> &entries) const
    {
        if (mIsReversed)
            std::reverse(entries.begin(), entries.end());
        else
            std::shuffle(entries.begin(), entries.end(), std::mt19937(mSeed));
    }

private:
    bool mIsChanged = false;
    bool mIsReversed = false;
    unsigned mSeed = 0;
};

const Order &order()
{
    static const Order order;
    return order;
}

// The directories that are being listed in another order, each read whole in advance.
template <class Entry>
class Listings
{
public:
    static Listings &instance()
    {
        static Listings *const listings = new Listings;
        return *listings;
    }

    Entry *take(DIR *directory, Entry *(*read)(DIR *))
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        const auto found = mListings.find(directory);
        Listing &listing = found == mListings.end() ? begin(mListings[directory], directory, read)
                                                    : found->second;
        return listing.position == listing.entries.size() ? nullptr
                                                          : &listing.entries[listing.position++];
    }

    void forget(DIR *directory)
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mListings.erase(directory);
    }

private:
    struct Listing
    {
        std::vector<Entry> entries;
        size_t position = 0;
    };

    static Listing &begin(Listing &listing, DIR *directory, Entry *(*read)(DIR *))
    {
        while (const Entry *const entry = read(directory)) {
            Entry copy{};
            std::memcpy(&copy, entry, std::min<size_t>(entry->d_reclen, sizeof copy));
            listing.entries.push_back(copy);
        }
        order().apply(listing.entries);
        return listing;
    }

    std::mutex mMutex;
    std::map<DIR *, Listing> mListings;
};

void forgetListing(DIR *directory)
{
    if (!order().isChanged())
        return;
    Listings<dirent>::instance().forget(directory);
    Listings<dirent64>::instance().forget(directory);
}

template <auto Own, class Entry>
Entry *readEntry(const char *name, DIR *directory)
{
    if (judge("readdir", of(dirfd(directory))) == Verdict::Fail)
        return nullptr;
    return order().isChanged() ? Listings<Entry>::instance().take(directory, next<Own>(name))
                               : next<Own>(name)(directory);
}

} // namespace

void Faults::arm(const std::string &path, const Plan &plan, Support support)
{
    state().path = path;
    state().plan = plan;
    state().support = support;
    state().calls.clear();
    isArmed = true;
}

std::vector<Faults::Call> Faults::disarm()
{
    isArmed = false;
    return state().calls;
}

void Faults::hide(const std::string &path)
{
    hidden() = path;
}

extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return isRefused(flags) ? -1 : call<&open>("open", at(path), path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return isRefused(flags) ? -1 : call<&open64>("open64", at(path), path, flags, mode);
}

int openat(int directory, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return isRefused(flags)
        ? -1
        : call<&openat>("openat", {directory, path}, directory, path, flags, mode);
}

int openat64(int directory, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return isRefused(flags)
        ? -1
        : call<&openat64>("openat64", {directory, path}, directory, path, flags, mode);
}

// What the four become in a build that checks its arguments at run time.
int __open_2(const char *path, int flags)
{
    return open(path, flags);
}

int __open64_2(const char *path, int flags)
{
    return open64(path, flags);
}

int __openat_2(int directory, const char *path, int flags)
{
    return openat(directory, path, flags);
}

int __openat64_2(int directory, const char *path, int flags)
{
    return openat64(directory, path, flags);
}

ssize_t read(int descriptor, void *buffer, size_t bytes)
{
    const Verdict verdict = judge("read", of(descriptor));
    if (verdict == Verdict::Fail)
        return -1;
    const size_t size = verdict == Verdict::Half ? halfOfRest(descriptor, bytes) : bytes;
    return next<&read>("read")(descriptor, buffer, size);
}

ssize_t __read_chk(int descriptor, void *buffer, size_t bytes, size_t)
{
    return read(descriptor, buffer, bytes);
}

ssize_t write(int descriptor, const void *buffer, size_t bytes)
{
    const Verdict verdict = judge("write", of(descriptor));
    if (verdict == Verdict::Fail)
        return -1;
    const size_t size = verdict == Verdict::Half ? (bytes + 1) / 2 : bytes;
    return next<&write>("write")(descriptor, buffer, size);
}

ssize_t sendfile(int to, int from, off_t *offset, size_t bytes) noexcept
{
    const Verdict verdict = judge("sendfile", of(to));
    if (verdict == Verdict::Fail)
        return -1;
    const size_t size = verdict == Verdict::Half ? halfOfRest(from, bytes) : bytes;
    return next<&sendfile>("sendfile")(to, from, offset, size);
}

ssize_t sendfile64(int to, int from, off64_t *offset, size_t bytes) noexcept
{
    const Verdict verdict = judge("sendfile", of(to));
    if (verdict == Verdict::Fail)
        return -1;
    const size_t size = verdict == Verdict::Half ? halfOfRest(from, bytes) : bytes;
    return next<&sendfile64>("sendfile64")(to, from, offset, size);
}

ssize_t copy_file_range(int from, off64_t *fromOffset, int to, off64_t *toOffset, size_t bytes,
                        unsigned flags)
{
    const Verdict verdict = judge("copy_file_range", of(to));
    if (verdict == Verdict::Fail)
        return -1;
    const size_t size = verdict == Verdict::Half ? halfOfRest(from, bytes) : bytes;
    return next<&copy_file_range>("copy_file_range")(from, fromOffset, to, toOffset, size, flags);
}

int close(int descriptor)
{
    return callOfEnd<&close>("close", descriptor, descriptor);
}

// The program under test does not wait for the disk: what a failing one means is judged by its
// result alone.
int fdatasync(int descriptor)
{
    if (judge("fdatasync", of(descriptor)) == Verdict::Fail)
        return -1;
    return isArmed ? 0 : next<&fdatasync>("fdatasync")(descriptor);
}

int fsync(int descriptor)
{
    if (judge("fsync", of(descriptor)) == Verdict::Fail)
        return -1;
    return isArmed ? 0 : next<&fsync>("fsync")(descriptor);
}

int ftruncate(int descriptor, off_t size) noexcept
{
    return call<&ftruncate>("ftruncate", of(descriptor), descriptor, size);
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    return call<&ftruncate64>("ftruncate64", of(descriptor), descriptor, size);
}

off_t lseek(int descriptor, off_t offset, int from) noexcept
{
    return call<&lseek>("lseek", of(descriptor), descriptor, offset, from);
}

off64_t lseek64(int descriptor, off64_t offset, int from) noexcept
{
    return call<&lseek64>("lseek64", of(descriptor), descriptor, offset, from);
}

int rename(const char *from, const char *to) noexcept
{
    return callOfTwo<&rename>("rename", at(from), at(to), from, to);
}

int renameat(int fromDirectory, const char *from, int toDirectory, const char *to) noexcept
{
    return callOfTwo<&renameat>("renameat", {fromDirectory, from}, {toDirectory, to}, fromDirectory,
                                from, toDirectory, to);
}

int renameat2(int fromDirectory, const char *from, int toDirectory, const char *to,
              unsigned flags) noexcept
{
    return callOfTwo<&renameat2>("renameat2", {fromDirectory, from}, {toDirectory, to},
                                 fromDirectory, from, toDirectory, to, flags);
}

int link(const char *from, const char *to) noexcept
{
    return callOfTwo<&link>("link", at(from), at(to), from, to);
}

int linkat(int fromDirectory, const char *from, int toDirectory, const char *to, int flags) noexcept
{
    return callOfTwo<&linkat>("linkat", {fromDirectory, from}, {toDirectory, to}, fromDirectory,
                              from, toDirectory, to, flags);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    return call<&mkdir>("mkdir", at(path), path, mode);
}

int mkdirat(int directory, const char *path, mode_t mode) noexcept
{
    return call<&mkdirat>("mkdirat", {directory, path}, directory, path, mode);
}

int rmdir(const char *path) noexcept
{
    return call<&rmdir>("rmdir", at(path), path);
}

int unlink(const char *path) noexcept
{
    return call<&unlink>("unlink", at(path), path);
}

int unlinkat(int directory, const char *path, int flags) noexcept
{
    return call<&unlinkat>("unlinkat", {directory, path}, directory, path, flags);
}

int chmod(const char *path, mode_t mode) noexcept
{
    return call<&chmod>("chmod", at(path), path, mode);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    return call<&fchmod>("fchmod", of(descriptor), descriptor, mode);
}

int fchmodat(int directory, const char *path, mode_t mode, int flags) noexcept
{
    return call<&fchmodat>("fchmodat", {directory, path}, directory, path, mode, flags);
}

int access(const char *path, int mode) noexcept
{
    return call<&access>("access", at(path), path, mode);
}

int faccessat(int directory, const char *path, int mode, int flags) noexcept
{
    return call<&faccessat>("faccessat", {directory, path}, directory, path, mode, flags);
}

int stat(const char *path, struct stat *result) noexcept
{
    return call<static_cast<int (*)(const char *, struct stat *) noexcept>(&stat)>("stat", at(path),
                                                                                   path, result);
}

int stat64(const char *path, struct stat64 *result) noexcept
{
    return call<static_cast<int (*)(const char *, struct stat64 *) noexcept>(&stat64)>(
        "stat64", at(path), path, result);
}

int lstat(const char *path, struct stat *result) noexcept
{
    return call<&lstat>("lstat", at(path), path, result);
}

int lstat64(const char *path, struct stat64 *result) noexcept
{
    return call<&lstat64>("lstat64", at(path), path, result);
}

int fstat(int descriptor, struct stat *result) noexcept
{
    return call<&fstat>("fstat", of(descriptor), descriptor, result);
}

int fstat64(int descriptor, struct stat64 *result) noexcept
{
    return call<&fstat64>("fstat64", of(descriptor), descriptor, result);
}

int fstatat(int directory, const char *path, struct stat *result, int flags) noexcept
{
    return call<&fstatat>("fstatat", {directory, path}, directory, path, result, flags);
}

int fstatat64(int directory, const char *path, struct stat64 *result, int flags) noexcept
{
    return call<&fstatat64>("fstatat64", {directory, path}, directory, path, result, flags);
}

int statx(int directory, const char *path, int flags, unsigned mask, struct statx *result) noexcept
{
    return call<static_cast<int (*)(int, const char *, int, unsigned, struct statx *) noexcept>(
        &statx)>("statx", {directory, path}, directory, path, flags, mask, result);
}

ssize_t readlink(const char *path, char *buffer, size_t size) noexcept
{
    return call<&readlink>("readlink", at(path), path, buffer, size);
}

ssize_t readlinkat(int directory, const char *path, char *buffer, size_t size) noexcept
{
    return call<&readlinkat>("readlinkat", {directory, path}, directory, path, buffer, size);
}

char *realpath(const char *path, char *resolved) noexcept
{
    return call<&realpath>("realpath", at(path), path, resolved);
}

DIR *opendir(const char *path)
{
    return call<&opendir>("opendir", at(path), path);
}

DIR *fdopendir(int descriptor)
{
    return call<&fdopendir>("fdopendir", of(descriptor), descriptor);
}

dirent *readdir(DIR *directory)
{
    return readEntry<&readdir, dirent>("readdir", directory);
}

dirent64 *readdir64(DIR *directory)
{
    return readEntry<&readdir64, dirent64>("readdir64", directory);
}

void rewinddir(DIR *directory) noexcept
{
    forgetListing(directory);
    next<&rewinddir>("rewinddir")(directory);
}

int closedir(DIR *directory)
{
    forgetListing(directory);
    return callOfEnd<&closedir>("closedir", dirfd(directory), directory);
}

} // extern "C"

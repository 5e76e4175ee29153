// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// A program that uses the library and ends in the middle of it, for tst_killed_library:
//
//     killed_writer STORE items MEDIA-FOLDER kill|full COUNT
//     killed_writer STORE cookies SIZE kill|full COUNT
//
// It makes thumbnails, writes items and hands them to the search index, or saves the cookies of two
// hosts over and over, and tells of each once it is done. Just before the COUNT-th call by which
// anything reaches the disk it kills itself, or finds the disk full from then on. COUNT 0 never
// comes; the number of calls is then told at the end.
#include "engine/service/yt_dlp_service.h"
#include "library/cookie_import.h"
#include "library/media_facts.h"
#include "library/model_container.h"
#include "library/model_context.h"
#include "library/search_indexer.h"
#include "tests/library/awaiting.h"

#include <QCoreApplication>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <exception>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

using namespace veltro;

namespace {

std::atomic<int> calls = 0;
std::atomic<bool> counts = false;
int fatalCall = 0;
bool killsAtIt = false;

/// Whether the call may go on.
bool reachTheDisk()
{
    if (!counts) {
        return true;
    }
    const int call = ++calls;
    if (fatalCall == 0 || call < fatalCall) {
        return true;
    }
    if (killsAtIt) {
        kill(getpid(), SIGKILL);
    }
    errno = ENOSPC;
    return false;
}

template <typename Function>
Function *original(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

void tell(const std::string &line)
{
    const std::string whole = line + '\n';
    // Told at once, and past the calls that are counted.
    static auto *const put = original<ssize_t(int, const void *, std::size_t)>("write");
    (void)put(STDOUT_FILENO, whole.data(), whole.size());
}

}

// The calls of the C library that the program, Qt and SQLite write with; these stand before them.
extern "C" {

ssize_t write(int file, const void *bytes, std::size_t size)
{
    static auto *const own = original<ssize_t(int, const void *, std::size_t)>("write");
    // Threads wake each other by writes too, as often as it happens.
    struct stat status = {};
    const bool isOnDisk = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    return !isOnDisk || file <= STDERR_FILENO || reachTheDisk() ? own(file, bytes, size) : -1;
}

ssize_t pwrite64(int file, const void *bytes, std::size_t size, off64_t place)
{
    static auto *const own = original<ssize_t(int, const void *, std::size_t, off64_t)>("pwrite64");
    return reachTheDisk() ? own(file, bytes, size, place) : -1;
}

int fsync(int file)
{
    static auto *const own = original<int(int)>("fsync");
    return reachTheDisk() ? own(file) : -1;
}

int fdatasync(int file)
{
    static auto *const own = original<int(int)>("fdatasync");
    return reachTheDisk() ? own(file) : -1;
}

int ftruncate64(int file, off64_t size) noexcept
{
    static auto *const own = original<int(int, off64_t)>("ftruncate64");
    return reachTheDisk() ? own(file, size) : -1;
}

int rename(const char *from, const char *to) noexcept
{
    static auto *const own = original<int(const char *, const char *)>("rename");
    return reachTheDisk() ? own(from, to) : -1;
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
              unsigned flags) noexcept
{
    static auto *const own =
        original<int(int, const char *, int, const char *, unsigned)>("renameat2");
    return reachTheDisk() ? own(fromFolder, from, toFolder, to, flags) : -1;
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    static auto *const own = original<int(int, const char *, int, const char *, int)>("linkat");
    return reachTheDisk() ? own(fromFolder, from, toFolder, to, flags) : -1;
}
}

namespace {

void recordMedia(const std::shared_ptr<ModelContainer> &container, const QString &folder,
                 int number)
{
    const QUrl media = QUrl::fromLocalFile(folder + QStringLiteral("/%1.mp4").arg(number));
    DownloadItem item;
    item.id = QUuid::createUuid();
    item.title = QString::number(number);
    item.stateRaw = QStringLiteral("done");
    item.localFileURL = media;
    item.thumbnailFileURL = findOrMakeThumbnail(media);
    item.createdAt = QDateTime::currentDateTimeUtc();
    item.completedAt = item.createdAt;
    ModelContext context(container);
    context.insert(item);
    if (context.save()) {
        tell("saved " + item.id.toString(QUuid::WithoutBraces).toStdString());
        indexForSearch(item);
        SearchIndex::standard().finish(); // one call at a time
    } else {
        tell("failed");
    }
}

/// Each round's files have bytes of their own.
void saveCookies(const std::shared_ptr<ModelContainer> &container, int size, int number)
{
    YtDlpService engine;
    const QByteArray content(size, static_cast<char>('a' + number));
    const std::vector<HostCookies> confirmed{
        {QStringLiteral("example.com"), 1, content},
        {QStringLiteral("www.example.com"), 1, content},
    };
    try {
        test::await(CookieImport(engine, container).save(confirmed));
        tell("saved " + std::to_string(number));
    } catch (const CookieImportError &) {
        tell("failed");
    }
}

int write(const QStringList &arguments)
{
    killsAtIt = arguments.value(4) == QLatin1String("kill");
    fatalCall = arguments.value(5).toInt();
    counts = true;
    const std::shared_ptr<ModelContainer> container = makeContainer(arguments.value(1));
    if (!container) {
        tell("no container");
        return 1;
    }
    for (int number = 0; number < 2; ++number) {
        if (arguments.value(2) == QLatin1String("items")) {
            recordMedia(container, arguments.value(3), number);
        } else {
            saveCookies(container, arguments.value(3).toInt(), number);
        }
    }
    counts = false;
    tell("calls " + std::to_string(calls));
    return 0;
}

}

int main(int argc, char *argv[])
{
    try {
        const QCoreApplication application(argc, argv);
        return write(QCoreApplication::arguments());
    } catch (const std::exception &error) {
        static_cast<void>(std::fputs(error.what(), stderr));
        return 1;
    }
}

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

namespace Qel {

/// How a file is opened when it isn't there yet.
enum eFileOptions { fileOpenOrCreate = 2 };
/// What the mapping permits.
enum eAccessOptions { accessReadWrite = 1 };
/// How the length of the mapping is found.
enum eMapSize { mapSizeAsAsked = 1 };

/// How QelMemoryMappedFile::map opens and maps.  Only the enumerators above exist; anything else is refused.
struct tFileMappingOptions {
    /// Everybody else may read, write and remove the file meanwhile: bits 1, 2 and 4.
    static constexpr int shareAll = 7;

    constexpr tFileMappingOptions(int sharing, eFileOptions fileOptions, eAccessOptions accessOptions, eMapSize sizing)
        : share(sharing), file(fileOptions), access(accessOptions), mapSize(sizing) {}

    int share;
    eFileOptions file;
    eAccessOptions access;
    eMapSize mapSize;
};

/// One shared, writable mapping of a file, and the lock of that file.
///
/// The file stays open as long as one of its mappings, and a mapping made by `remap` shares it with the one that it was
/// made from.  A file that isn't large is mapped whole at once, and with room behind its end, whatever part of it was
/// asked for, so that a `remap` to more of it often costs next to nothing: the two objects then show the same pages at
/// the same addresses.  The child of a fork keeps its mappings, but the descriptors that it inherited are closed at
/// once, and locking through them fails: if they merely lived on in a child they would keep the lock of a parent that
/// died.
///
/// Operations that fail return a nonzero value and leave a text with setErrorMessage.  One object belongs to one thread
/// at a time, except for `lock` and `unlock`.
class QelMemoryMappedFile {
public:
    QelMemoryMappedFile() noexcept;
    QelMemoryMappedFile(const QelMemoryMappedFile&) = delete;
    QelMemoryMappedFile& operator=(const QelMemoryMappedFile&) = delete;
    ~QelMemoryMappedFile();

    /// Opens the regular file `name`, or creates it for its owner alone, extends it to at least `size` bytes and maps
    /// the first `size` bytes, near `hint` if that isn't null.  What is added to the file reads as zero.  Disk space
    /// for every mapped byte is allocated first, so that a full disk is a failure here and not a signal at some later
    /// write.
    int map(const std::string& name, unsigned size, const tFileMappingOptions& options, void* hint);

    /// Maps the first `size` bytes of the file that `other` maps, extending it as `map` does, whatever has become of
    /// its name.  `other` stays as it is.
    int remap(unsigned size, void* hint, const QelMemoryMappedFile* other);

    /// Opens nothing and maps nothing, but shares the file of `other`, to lock it.
    void share(const QelMemoryMappedFile& other);

    /// Start of the mapping, page-aligned; null if nothing is mapped.
    [[nodiscard]] void* getMemory() const noexcept { return m_memory; }

    /// Bytes mapped; 0 if nothing is.
    [[nodiscard]] unsigned getSize() const noexcept { return m_size; }

    /// Whether the file has `size` bytes, to which other processes may have extended it; false if nothing is mapped.
    [[nodiscard]] bool isInFile(unsigned size) const;

    /// Whether `other` maps the same file.
    [[nodiscard]] bool isSameFile(const QelMemoryMappedFile& other) const noexcept;

    /// Hands what was written to the kernel for writing back, without waiting for the disk.  All mappings of a file
    /// show the same pages anyway; this only shortens the time until they are on disk.
    int syncMemory();

    /// Extends the file to at least `size` bytes, as `map` does, for a caller that holds its lock, so that nobody else
    /// does meanwhile.  What is new, or its last 16 MiB, is in memory then: the first use of a page costs a fraction
    /// of what it does in a file that `map` or `remap` extended.
    int extend(unsigned size);

    /// Makes the mapping read-only, or writable again, for every object that shows the same pages.
    int protectMemory(bool readOnly);

    /// Takes the file's exclusive lock, against every thread of every process.  With `tryOnly` it fails instead of
    /// waiting.  A thread that holds the lock and asks again is refused.
    int lock(bool tryOnly);

    /// Gives the lock back, on the thread that took it.  The kernel does so for a process that dies.
    int unlock();

    /// Bytes of a page of memory.
    [[nodiscard]] static unsigned getMemoryPageSize() noexcept;

private:
    class OpenFile;
    class Pages;

    int mapOpenFile(const boost::intrusive_ptr<OpenFile>& file, unsigned size, void* hint);
    void show(std::shared_ptr<const Pages> pages, unsigned size);

    std::shared_ptr<const Pages> m_pages;
    void* m_memory = nullptr;
    unsigned m_size = 0;
    boost::intrusive_ptr<OpenFile> m_file;
};

} // namespace Qel

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "QelCommon/Export.h"

namespace Qel {

/// Whether a file is created.
enum eFileOptions { fileOpenOrCreate = 2 };
/// Access rights of the mapping.
enum eAccessOptions { accessReadWrite = 1 };
/// How the length of the mapping is determined.
enum eMapSize { mapSizeAsAsked = 1 };

/// Options of QelMemoryMappedFile::map.  Only the enumerators above are supported; other values are rejected.
struct tFileMappingOptions {
    /// Other processes may read, write and remove the file concurrently: bits 1, 2 and 4.
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
/// The file stays open as long as any of its mappings; a mapping made by `remap` shares the open file with its origin.
/// A file of moderate size is mapped completely, with room past its end, regardless of the size requested, so a `remap`
/// to a larger size often costs almost nothing: both objects then share one range of pages at the same address.  The
/// child of a fork keeps its mappings, but the inherited descriptors are closed immediately and locking through them
/// fails: if they stayed open in a child, they would keep the lock of a parent that died.
///
/// Operations return nonzero on failure and call setErrorMessage.  An object may be used by one thread at a time,
/// except for `lock` and `unlock`.
class QEL_EXPORT QelMemoryMappedFile {
public:
    QelMemoryMappedFile() noexcept;
    QelMemoryMappedFile(const QelMemoryMappedFile&) = delete;
    QelMemoryMappedFile& operator=(const QelMemoryMappedFile&) = delete;
    ~QelMemoryMappedFile();

    /// Opens the regular file `name`, or creates it with access for its owner only, extends it to at least `size` bytes
    /// and maps the first `size` bytes, near `hint` if not null.  Added bytes read as zero.  Disk space for every
    /// mapped byte is allocated first, so a full disk is a failure of this call, not a SIGBUS on a later write.
    int map(const std::string& name, unsigned size, const tFileMappingOptions& options, void* hint);

    /// Maps the first `size` bytes of the file that `other` maps, even if its name has been removed, extending it as
    /// `map` does.  `other` is unchanged.
    int remap(unsigned size, void* hint, const QelMemoryMappedFile* other);

    /// Shares the open file of `other` for locking, without mapping it.
    void share(const QelMemoryMappedFile& other);

    /// Start address of the mapping, page-aligned; null if nothing is mapped.
    [[nodiscard]] void* getMemory() const noexcept { return m_memory; }

    /// Size of the mapping in bytes; 0 if nothing is mapped.
    [[nodiscard]] unsigned getSize() const noexcept { return m_size; }

    /// Whether the file is at least `size` bytes long, including growth by other processes; false if nothing is mapped.
    [[nodiscard]] bool isInFile(unsigned size) const;

    /// Whether `other` maps the same file.
    [[nodiscard]] bool isSameFile(const QelMemoryMappedFile& other) const noexcept;

    /// Starts writeback of modified pages without waiting for the disk (MS_ASYNC).  Not needed for visibility: all
    /// mappings of a file share the same pages.
    int syncMemory();

    /// Extends the file to at least `size` bytes, as `map` does.  The caller must hold the file lock, so that no other
    /// process extends it concurrently.  The added range, or its last 16 MiB, is prefaulted into the page cache: the
    /// first access to a page costs a fraction of that in a file extended by `map` or `remap`.
    int extend(unsigned size);

    /// Makes the mapping read-only, or writable again, for every object that shares its pages.
    int protectMemory(bool readOnly);

    /// Acquires the exclusive lock of the file against all threads of all processes.  With `tryOnly` it fails instead
    /// of waiting.  Fails if the calling thread already holds the lock.
    int lock(bool tryOnly);

    /// Releases the lock, on the thread that acquired it.  If the process dies, the kernel releases it.
    int unlock();

    /// Memory page size in bytes.
    [[nodiscard]] static unsigned getMemoryPageSize() noexcept;

private:
    class OpenFile;
    class Pages;

    int mapOpenFile(const boost::intrusive_ptr<OpenFile>& file, unsigned size, void* hint);
    void adopt(std::shared_ptr<const Pages> pages, unsigned size);

    std::shared_ptr<const Pages> m_pages;
    void* m_memory = nullptr;
    unsigned m_size = 0;
    boost::intrusive_ptr<OpenFile> m_file;
};

} // namespace Qel

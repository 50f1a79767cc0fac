#include "QelCore/QelMemoryMappedFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelCore/QelForkableRefCounter.h"

namespace Qel {

namespace {

/// Device and inode: identifies the file of a descriptor.
using FileIdentity = std::pair<dev_t, ino_t>;

int fail(const char* operation, const char* name, int error) {
    setErrorMessage("%s '%s': %s", operation, name, std::strerror(error));
    return -1;
}

/// Repeats a system call while it fails with EINTR.
template <class Call> auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// An owned file descriptor; -1 if none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() {
        if (m_number >= 0)
            ::close(m_number);
    }

    [[nodiscard]] int get() const noexcept { return m_number; }
    [[nodiscard]] bool isOpen() const noexcept { return m_number >= 0; }

private:
    int m_number;
};

/// Prefaults the range [from, to) of a file, at most its last 16 MiB, by writing zeros.  Write errors are ignored:
/// pages that were not prefaulted cost a page fault at their first access.
///
/// The page cache keeps the data of one write() as one folio, with one page fault and one reference count for several
/// pages, whereas touching the mapping allocates page by page.  Larger pieces would make the first write to each more
/// expensive, because the file system examines every block of the folio.
void writeZeros(int descriptor, std::uint64_t from, std::uint64_t to) {
    constexpr std::uint64_t maxBytes = std::uint64_t{16} << 20U;
    constexpr std::uint64_t piece = std::uint64_t{64} << 10U;
    static std::array<char, piece> zeros; // never written to
    std::uint64_t at = std::max(from, to - std::min(to, maxBytes));
    while (at < to) {
        const auto count = static_cast<std::size_t>(std::min(to - at, piece - at % piece));
        if (uninterrupted([&] { return pwrite(descriptor, zeros.data(), count, static_cast<off_t>(at)); }) < 0)
            return;
        at += count;
    }
}

/// Whether `size` exceeds the file size limit of the process.  Extending a file beyond it raises SIGXFSZ, so the limit
/// is checked first.
bool isBeyondLimit(std::uint64_t size) {
    struct rlimit limit {};
    return getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && size > limit.rlim_cur;
}

/// Mutual exclusion of the threads of one process, which flock does not provide because they share the descriptor.
/// Operations return 0 or an error number.
class ThreadLock {
public:
    int lock() {
        const std::thread::id self = std::this_thread::get_id();
        if (isOwnedBy(self))
            return EDEADLK;
        m_mutex.lock();
        m_owner.store(self, std::memory_order_relaxed);
        return 0;
    }
    int tryLock() {
        const std::thread::id self = std::this_thread::get_id();
        if (isOwnedBy(self))
            return EDEADLK;
        if (!m_mutex.try_lock())
            return EBUSY;
        m_owner.store(self, std::memory_order_relaxed);
        return 0;
    }
    int unlock() {
        if (!isOwnedBy(std::this_thread::get_id()))
            return EPERM;
        m_owner.store(std::thread::id(), std::memory_order_relaxed);
        m_mutex.unlock();
        return 0;
    }

private:
    /// Only for the calling thread: other threads may change the owner concurrently, but not to or from this thread.
    [[nodiscard]] bool isOwnedBy(std::thread::id thread) const noexcept {
        return m_owner.load(std::memory_order_relaxed) == thread;
    }

    std::mutex m_mutex;
    std::atomic<std::thread::id> m_owner{};
};

} // namespace

/// A file with two open file descriptions: one for mapping, one for locking.
///
/// A flock lock belongs to the open file description, not to the descriptor, and a mapping keeps the description alive
/// as a descriptor does.  A forked child keeps its mappings, so the description used for mapping must never hold the
/// lock.
class QelMemoryMappedFile::OpenFile : public QelForkableRefCounter {
public:
    /// Opens or creates the file.  Returns null with the error message set on failure.
    static boost::intrusive_ptr<OpenFile> open(const std::string& name) {
        Descriptor forMapping = openDescriptor(name, O_RDWR);
        if (!forMapping.isOpen() && errno == ENOENT)
            forMapping = openDescriptor(name, O_RDWR | O_CREAT); // not tried first: O_CREAT locks the directory
        Descriptor forLocking = forMapping.isOpen() ? openDescriptor(name, O_RDONLY) : Descriptor();
        if (!forLocking.isOpen()) {
            fail("cannot open", name.c_str(), errno);
            return nullptr;
        }
        struct stat mapped {};
        struct stat locked {};
        int error = fstat(forMapping.get(), &mapped) || fstat(forLocking.get(), &locked) ? errno : 0;
        if (!error && !S_ISREG(mapped.st_mode))
            error = EINVAL;
        const FileIdentity identity(mapped.st_dev, mapped.st_ino);
        if (!error && identity != FileIdentity(locked.st_dev, locked.st_ino))
            error = ESTALE; // replaced between the two opens
        if (error) {
            fail("cannot use", name.c_str(), error);
            return nullptr;
        }
        return new OpenFile(name, std::move(forMapping), std::move(forLocking), identity);
    }

    /// Extends the file to at least `size` bytes and allocates disk blocks for them.  Sets `reserved` to the number of
    /// allocated bytes: `size`, or the length of a longer file without holes.
    int reserve(unsigned size, std::uint64_t& reserved) {
        reserved = size;
        struct stat status {};
        if (fstat(m_forMapping.get(), &status))
            return fail("cannot extend", m_name.c_str(), errno);
        // Fast path: an existing file without holes. st_blocks counts units of 512 bytes.
        constexpr std::uint64_t statBlockSize = 512;
        const auto length = static_cast<std::uint64_t>(status.st_size);
        if (length >= size && static_cast<std::uint64_t>(status.st_blocks) * statBlockSize >= length) {
            reserved = length;
            return 0;
        }
        if (length < size && isBeyondLimit(size))
            return fail("cannot extend", m_name.c_str(), EFBIG);
        if (!uninterrupted([&] { return fallocate(m_forMapping.get(), 0, 0, off_t{size}); }))
            return 0;
        if (errno != EOPNOTSUPP)
            return fail("cannot extend", m_name.c_str(), errno);
        if (length >= size)
            return 0;
        // The file system has no fallocate. posix_fallocate emulates it by writing to each block, so call it only
        // beyond the end, where no other process has data.
        int error = EINTR;
        while (error == EINTR)
            error = posix_fallocate(m_forMapping.get(), status.st_size, static_cast<off_t>(size - length));
        return error ? fail("cannot extend", m_name.c_str(), error) : 0;
    }

    /// Extends the file to at least `size` bytes.  Must not run concurrently in another process.
    int extend(unsigned size) {
        const std::uint64_t length = this->size();
        std::uint64_t reserved = 0;
        if (const int failed = reserve(size, reserved))
            return failed;
        writeZeros(m_forMapping.get(), length, size);
        return 0;
    }

    void* map(unsigned size, void* hint) {
        void* memory = mmap(hint, size, PROT_READ | PROT_WRITE, MAP_SHARED, m_forMapping.get(), 0);
        if (memory != MAP_FAILED)
            return memory;
        fail("cannot map", m_name.c_str(), errno);
        return nullptr;
    }

    int lock(bool tryOnly) {
        if (isOrphan())
            return fail("cannot lock", m_name.c_str(), EBADF);
        if (const int error = tryOnly ? m_threads->tryLock() : m_threads->lock())
            return fail("cannot lock", m_name.c_str(), error);
        if (!uninterrupted([&] { return flock(m_forLocking.get(), tryOnly ? LOCK_EX | LOCK_NB : LOCK_EX); }))
            return 0;
        const int error = errno;
        m_threads->unlock();
        return fail("cannot lock", m_name.c_str(), error);
    }

    int unlock() {
        if (isOrphan())
            return fail("cannot unlock", m_name.c_str(), EBADF);
        const int failed = flock(m_forLocking.get(), LOCK_UN) ? errno : 0;
        const int error = m_threads->unlock();
        return failed || error ? fail("cannot unlock", m_name.c_str(), failed ? failed : error) : 0;
    }

    [[nodiscard]] std::uint64_t size() const {
        struct stat status {};
        return fstat(m_forMapping.get(), &status) ? 0 : static_cast<std::uint64_t>(status.st_size);
    }

    [[nodiscard]] const FileIdentity& identity() const noexcept { return m_identity; }
    [[nodiscard]] const char* name() const noexcept { return m_name.c_str(); }

    int reinit() override {
        {
            const std::lock_guard guard(forkMutex());
            threadLocks().erase(m_identity);
        }
        m_forMapping = Descriptor();
        m_forLocking = Descriptor();
        return 0;
    }

private:
    /// One ThreadLock per file that is open in this process, shared by all its descriptors.  A forked child starts with
    /// an empty map, because threads that do not exist in the child may hold the inherited locks.
    using ThreadLocks = std::map<FileIdentity, std::weak_ptr<ThreadLock>>;

    /// Guarded by forkMutex().  Leaked on purpose, like the fork registry.
    static ThreadLocks& threadLocks() {
        static auto* locks = new ThreadLocks;
        return *locks;
    }

    static std::shared_ptr<ThreadLock> threadLockOf(const FileIdentity& identity) {
        const std::lock_guard guard(forkMutex());
        std::erase_if(threadLocks(), [](const auto& entry) { return entry.second.expired(); });
        std::weak_ptr<ThreadLock>& known = threadLocks()[identity];
        std::shared_ptr<ThreadLock> lock = known.lock();
        if (!lock)
            known = lock = std::make_shared<ThreadLock>();
        return lock;
    }

    OpenFile(std::string name, Descriptor forMapping, Descriptor forLocking, const FileIdentity& identity)
        : m_name(std::move(name)), m_forMapping(std::move(forMapping)), m_forLocking(std::move(forLocking)),
          m_identity(identity), m_threads(threadLockOf(identity)) {}

    static Descriptor openDescriptor(const std::string& name, int flags) {
        constexpr mode_t ownerOnly = 0600;
        return Descriptor(uninterrupted([&] { return ::open(name.c_str(), flags | O_CLOEXEC | O_NOCTTY, ownerOnly); }));
    }

    /// Whether this is the child of a fork and the file belongs to its parent.
    [[nodiscard]] bool isOrphan() const noexcept { return !m_forLocking.isOpen(); }

    std::string m_name;
    Descriptor m_forMapping;
    Descriptor m_forLocking;
    FileIdentity m_identity;
    std::shared_ptr<ThreadLock> m_threads;
};

/// A mapped range of a file, shared by the objects that use it.
class QelMemoryMappedFile::Pages {
public:
    /// Maps at least `size` bytes of a file of which `reserved` bytes are allocated.  Returns null with the error
    /// message set on failure.
    ///
    /// A file up to 64 MiB is mapped completely; from 1 MiB on, the mapping extends past the end of the file so that
    /// growth needs no new mapping.  Each new mapping costs a minor page fault per page that is touched again.
    static std::shared_ptr<const Pages> map(OpenFile& file, unsigned size, std::uint64_t reserved, void* hint) {
        constexpr unsigned maxMapping = 64U << 20U; // keeps a 32-bit address space usable
        constexpr unsigned minToGrow = 1U << 20U;
        constexpr unsigned growthFactor = 4;
        unsigned wanted = size;
        if (reserved <= maxMapping) {
            const auto length = static_cast<unsigned>(reserved);
            wanted = length < minToGrow ? length : std::min(length * growthFactor, maxMapping);
        }
        void* memory = file.map(wanted, hint);
        if (!memory && wanted > size)
            memory = file.map(wanted = size, hint);
        return memory ? std::make_shared<const Pages>(memory, wanted, reserved) : nullptr;
    }

    Pages(void* memory, unsigned size, std::uint64_t reserved) noexcept
        : m_memory(memory), m_size(size), m_reserved(reserved) {}
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;
    ~Pages() { munmap(m_memory, m_size); }

    [[nodiscard]] void* memory() const noexcept { return m_memory; }
    [[nodiscard]] bool cover(unsigned size) const noexcept { return size <= m_size; }
    /// Whether `size` bytes were allocated on disk at the time of mapping.
    [[nodiscard]] bool areReserved(unsigned size) const noexcept { return size <= m_reserved; }

private:
    void* m_memory;
    unsigned m_size;
    std::uint64_t m_reserved;
};

QelMemoryMappedFile::QelMemoryMappedFile() noexcept = default;

QelMemoryMappedFile::~QelMemoryMappedFile() = default;

int QelMemoryMappedFile::map(const std::string& name, unsigned size, const tFileMappingOptions& options, void* hint) {
    const bool known = options.share == tFileMappingOptions::shareAll && options.file == fileOpenOrCreate &&
                       options.access == accessReadWrite && options.mapSize == mapSizeAsAsked;
    if (!known)
        return fail("cannot map", name.c_str(), EINVAL);
    return mapOpenFile(OpenFile::open(name), size, hint);
}

int QelMemoryMappedFile::remap(unsigned size, void* hint, const QelMemoryMappedFile* other) {
    if (!other || !other->m_file)
        return fail("cannot map", "", EINVAL);
    if (m_memory || !other->m_pages || !other->m_pages->cover(size))
        return mapOpenFile(other->m_file, size, hint);
    std::uint64_t reserved = 0;
    if (!other->m_pages->areReserved(size))
        if (const int failed = other->m_file->reserve(size, reserved))
            return failed;
    m_file = other->m_file;
    adopt(other->m_pages, size);
    return 0;
}

void QelMemoryMappedFile::share(const QelMemoryMappedFile& other) {
    m_file = other.m_file;
}

int QelMemoryMappedFile::mapOpenFile(const boost::intrusive_ptr<OpenFile>& file, unsigned size, void* hint) {
    if (!file)
        return -1;
    if (m_memory)
        return fail("already mapped", file->name(), EBUSY);
    std::uint64_t reserved = 0;
    if (const int failed = file->reserve(size, reserved))
        return failed;
    std::shared_ptr<const Pages> pages = Pages::map(*file, size, reserved, hint);
    if (!pages)
        return -1;
    m_file = file;
    adopt(std::move(pages), size);
    return 0;
}

void QelMemoryMappedFile::adopt(std::shared_ptr<const Pages> pages, unsigned size) {
    m_pages = std::move(pages);
    m_memory = m_pages->memory();
    m_size = size;
}

bool QelMemoryMappedFile::isInFile(unsigned size) const {
    return m_pages && (m_pages->areReserved(size) || m_file->size() >= size);
}

bool QelMemoryMappedFile::isSameFile(const QelMemoryMappedFile& other) const noexcept {
    return m_file && other.m_file && m_file->identity() == other.m_file->identity();
}

int QelMemoryMappedFile::syncMemory() {
    return m_memory && msync(m_memory, m_size, MS_ASYNC) ? fail("cannot flush", m_file->name(), errno) : 0;
}

int QelMemoryMappedFile::extend(unsigned size) {
    return m_file ? m_file->extend(size) : fail("cannot extend", "", EINVAL);
}

int QelMemoryMappedFile::protectMemory(bool readOnly) {
    const int rights = readOnly ? PROT_READ : PROT_READ | PROT_WRITE;
    return m_memory && mprotect(m_memory, m_size, rights) ? fail("cannot protect", m_file->name(), errno) : 0;
}

int QelMemoryMappedFile::lock(bool tryOnly) {
    return m_file ? m_file->lock(tryOnly) : fail("cannot lock", "", EINVAL);
}

int QelMemoryMappedFile::unlock() {
    return m_file ? m_file->unlock() : fail("cannot unlock", "", EINVAL);
}

unsigned QelMemoryMappedFile::getMemoryPageSize() noexcept {
    static const auto size = static_cast<unsigned>(sysconf(_SC_PAGESIZE));
    return size;
}

} // namespace Qel

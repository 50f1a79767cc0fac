#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "QelCore/QelMemoryMappedFile.h"
#include "QelCore/QelSharedMemoryManager.h"

namespace Qel {

/// The heap of QelSharedMemoryManager over a mapped file, together with what holds the mapping and what locks the file.
class QelMappedMemoryManager : public QelSharedMemoryManager {
public:
    using QelSharedMemoryManager::QelSharedMemoryManager;

    /// One mapping of a file.  Its size never changes: whoever wants more of the file makes another Storage from it.
    class Storage : public QelMemoryMappedFile {
    public:
        /// Nothing is mapped yet.
        explicit Storage(const std::string& name);

        /// Maps the first `size` bytes of the file, which is opened or created by name, or is that of `other`.  Gives
        /// back the base address, or null when the file can't be mapped after 100 attempts.  If something is mapped
        /// already it is flushed, and null given back.
        [[nodiscard]] void* getStorage(unsigned size, const Storage* other);

        /// Base of `other` minus own base: what turns an address in this mapping into one in that.
        [[nodiscard]] std::ptrdiff_t getDifference(const Storage* other) const noexcept {
            return static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(other->getMemory()) -
                                               reinterpret_cast<std::uintptr_t>(getMemory()));
        }

        int syncStorage() { return syncMemory(); }
        int protect(bool readOnly) { return protectMemory(readOnly); }

        /// The file's lock.
        int lock() { return QelMemoryMappedFile::lock(false); }
        int unlock() { return QelMemoryMappedFile::unlock(); }

    private:
        std::string m_name;
    };

    /// The place of the lock in a file's header.  It keeps no state there: the lock is that of the file itself.
    class Lock {
    public:
        static int lock(Storage* storage) { return storage->lock(); }
        static int unlock(Storage* storage) { return storage->unlock(); }

    private:
        [[maybe_unused]] std::uint32_t m_unused = 0; ///< always 0
    };
};

static_assert(sizeof(QelMappedMemoryManager) == sizeof(QelSharedMemoryManager), "adds nothing to the file");
static_assert(sizeof(QelMappedMemoryManager::Lock) == 4);

} // namespace Qel

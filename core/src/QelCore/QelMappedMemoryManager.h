#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "QelCommon/Export.h"
#include "QelCore/QelMemoryMappedFile.h"
#include "QelCore/QelSharedMemoryManager.h"

namespace Qel {

/// The heap of QelSharedMemoryManager in a mapped file, with the types that own the mapping and lock the file.
class QEL_EXPORT QelMappedMemoryManager : public QelSharedMemoryManager {
public:
    using QelSharedMemoryManager::QelSharedMemoryManager;

    /// One mapping of a file.  Its size never changes; to map more of the file, create another Storage from it.
    class Storage : public QelMemoryMappedFile {
    public:
        /// Maps nothing.
        explicit Storage(const std::string& name);

        /// Maps the first `size` bytes of the file of `other`, or of the file opened or created by name if `other` is
        /// null.  Returns the base address, or null if mapping fails 100 times.  If this object has a mapping already,
        /// starts its writeback and returns null.
        [[nodiscard]] void* getStorage(unsigned size, const Storage* other);

        /// Base of `other` minus the base of this mapping: converts an address in this mapping to one in `other`.
        [[nodiscard]] std::ptrdiff_t getDifference(const Storage* other) const noexcept {
            return static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(other->getMemory()) -
                                               reinterpret_cast<std::uintptr_t>(getMemory()));
        }

        int syncStorage() { return syncMemory(); }
        int protect(bool readOnly) { return protectMemory(readOnly); }

        /// Acquires or releases the file lock.
        int lock() { return QelMemoryMappedFile::lock(false); }
        int unlock() { return QelMemoryMappedFile::unlock(); }

    private:
        std::string m_name;
    };

    /// Placeholder for a lock in the file header.  It has no state: locking uses QelMemoryMappedFile::lock().
    class Lock {
    public:
        static int lock(Storage* storage) { return storage->lock(); }
        static int unlock(Storage* storage) { return storage->unlock(); }

    private:
        [[maybe_unused]] std::uint32_t m_unused = 0; ///< always 0
    };
};

static_assert(sizeof(QelMappedMemoryManager) == sizeof(QelSharedMemoryManager), "adds nothing to the file format");
static_assert(sizeof(QelMappedMemoryManager::Lock) == 4);

} // namespace Qel

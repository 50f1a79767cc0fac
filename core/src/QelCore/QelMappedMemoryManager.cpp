#include "QelCore/QelMappedMemoryManager.h"

#include "QelCore/QelProcess.h"

namespace Qel {

QelMappedMemoryManager::Storage::Storage(const std::string& name) : m_name(name) {}

void* QelMappedMemoryManager::Storage::getStorage(unsigned size, const Storage* other) {
    if (getMemory()) {
        syncMemory();
        return nullptr;
    }
    constexpr int attempts = 100;
    const tFileMappingOptions options(tFileMappingOptions::shareAll, fileOpenOrCreate, accessReadWrite, mapSizeAsAsked);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (other)
            remap(size, nullptr, other);
        else
            map(m_name, size, options, nullptr);
        if (getMemory())
            break;
        schedYield();
    }
    return getMemory();
}

} // namespace Qel

#pragma once

#include <ostream>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "support/TestMessage.h"

namespace Qel {

/// Prints a SID in test failures.
inline void PrintTo(const QelSID& sid, std::ostream* out) {
    *out << sid.toString();
}

inline const QelEID localEID(0x0102030405060708, 0x1112131415161718);
inline const QelEID masterEID(0x2122232425262728, 0x3132333435363738);

/// Sets the identity of the local agent, and optionally of the master, for its lifetime.
class LocalConfig {
public:
    explicit LocalConfig(const QelEID& local, const QelEID& master = QelEID()) {
        QelMessageIterator& cursor = m_tree.cursor();
        cursor.newChild(1307);
        cursor.newChild(1044);
        cursor.newChild(1021);
        cursor.putObj(local, 1010);
        if (master.isValid()) {
            cursor.seek("/data");
            cursor.newChild(1875);
            cursor.newChild(1021);
            cursor.newChild(1680);
            cursor.putObj(master, 1010);
        }
        QelConfiguration::setLocalConfig(m_tree.get());
    }
    LocalConfig(const LocalConfig&) = delete;
    LocalConfig& operator=(const LocalConfig&) = delete;
    ~LocalConfig() { QelConfiguration::setLocalConfig(nullptr); }

private:
    TestSupport::TestMessage m_tree;
};

} // namespace Qel

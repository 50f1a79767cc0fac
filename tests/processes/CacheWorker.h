#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <sstream>
#include <string>

#include "StressEnv.h"

namespace Qel::TestSupport {

/// Executes commands on the process's cache.  Each command is one line and is answered by one line:
///
///     bits                   size of a pointer in bits
///     insert N VERSION SIZE  result code
///     update N VERSION SIZE  result code
///     remove N               result code
///     get N                  "N:VERSION:SIZE" of a copy, "none" or "torn"
///     hold ID                takes a list and holds it under that name; "ok" or "none"
///     see ID                 the states in a held list, or "torn"
///     again ID               "same" if the bytes of all records of a held list are unchanged, else "changed"
///     drop ID                releases a held list; "ok"
///     write SEED STEPS       makes the changes of a script; "ok" or an error
///     read ROUNDS            takes and checks lists; "ok" or an error
///     fork SEED STEPS        forks; the child attaches again and makes the changes of a script, while the parent makes
///                            those of the script of SEED + 1; "ok" or an error
///     look                   "ok N" if all N records of a list are intact, regardless of their keys
///     fill COUNT             adds small environments with numbers from 100000; "ok" or an error
///     churn SEED             answers "ok", then changes environments until killed
class CacheWorker {
public:
    void run(std::istream& commands, std::ostream& answers);

private:
    struct Held {
        QelEnvCache::EnvValuesListPtr list;
        std::string bytes; ///< the records' bytes when the list was taken
    };

    std::string perform(std::istringstream& command);
    std::string change(StressScript::Kind kind, const StressState& state) const;
    std::string get(unsigned number) const;
    std::string hold(const std::string& id);
    std::string write(unsigned seed, unsigned steps) const;
    std::string read(unsigned rounds) const;
    std::string forkAndWrite(unsigned seed, unsigned steps);
    std::string fill(unsigned count) const;
    std::string look() const;
    [[noreturn]] void churn(unsigned seed) const;

    std::map<std::string, Held> m_held;
};

} // namespace Qel::TestSupport

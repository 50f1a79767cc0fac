#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <sstream>
#include <string>

#include "StressEnv.h"

namespace Qel::TestSupport {

/// Works on the cache of its process as it is told, one command a line, one line of answer each:
///
///     bits                   bits of an address
///     insert N VERSION SIZE  code
///     update N VERSION SIZE  code
///     remove N               code
///     get N                  "N:VERSION:SIZE" of a copy, "none" or "torn"
///     hold ID                "ok" once a list is held under that name, else "none"
///     see ID                 the states that a held list shows, or "torn"
///     again ID               "same" if each byte of the records of a held list is as it was at first, else "changed"
///     drop ID                "ok"
///     write SEED STEPS       makes the changes of a script; "ok", or what went wrong
///     read ROUNDS            takes and checks lists; "ok", or what went wrong
///     fork SEED STEPS        forks: the child attaches anew and makes the changes of a script, the parent those of
///                            the script of SEED + 1, both at once; "ok", or what went wrong
///     look                   "ok N" if each record of a list is whole, whatever key lists it
///     fill COUNT             adds small environments from number 100000 on; "ok", or what went wrong
///     churn SEED             answers "ok", and changes environments until it is killed
class CacheWorker {
public:
    void run(std::istream& commands, std::ostream& answers);

private:
    struct Held {
        QelEnvCache::EnvValuesListPtr list;
        std::string bytes; ///< of its records when it was taken
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

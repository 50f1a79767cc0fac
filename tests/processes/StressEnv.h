#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"

namespace Qel::TestSupport {

/// All that an environment of these tests says: every byte of its record follows from it, so that whoever finds the
/// record in a cache can tell whether it is whole.
struct StressState {
    unsigned number = 0;  ///< which environment
    unsigned version = 0; ///< of its content
    unsigned size = 0;    ///< bytes of its name

    friend bool operator==(const StressState&, const StressState&) = default;
};

/// States by EID, in the order of a list.
using StressStates = std::map<QelEID, StressState>;

/// The identifier of an environment.  Identifiers of successive numbers lie far apart.
[[nodiscard]] QelEID stressEID(unsigned number);

[[nodiscard]] QelEnv stressEnv(const StressState& state);

/// The state of a record; nothing if one of its bytes is not as it should be.  The reference count is not looked at.
[[nodiscard]] std::optional<StressState> stateOf(const QelEnvCoreBasic& record);

/// What a list shows; nothing if its keys don't ascend, or a record is not whole or not that of its key.
[[nodiscard]] std::optional<StressStates> statesOf(const QelEnvCache::EnvValuesList& list);

/// The records of a list, byte by byte but for the reference counts.
[[nodiscard]] std::string bytesOf(const QelEnvCache::EnvValuesList& list);

/// "number:version:size" of each state, with blanks between.
[[nodiscard]] std::string textOf(const StressStates& states);

/// A random number below `limit`, the same on all architectures.
[[nodiscard]] inline unsigned below(std::mt19937& random, unsigned limit) {
    return static_cast<unsigned>(random() % limit);
}

/// Random changes to a few environments that nobody else changes, the same for each seed.
class StressScript {
public:
    enum class Kind : std::uint8_t { insert, update, remove };
    struct Change {
        Kind kind;
        StressState state;
    };

    /// Changes environments `seed * 1000` to `seed * 1000 + 39`.
    explicit StressScript(unsigned seed) : m_first(seed * 1000), m_random(seed) {}

    /// The next change, which always succeeds.  Versions only grow.
    Change next();

    /// What the cache holds of these environments after the changes so far.
    [[nodiscard]] const StressStates& model() const { return m_model; }

    /// Adds what the cache holds after the first `steps` changes of a script.
    static void addAfter(unsigned seed, unsigned steps, StressStates& states);

    /// Those of the states that are of these environments.
    [[nodiscard]] StressStates own(const StressStates& all) const;

private:
    unsigned m_first;
    std::mt19937 m_random;
    unsigned m_version = 0;
    StressStates m_model;
};

} // namespace Qel::TestSupport

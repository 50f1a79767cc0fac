#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"

namespace Qel::TestSupport {

/// The state of a test environment.  It determines every byte of the environment's record, so that a torn record can be
/// detected.
struct StressState {
    unsigned number = 0;  ///< identifies the environment
    unsigned version = 0; ///< version of its content
    unsigned size = 0;    ///< length of its name in bytes

    friend bool operator==(const StressState&, const StressState&) = default;
};

/// States by EID, in list order.
using StressStates = std::map<QelEID, StressState>;

/// The EID of an environment.  The EIDs of consecutive numbers are far apart.
[[nodiscard]] QelEID stressEID(unsigned number);

[[nodiscard]] QelEnv stressEnv(const StressState& state);

/// The state of a record; nullopt if any byte is wrong.  The reference count is ignored.
[[nodiscard]] std::optional<StressState> stateOf(const QelEnvCoreBasic& record);

/// The states in a list; nullopt if the keys are not in ascending order, a record is torn, or a record does not belong
/// to its key.
[[nodiscard]] std::optional<StressStates> statesOf(const QelEnvCache::EnvValuesList& list);

/// The bytes of a list's records without their reference counts.
[[nodiscard]] std::string bytesOf(const QelEnvCache::EnvValuesList& list);

/// "number:version:size" of each state, separated by blanks.
[[nodiscard]] std::string textOf(const StressStates& states);

/// A random number below `limit`; the sequence is the same on all architectures.
[[nodiscard]] inline unsigned below(std::mt19937& random, unsigned limit) {
    return static_cast<unsigned>(random() % limit);
}

/// A reproducible sequence of random changes, determined by the seed.  Each seed uses its own environments.
class StressScript {
public:
    enum class Kind : std::uint8_t { insert, update, remove };
    struct Change {
        Kind kind;
        StressState state;
    };

    /// The script changes the environments `seed * 1000` to `seed * 1000 + 39`.
    explicit StressScript(unsigned seed) : m_first(seed * 1000), m_random(seed) {}

    /// Returns the next change.  It always succeeds; versions only increase.
    Change next();

    /// The expected states of the script's environments after the changes so far.
    [[nodiscard]] const StressStates& model() const { return m_model; }

    /// Adds the expected states after the first `steps` changes of a script.
    static void addAfter(unsigned seed, unsigned steps, StressStates& states);

    /// The subset of `all` that belongs to the script's environments.
    [[nodiscard]] StressStates own(const StressStates& all) const;

private:
    unsigned m_first;
    std::mt19937 m_random;
    unsigned m_version = 0;
    StressStates m_model;
};

} // namespace Qel::TestSupport

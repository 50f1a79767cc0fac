#pragma once

#include <limits>
#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A limit on one resource of an environment.  The unit depends on the resource.
struct QEL_EXPORT QelQoS : QelRecord<QelQoS> {
    /// No limit.
    static constexpr long long unlimited = std::numeric_limits<long long>::max();

    QelQoS() = default;
    explicit QelQoS(const std::string& resource) : id(resource) {}

    /// "soft:hard", or only "hard" if the soft limit is not specified.
    [[nodiscard]] std::string toString() const;
    /// Parses "soft:hard", or a single number for both.  Returns -1 and changes nothing if `text` does not start with a
    /// number.  Sets the value of the soft limit without specifying it: call `softLimit.specify(true)` to have it sent.
    int fromString(const std::string& text);

    /// Orders by identifier, then hard limit, then soft limit if both are specified.  Returns -1, 0 or 1.
    [[nodiscard]] int compare(const QelQoS& other) const;
    /// Orders by identifier only, so that a set holds one limit per resource.
    friend bool operator<(const QelQoS& a, const QelQoS& b) { return a.id < b.id; }

    std::string id;                           ///< the resource's name
    QelOptionalProperty<long long> softLimit; ///< may be exceeded temporarily
    long long hardLimit = 0;                  ///< must not be exceeded

    /// Predicate that selects the limit of one resource.
    class CompareById {
    public:
        explicit CompareById(std::string resource) : m_resource(std::move(resource)) {}
        bool operator()(const QelQoS& limit) const { return limit.id == m_resource; }

    private:
        std::string m_resource;
    };

    static const QelWireLayout& wire;
};

} // namespace Qel

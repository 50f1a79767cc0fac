#pragma once

#include <limits>
#include <string>

#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A limit on one resource of an environment.  The unit is the resource's own.
struct QelQoS {
    /// No limit.
    static constexpr long long unlimited = std::numeric_limits<long long>::max();

    QelQoS() = default;
    explicit QelQoS(const std::string& resource) : id(resource) {}

    /// "soft:hard", or "hard" alone when the soft limit isn't specified.
    [[nodiscard]] std::string toString() const;
    /// Parses "soft:hard", or one number for both; -1, and nothing changed, if `text` doesn't begin with a number.  The
    /// soft limit's value is stored without being specified: who wants it sent calls `softLimit.specify(true)`.
    int fromString(const std::string& text);

    /// Orders by identifier, then hard limit, then, where both are specified, soft limit: -1, 0 or 1.
    [[nodiscard]] int compare(const QelQoS& other) const;
    /// By identifier alone, so that a set holds one limit of each resource.
    friend bool operator<(const QelQoS& a, const QelQoS& b) { return a.id < b.id; }

    std::string id;                           ///< the resource's name
    QelOptionalProperty<long long> softLimit; ///< may be exceeded for a time
    long long hardLimit = 0;                  ///< may not be exceeded

    /// True for the limit of one resource.
    class CompareById {
    public:
        explicit CompareById(std::string resource) : m_resource(std::move(resource)) {}
        bool operator()(const QelQoS& limit) const { return limit.id == m_resource; }

    private:
        std::string m_resource;
    };

    using Reader = QelRecordReader<QelQoS>;
    using Writer = QelRecordWriter<QelQoS>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
